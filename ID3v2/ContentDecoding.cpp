#include "ID3v2/ContentDecoding.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "ID3v2/TextFields.h"
#include "platform/base/Strings.h"

namespace ID3v2 {

namespace {

using platform::ByteView;
using platform::SharedBytes;

std::optional<Content> decodeText(TextDecoder decoder, ByteView content) {
  auto text = decoder.values(content);
  if (!text) return std::nullopt;
  return Text{std::move(*text)};
}

std::optional<Content> decodeUserText(TextDecoder decoder, ByteView content) {
  const Cut cut = decoder.cut(content);
  auto description = decoder.text(cut.text);
  auto text = decoder.values(cut.rest);
  if (!cut.isTerminated || !description || !text) return std::nullopt;
  return UserText{.description = std::move(*description), .text = std::move(*text)};
}

std::optional<Content> decodeLanguageText(TextDecoder decoder, ByteView content) {
  constexpr std::size_t languageSize = 3;
  if (content.size() < languageSize) return std::nullopt;
  const Cut cut = decoder.cut(content.subspan(languageSize));
  auto description = decoder.text(cut.text);
  auto text = decoder.values(cut.rest);
  if (!cut.isTerminated || !description || !text) return std::nullopt;
  return LanguageText{.language = std::string(platform::charactersOf(content.first(languageSize))),
                      .description = std::move(*description),
                      .text = std::move(*text)};
}

/// Returns the MIME type for a picture format of v2.2 (ID3v2.2.0 §4.15). An unknown format becomes "image/"
/// and its letters. "-->" means in both versions that the data is a link to the picture.
std::string mimeTypeFor(ByteView format) {
  std::string letters = platform::Strings::fromLatin1(cutAtZero(format).text);
  if (letters == "-->") return letters;
  std::ranges::transform(letters, letters.begin(), platform::Strings::toASCIILower);
  return "image/" + (letters == "jpg" ? "jpeg" : letters);
}

std::optional<Content> decodePicture(TextDecoder decoder, const SharedBytes& bytes, ByteView content,
                                     std::uint8_t version) {
  constexpr std::size_t formatSize = 3;
  Picture picture;
  ByteView rest;
  if (version == 2) {
    if (content.size() < formatSize) return std::nullopt;
    picture.mimeType = mimeTypeFor(content.first(formatSize));
    rest = content.subspan(formatSize);
  } else {
    const Cut mimeType = cutAtZero(content);
    picture.mimeType = platform::Strings::fromLatin1(mimeType.text);
    rest = mimeType.rest;
  }
  if (rest.empty()) return std::nullopt;
  picture.type = rest[0];
  const Cut cut = decoder.cut(rest.subspan(1));
  auto description = decoder.text(cut.text);
  if (!cut.isTerminated || !description) return std::nullopt;
  picture.description = std::move(*description);
  picture.data = bytes.slice(bytes.size() - cut.rest.size(), cut.rest.size());
  return picture;
}

/// LINK identifies a frame by its identifier, which has three letters in v2.2.
std::optional<Content> decodeLinkOfV22(ByteView content) {
  if (content.size() < 3) return std::nullopt;
  const auto identifier = fourLettersFor(platform::charactersOf(content.first(3)));
  if (!identifier) return std::nullopt;
  platform::Bytes bytes;
  platform::append(bytes, platform::bytesOf(*identifier));
  platform::append(bytes, content.subspan(3));
  return Opaque{std::move(bytes)};
}

std::optional<Content> decodeWithEncoding(ContentKind kind, const SharedBytes& bytes, std::uint8_t version) {
  if (bytes.empty()) return std::nullopt;
  const auto decoder = TextDecoder::forEncoding(bytes.view()[0]);
  if (!decoder) return std::nullopt;
  const ByteView content = bytes.view().subspan(1);
  switch (kind) {
    case ContentKind::text:
      return decodeText(*decoder, content);
    case ContentKind::userText:
      return decodeUserText(*decoder, content);
    case ContentKind::languageText:
      return decodeLanguageText(*decoder, content);
    case ContentKind::picture:
      return decodePicture(*decoder, bytes, content, version);
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<Content> decodeContent(std::string_view identifier, const SharedBytes& bytes,
                                     std::uint8_t version) {
  const ContentKind kind = kindOf(identifier);
  if (version == 2 && identifier == "LINK") return decodeLinkOfV22(bytes);
  if (kind == ContentKind::opaque) return Opaque{bytes};
  if (kind == ContentKind::url) {
    std::string url = platform::Strings::fromLatin1(bytes);
    url.erase(url.find_last_not_of('\0') + 1);
    return URL{std::move(url)};
  }
  if (auto content = decodeWithEncoding(kind, bytes, version)) return content;
  if (version == 2 && kind == ContentKind::picture) return std::nullopt;
  return Opaque{bytes};
}

}  // namespace ID3v2
