#include "quillmark/Listings.h"

#include <algorithm>
#include <limits>

#include "platform/base/Strings.h"

namespace quillmark {

using QuillmarkKit::TagField;
using QuillmarkKit::TagSet;
namespace Strings = platform::Strings;

namespace {

constexpr std::string_view gap = "  ";

/// Returns the field's label, without the word "Number".
std::string headingOf(TagField field) {
  constexpr std::string_view number = " Number";
  std::string_view label = displayName(field);
  if (label.ends_with(number)) label.remove_suffix(number.size());
  return std::string(label);
}

std::string escaped(std::string_view text) {
  static constexpr auto escapes = std::to_array<std::pair<char, std::string_view>>({
      {'\0', " / "},
      {'\t', "\\t"},
      {'\n', "\\n"},
      {'\r', "\\r"},
      {'\\', "\\\\"},
  });
  std::string line;
  for (const char& character : text) {
    const auto* const escape =
        std::ranges::find(escapes, character, [](const auto& row) { return row.first; });
    line += escape != escapes.end() ? escape->second : std::string_view(&character, 1);
  }
  return line;
}

/// Returns the text, or as much of it as fits in so many columns, followed by an ellipsis.
std::string shortened(std::string text, std::size_t columns) {
  if (Strings::columnsOf(text) <= columns) return text;
  return std::string(Strings::fitting(text, columns - 1)) + "…";
}

/// Returns the greatest width, at least 1, that columns may have for all of them to fit in `room` together.
std::size_t fairWidth(std::vector<std::size_t> widths, std::size_t room) {
  std::ranges::sort(widths);
  for (std::size_t i = 0; i < widths.size(); ++i) {
    const std::size_t share = room / (widths.size() - i);
    if (widths[i] > share) return std::max<std::size_t>(share, 1);
    room -= widths[i];
  }
  return std::numeric_limits<std::size_t>::max();
}

}  // namespace

void TagTable::add(std::string_view name, const TagSet& tags) {
  if (!console_.outputIsTerminal()) {
    std::string line = escaped(name);
    for (const TagField field : fields_) line.append("\t").append(escaped(tags.value(field).value_or("")));
    console_.write(line + "\n");
    return;
  }
  if (rows_.empty()) {
    Row& heading = rows_.emplace_back(Row{"File"});
    for (const TagField field : fields_) heading.push_back(headingOf(field));
  }
  // Only the part of a value that fits in a line is kept, so that long texts of many files take no memory.
  const std::size_t window = platform::columnsOf(platform::Stream::output);
  Row& row = rows_.emplace_back(Row{shortened(Strings::visible(name), window)});
  for (const TagField field : fields_) {
    row.push_back(shortened(visibleLine(tags.value(field).value_or("")), window));
  }
}

std::vector<std::size_t> TagTable::columnWidths(std::size_t window) const {
  std::vector<std::size_t> widths(fields_.size() + 1);
  for (const Row& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], Strings::columnsOf(row[i]));
    }
  }
  const std::size_t gaps = gap.size() * fields_.size();
  const std::size_t most = fairWidth(widths, window - std::min(gaps, window));
  for (std::size_t& width : widths) width = std::min(width, most);
  return widths;
}

void TagTable::finish() {
  // A terminal may start a new line after its last column.
  const auto widths = columnWidths(platform::columnsOf(platform::Stream::output) - 1);
  for (Row& row : rows_) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string cell = shortened(std::move(row[i]), widths[i]);
      const std::string padding(widths[i] - Strings::columnsOf(cell), ' ');
      const bool isNumber = i > 0 && integerKeyPath(fields_[i - 1]) != nullptr;
      if (i > 0) line += gap;
      line += isNumber ? padding + cell : cell + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    console_.write(line + "\n");
  }
  rows_.clear();
}

}  // namespace quillmark
