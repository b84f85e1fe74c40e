#include "ID3v2/TagsAtTheEnd.h"

#include <array>
#include <string>
#include <utility>

#include "ID3v2/Genres.h"
#include "platform/base/Strings.h"

namespace ID3v2 {

namespace {

constexpr std::size_t ID3v1Size = 128;
constexpr std::size_t APEFooterSize = 32;

bool endsWithID3v1(platform::ByteView end) {
  return end.size() >= ID3v1Size && platform::charactersOf(end.last(ID3v1Size)).starts_with("TAG");
}

bool endsWithAPEFooter(platform::ByteView end) {
  return end.size() >= APEFooterSize &&
         platform::charactersOf(end.last(APEFooterSize)).starts_with("APETAGEX");
}

/// Returns the text of a field. A zero byte ends it early.
std::string textOf(platform::ByteView field) {
  std::string_view characters = platform::charactersOf(field);
  characters = characters.substr(0, characters.find('\0'));
  characters = characters.substr(0, characters.find_last_not_of(' ') + 1);
  return platform::Strings::fromLatin1(platform::bytesOf(characters));
}

struct Field {
  const char* identifier;
  std::size_t offset;
  std::size_t size;
};

constexpr std::array textFields{Field{"TIT2", 3, 30}, Field{"TPE1", 33, 30}, Field{"TALB", 63, 30},
                                Field{"TYER", 93, 4}};
constexpr Field comment{"COMM", 97, 30};
constexpr std::size_t genreOffset = 127;

}  // namespace

std::optional<Tag> readID3v1(platform::ByteView end) {
  if (!endsWithID3v1(end)) return std::nullopt;
  const platform::ByteView bytes = end.last(ID3v1Size);
  Tag tag;
  const auto add = [&tag](const char* identifier, Content content) {
    tag.frames.push_back({.identifier = identifier, .content = std::move(content)});
  };
  for (const Field& field : textFields) {
    std::string text = textOf(bytes.subspan(field.offset, field.size));
    if (!text.empty()) add(field.identifier, Text{std::move(text)});
  }
  platform::ByteView commentBytes = bytes.subspan(comment.offset, comment.size);
  // ID3v1.1 uses the last two bytes of the comment for the track number.
  const bool hasTrack = commentBytes[28] == 0 && commentBytes[29] != 0;
  if (std::string text = textOf(commentBytes); !text.empty()) {
    add(comment.identifier, LanguageText{.language = "eng", .description = "", .text = std::move(text)});
  }
  if (hasTrack) add("TRCK", Text{std::to_string(commentBytes[29])});
  if (bytes[genreOffset] < genreNames.size()) add("TCON", Text{std::string(genreNames[bytes[genreOffset]])});
  return tag;
}

bool hasAPETag(platform::ByteView end) {
  return endsWithAPEFooter(end) ||
         (endsWithID3v1(end) && endsWithAPEFooter(end.first(end.size() - ID3v1Size)));
}

}  // namespace ID3v2
