#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/StandardStreams.h"

namespace quillmark {

/// Where the program prints: standard output for what was asked for, standard error for what went wrong. On a
/// terminal, names and texts of others are shown so that they tell it nothing; elsewhere they go out as they
/// are.
class Console {
 public:
  /// Prints to standard output as it stands: the program's own words, and what `shown` has given.
  void write(std::string_view text);
  void flush();
  /// The system's error number of the first write to standard output that failed, or 0.
  int failure() const { return output_.failure(); }

  /// A name, or a text of one line, as standard output takes it.
  std::string shown(std::string_view name) const;
  /// A text as standard output takes it; on a terminal its further lines are indented by so many blanks, and
  /// between several values in it stands " / ".
  std::string shown(std::string_view text, std::size_t indentation) const;

  /// Prints one line to standard error: the tool's name, a colon, a blank, the message and `ending`.
  void printError(std::string_view message, std::string_view ending = "\n");

  /// Prints a note as such a line, where notes are wanted.
  void printNote(std::string_view message);
  /// Whether somebody sees notes: standard error is a terminal, or they were asked for.
  bool wantsNotes() const { return notesAreAskedFor_ || errorIsTerminal(); }
  void askForNotes() { notesAreAskedFor_ = true; }

  bool outputIsTerminal() const;
  bool errorIsTerminal() const;

  /// Shows a line on the terminal of standard error that goes before anything else is printed.
  void showStatus(std::string_view line);
  void eraseStatus();

 private:
  platform::StandardOutput output_;
  bool notesAreAskedFor_ = false;
  bool statusIsShown_ = false;
  // Asked of the system once, and only when it matters.
  mutable std::optional<bool> outputIsTerminal_;
  mutable std::optional<bool> errorIsTerminal_;
};

/// Returns the text with " / " between its values, which U+0000 separates.
std::string joiningValues(std::string_view text);
/// A text of one line as a terminal shows it, " / " between its values.
std::string visibleLine(std::string_view text);

}  // namespace quillmark
