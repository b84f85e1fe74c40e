// Shows every frame of an MP3 file's ID3v2 tag: show-frames FILE

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <iostream>
#include <string>
#include <variant>

#include <ID3v2/Reading.h>
#include <platform/FileHandle.h>

namespace {

struct Description {
  std::string operator()(const ID3v2::Text& text) const { return text.text; }
  std::string operator()(const ID3v2::UserText& text) const { return text.description + ": " + text.text; }
  std::string operator()(const ID3v2::LanguageText& text) const {
    return text.language + ", " + text.description + ": " + text.text;
  }
  std::string operator()(const ID3v2::Picture& picture) const {
    return picture.mimeType + ", " + std::to_string(picture.data.size()) + " bytes";
  }
  std::string operator()(const ID3v2::URL& url) const { return url.url; }
  std::string operator()(const ID3v2::Chapter& chapter) const {
    return std::to_string(chapter.startTime) + " to " + std::to_string(chapter.endTime) + " ms";
  }
  std::string operator()(const ID3v2::TableOfContents& table) const {
    return std::to_string(table.childElementIDs.size()) + " entries";
  }
  std::string operator()(const ID3v2::Opaque& opaque) const {
    return std::to_string(opaque.bytes.size()) + " bytes";
  }
  std::string operator()(const ID3v2::Unread&) const { return "cannot be understood"; }
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "Usage: show-frames FILE\n";
    return 1;
  }
  try {
    auto file = platform::FileHandle::forReading(arguments[1]);
    const std::uint64_t claimed = ID3v2::tagLength(file.start()).value_or(0);
    // The file may be shorter than its tag claims.
    const auto length = static_cast<std::size_t>(std::min(claimed, file.size()));
    const auto reading = ID3v2::read(file.readFirst(length));
    if (!reading) {
      std::cout << "no ID3v2 tag\n";
      return 0;
    }
    std::cout << "ID3v2." << int{reading->tag.version} << ", " << reading->length << " bytes\n";
    for (const ID3v2::Frame& frame : reading->tag.frames) {
      std::cout << frame.identifier << "  " << std::visit(Description(), frame.content) << '\n';
    }
    for (const ID3v2::UnreadablePart& part : reading->unreadable) {
      std::cout << "unreadable: " << part.what << '\n';
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
  return 0;
}
