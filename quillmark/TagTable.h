#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuillmarkKit/model/TagSet.h"
#include "quillmark/Console.h"

namespace quillmark {

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

}  // namespace quillmark
