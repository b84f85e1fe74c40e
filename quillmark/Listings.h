#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillmarkKit/model/TagSet.h"
#include "QuillmarkKit/store/MP3TagStore.h"
#include "platform/ReadAhead.h"
#include "quillmark/Arguments.h"
#include "quillmark/Console.h"
#include "quillmark/FileList.h"

namespace quillmark {

/// Reads the tags of files in their order, as the options of `read` ask for them, and prints notes about
/// them.
class TagReader {
 public:
  /// The files must outlive the reader.
  TagReader(const Arguments& arguments, const FileList& files, Console& console);

  bool keepsGoing() const { return keepsGoing_; }
  /// Returns whether only some fields are read.
  bool isLimited() const { return fields_ != QuillmarkKit::TagFields::all; }
  /// Returns the exit status for the files read so far.
  int status() const { return status_; }

  /// Moves to the next file. Returns false if there is none, or if the output failed, so that the rest need
  /// not be read.
  bool next();
  /// Returns the file's absolute path.
  const std::filesystem::path& file() const { return file_; }
  /// Returns the file's name as it was given.
  std::string_view name() const { return files_.name(reached_ - 1); }
  /// Returns the selected fields of the file's tags. If the file cannot be read, throws, or with --keep-going
  /// prints the error and returns nothing.
  std::optional<QuillmarkKit::TagSet> tags();

 private:
  QuillmarkKit::TagSet read();

  const FileList& files_;
  bool keepsGoing_;
  bool joinsValues_;
  bool printsNotes_;
  QuillmarkKit::TagFields fields_ = QuillmarkKit::TagFields::all;
  std::unique_ptr<const QuillmarkKit::MP3TagStore> store_;
  Console& console_;
  Progress progress_;
  platform::ReadAhead readAhead_;
  /// The number of files up to the current one.
  std::size_t reached_ = 0;
  std::filesystem::path file_;
  int status_ = 0;
  /// Whether the hint for folders was printed, which is printed once.
  bool hasNotedFolder_ = false;
};

/// Prints tag sets as a table, one line for each file: the file's name, then its values of the given fields.
///
/// At a terminal, the columns have a heading and are aligned, and long values are shortened so that a line
/// fits in the window. Elsewhere, tabs separate the columns, there is no heading, and "\t", "\n", "\r" and
/// "\\" represent a tab, a line feed, a carriage return and a backslash in a name or value. " / " separates
/// several values of one field.
class TagTable {
 public:
  using Fields = std::vector<QuillmarkKit::TagField>;
  /// The fields of a table by default.
  static constexpr std::array usualFields{
      QuillmarkKit::TagField::trackNumber, QuillmarkKit::TagField::title, QuillmarkKit::TagField::artist,
      QuillmarkKit::TagField::album,       QuillmarkKit::TagField::year,
  };

  TagTable(Fields fields, Console& console) : fields_(std::move(fields)), console_(console) {}

  /// Adds a line, and prints it at once if there is no terminal.
  void add(std::string_view name, const QuillmarkKit::TagSet& tags);
  /// Prints the remaining lines; at a terminal, all of them.
  void finish();

 private:
  using Row = std::vector<std::string>;

  std::vector<std::size_t> columnWidths(std::size_t window) const;

  Fields fields_;
  Console& console_;
  /// The rows for a terminal; the first is the heading.
  std::vector<Row> rows_;
};

/// Prints one JSON object with a member for each file, in ascending order of their names, and returns the
/// exit status. With --keep-going, sorts the files; otherwise, prints nothing before all of them have been
/// read. Throws what the reader throws, and CLIError if two files would have the same member.
int readAsJSON(FileList& files, const Arguments& arguments, Console& console);

}  // namespace quillmark
