#include "quillmark/Console.h"

#include <algorithm>
#include <string>

#include "platform/FileError.h"
#include "platform/base/Strings.h"

namespace quillmark {

using platform::Stream;

namespace {

bool remembered(std::optional<bool>& answer, Stream stream) {
  if (!answer) answer = platform::isTerminal(stream);
  return *answer;
}

/// Splits a text at the separators, applies `show` to each piece, and joins the results with `joint`.
template <class Show>
std::string rejoined(std::string_view text, char separator, std::string_view joint, Show show) {
  std::string pieces;
  for (;;) {
    const std::size_t end = std::min(text.find(separator), text.size());
    pieces += show(text.substr(0, end));
    if (end == text.size()) return pieces;
    pieces += joint;
    text.remove_prefix(end + 1);
  }
}

/// Returns the number with commas between thousands.
std::string grouped(std::size_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, ",");
  return digits;
}

}  // namespace

bool Console::outputIsTerminal() const {
  return remembered(outputIsTerminal_, Stream::output);
}

bool Console::errorIsTerminal() const {
  return remembered(errorIsTerminal_, Stream::error);
}

void Console::write(std::string_view text) {
  eraseStatus();
  output_.write(text);
}

void Console::flush() {
  eraseStatus();
  output_.flush();
}

std::string Console::shown(std::string_view name) const {
  return outputIsTerminal() ? platform::Strings::visible(name) : std::string(name);
}

std::string Console::shown(std::string_view text, std::size_t indentation) const {
  if (!outputIsTerminal()) return std::string(text);
  return rejoined(text, '\n', "\n" + std::string(indentation, ' '), visibleLine);
}

void Console::printError(std::string_view message, std::string_view ending) {
  flush();
  std::string line(toolName);
  line += ": ";
  line += errorIsTerminal() ? platform::Strings::visible(message) : std::string(message);
  line += ending;
  platform::writeToStandardError(line);
}

void Console::printNote(std::string_view message) {
  if (wantsNotes()) printError("note: " + std::string(message));
}

void Console::printNote(const std::filesystem::path& file, const std::string& note) {
  if (!note.empty()) printNote(platform::lastPathComponent(file) + ": " + note);
}

void Console::showStatus(std::string_view line) {
  // Buffered output must appear before the status line.
  flush();
  // A terminal may start a new line after its last column.
  const std::size_t columns = platform::columnsOf(Stream::error) - 1;
  const std::string text = platform::Strings::visible(line);
  platform::writeToStandardError(std::string(platform::Strings::fitting(text, columns)));
  statusIsShown_ = true;
}

void Console::eraseStatus() {
  if (!statusIsShown_) return;
  platform::writeToStandardError("\r\x1B[K");
  statusIsShown_ = false;
}

std::string joiningValues(std::string_view text) {
  return rejoined(text, '\0', " / ", [](std::string_view value) { return std::string(value); });
}

std::string visibleLine(std::string_view text) {
  return rejoined(text, '\0', " / ", platform::Strings::visible);
}

void Progress::next(const std::filesystem::path& file) {
  constexpr std::chrono::milliseconds pause(100);
  ++count_;
  const Clock::time_point now = Clock::now();
  if (now < due_ || !console_.errorIsTerminal()) return;
  due_ = now + pause;
  console_.showStatus(grouped(count_) + " of " + grouped(fileCount_) + "  " +
                      platform::lastPathComponent(file));
}

}  // namespace quillmark
