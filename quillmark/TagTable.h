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
/// "\\" stand for a tab, a line feed, a carriage return and a backslash in a name or value. " / " separates
/// several values of one field.
class TagTable {
 public:
  using Fields = std::vector<QuillmarkKit::TagField>;
  /// The fields of a table unless others are asked for.
  static constexpr std::array usualFields{
      QuillmarkKit::TagField::trackNumber, QuillmarkKit::TagField::title, QuillmarkKit::TagField::artist,
      QuillmarkKit::TagField::album,       QuillmarkKit::TagField::year,
  };

  TagTable(Fields fields, Console& console) : fields_(std::move(fields)), console_(console) {}

  /// Adds a line; where there is no terminal, it is printed at once.
  void add(std::string_view name, const QuillmarkKit::TagSet& tags);
  /// Prints the lines whose widths had to be known first.
  void finish();

 private:
  using Row = std::vector<std::string>;

  std::vector<std::size_t> columnWidths(std::size_t window) const;

  Fields fields_;
  Console& console_;
  /// What a terminal is to show; the heading is the first row.
  std::vector<Row> rows_;
};

}  // namespace quillmark
