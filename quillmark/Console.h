#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/StandardStreams.h"

namespace quillmark {

/// The tool's name in everything that it prints, even if it was started under another name.
inline constexpr std::string_view toolName = "quillmark";

/// Prints results to standard output, and errors and notes to standard error. At a terminal, names and texts
/// of files are printed in a form that cannot control it; elsewhere they are printed as they are.
class Console {
 public:
  /// Prints text to standard output as it is. Names and texts of files must pass through `shown` first.
  void write(std::string_view text);
  void flush();
  /// Returns the system's error number of the first write to standard output that failed, or 0.
  int failure() const { return output_.failure(); }

  /// Returns a name, or a text of one line, in the form for standard output.
  std::string shown(std::string_view name) const;
  /// Returns a text in the form for standard output. At a terminal, its lines after the first are indented by
  /// so many blanks, and " / " separates several values.
  std::string shown(std::string_view text, std::size_t indentation) const;

  /// Prints the tool's name, ": ", the message and `ending` to standard error, after all earlier output.
  void printError(std::string_view message, std::string_view ending = "\n");

  /// Prints a note in the same form if notes are wanted.
  void printNote(std::string_view message);
  /// Likewise, with the file's name before the note, unless the note is empty.
  void printNote(const std::filesystem::path& file, const std::string& note);
  /// Returns whether standard error is a terminal or notes were asked for.
  bool wantsNotes() const { return notesAreAskedFor_ || errorIsTerminal(); }
  void askForNotes() { notesAreAskedFor_ = true; }

  bool outputIsTerminal() const;
  bool errorIsTerminal() const;

  /// Shows a line on the terminal of standard error; it is erased before anything else is printed.
  void showStatus(std::string_view line);
  void eraseStatus();

 private:
  platform::StandardOutput output_;
  bool notesAreAskedFor_ = false;
  bool statusIsShown_ = false;
  // Determined when first needed.
  mutable std::optional<bool> outputIsTerminal_;
  mutable std::optional<bool> errorIsTerminal_;
};

/// Returns the text with " / " between its values, which U+0000 separates.
std::string joiningValues(std::string_view text);
/// Returns a text of one line in the form for a terminal, with " / " between its values.
std::string visibleLine(std::string_view text);

/// Shows the progress of a run over many files after it has lasted a second, if standard error is a terminal.
class Progress {
 public:
  Progress(std::size_t fileCount, Console& console) : fileCount_(fileCount), console_(console) {}
  ~Progress() { console_.eraseStatus(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Must be called before each file.
  void next(const std::filesystem::path& file);

 private:
  using Clock = std::chrono::steady_clock;

  std::size_t fileCount_;
  Console& console_;
  std::size_t count_ = 0;
  Clock::time_point due_ = Clock::now() + std::chrono::seconds(1);
};

}  // namespace quillmark
