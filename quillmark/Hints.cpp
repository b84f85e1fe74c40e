#include "quillmark/Hints.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>
#include <vector>

#include "QuillmarkKit/store/MP3TagStore.h"
#include "platform/Paths.h"
#include "platform/base/Formats.h"
#include "platform/base/Strings.h"

namespace quillmark {

namespace {

/// Other programs' words for our fields.
constexpr auto otherWords = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"band", "album-artist"},
    {"cd", "disc-number"},
    {"cover", "artwork"},
    {"date", "year"},
    {"disc", "disc-number"},
    {"disk", "disc-number"},
    {"image", "artwork"},
    {"label", "publisher"},
    {"performer", "artist"},
    {"picture", "artwork"},
    {"track", "track-number"},
});

/// Returns how many bytes must be inserted, removed or replaced to turn one word into the other.
std::size_t editDistance(std::string_view a, std::string_view b) {
  // The distances from the processed part of `a` to each beginning of `b`.
  std::vector<std::size_t> distances(b.size() + 1);
  std::iota(distances.begin(), distances.end(), std::size_t{0});
  for (const char character : a) {
    std::size_t diagonal = distances[0]++;
    for (std::size_t i = 0; i < b.size(); ++i) {
      const std::size_t replaced = diagonal + (character == b[i] ? 0 : 1);
      diagonal = distances[i + 1];
      distances[i + 1] = std::min({replaced, distances[i] + 1, diagonal + 1});
    }
  }
  return distances.back();
}

void addFieldNames(std::vector<std::string_view>& names) {
  for (const QuillmarkKit::TagField field : QuillmarkKit::allTagFields) {
    names.push_back(cliName(field));
  }
}

std::vector<std::string_view> optionNames(const CommandOptions& command) {
  std::vector<std::string_view> names;
  for (const Option& option : command.options) names.push_back(option.name);
  if (command.hasFieldOptions) addFieldNames(names);
  return names;
}

std::string withoutHyphens(std::string_view name) {
  std::string letters(name);
  std::erase(letters, '-');
  return letters;
}

bool startsWithIgnoringCase(std::string_view text, std::string_view beginning) {
  return platform::Strings::equalIgnoringASCIICase(text.substr(0, beginning.size()), beginning);
}

/// Returns whether the word starts with a hyphen, or with a dash that an editor has made of one.
bool startsLikeAnOption(std::string_view word) {
  constexpr char32_t firstDash = 0x2010;
  constexpr char32_t lastDash = 0x2015;
  constexpr char32_t minus = 0x2212;
  if (word.empty() || !platform::Strings::isValidUTF8(word)) return false;
  const char32_t first = platform::Strings::firstCharacter(word).value;
  return first == '-' || (first >= firstDash && first <= lastDash) || first == minus;
}

}  // namespace

std::optional<std::string_view> nearestName(std::string_view typed, std::span<const std::string_view> names) {
  constexpr std::size_t shortestBeginning = 2;
  constexpr std::size_t farthest = 2;
  constexpr std::size_t longestName = 64;
  if (typed.empty() || typed.size() > longestName) return std::nullopt;
  const auto first = [&](auto isMeant) -> std::optional<std::string_view> {
    const auto found = std::ranges::find_if(names, isMeant);
    return found == names.end() ? std::nullopt : std::optional(*found);
  };
  const std::string letters = withoutHyphens(typed);
  const auto isSame = [&](std::string_view word) {
    return platform::Strings::equalIgnoringASCIICase(withoutHyphens(word), letters);
  };
  if (const auto name = first(isSame)) return name;
  const auto* const known =
      std::ranges::find_if(otherWords, [&](const auto& row) { return isSame(row.first); });
  if (known != otherWords.end()) {
    if (const auto name = first([&](std::string_view word) { return word == known->second; })) return name;
  }
  if (typed.size() >= shortestBeginning) {
    if (const auto name = first([&](std::string_view word) { return startsWithIgnoringCase(word, typed); }))
      return name;
  }
  const auto distanceTo = [&](std::string_view name) { return editDistance(typed, name); };
  const auto nearest = std::ranges::min_element(names, {}, distanceTo);
  if (nearest == names.end() || distanceTo(*nearest) > farthest) return std::nullopt;
  return *nearest;
}

std::string fieldHint(std::string_view typed) {
  std::vector<std::string_view> names;
  addFieldNames(names);
  const auto name = nearestName(typed, names);
  return name ? "did you mean " + std::string(*name) + "?" : "";
}

std::string unknownOption(const CommandOptions& command, std::string_view name,
                          std::string_view consequence) {
  std::string sentence = "--" + std::string(name) + " is no option of ";
  sentence.append(command.word).append(consequence);
  const std::size_t equals = std::min(name.find('='), name.size());
  const std::string_view typed = name.substr(0, equals);
  if (const auto value = optionValue(command, typed)) {
    sentence.append("; write --").append(typed);
    if (*value == OptionValue::none) return sentence + ".";
    const std::string given(name.substr(std::min(equals + 1, name.size())));
    const bool isOneWord = !given.empty() && given.find(' ') == std::string::npos;
    return sentence + " " + (isOneWord ? given : "\"" + given + "\"") + ".";
  }
  const auto nearest = nearestName(typed, optionNames(command));
  return sentence + (nearest ? "; did you mean --" + std::string(*nearest) + "?" : ".");
}

std::string folderHint(const std::filesystem::path& file) {
  if (!platform::FileManager::isFolder(file)) return "";
  return "--recursive takes the MP3 files in and below a folder.";
}

std::string pictureHint(platform::ByteView bytes) {
  const std::string_view characters = platform::charactersOf(bytes);
  const std::string_view format = platform::formatOf(characters, platform::otherPicture);
  if (!format.empty()) return "is in the format " + std::string(format) + "; convert it to JPEG or PNG.";
  return characters.empty() ? "is empty." : "is neither a JPEG nor a PNG picture.";
}

std::string numberHint(QuillmarkKit::TagField field, std::string_view value) {
  using QuillmarkKit::TagField;
  const std::size_t slash = value.find('/');
  if (slash == std::string_view::npos || (field != TagField::trackNumber && field != TagField::discNumber))
    return "";
  const TagField total = field == TagField::trackNumber ? TagField::trackTotal : TagField::discTotal;
  std::string hint = "write";
  for (const auto& [part, number] :
       {std::pair(field, value.substr(0, slash)), std::pair(total, value.substr(slash + 1))}) {
    if (!platform::Strings::decimalInteger(number)) return "";
    hint.append(" --").append(cliName(part)).append(" ").append(number);
  }
  return hint + ".";
}

void requireKnownWords(const Arguments& arguments, const CommandOptions& command) {
  for (const std::string_view name : arguments.unknown) {
    throw CLIError(unknownOption(command, name));
  }
  for (const std::string_view word : arguments.positional) {
    if (!startsLikeAnOption(word) || platform::FileManager::exists(platform::fileLocation(word))) continue;
    throw CLIError(std::string(word) + " is neither an option nor the name of a file.");
  }
}

void requireMP3Files(const FileList& files) {
  for (std::size_t i = 0; i < files.size(); ++i) {
    const std::filesystem::path file = files.location(i);
    hintingAtFolder(file, [&] { QuillmarkKit::MP3TagStore::requireMP3(file); });
  }
}

}  // namespace quillmark
