#include "quillmark/Listings.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/FileError.h"
#include "platform/base/JSON.h"
#include "platform/base/Strings.h"

namespace quillmark {

namespace JSON = platform::JSON;

namespace {

/// A file's member of the JSON document, ready to be printed.
struct Member {
  JSON::Printed tags;
  /// The file's name, if the member has another one because that name is not UTF-8.
  std::string nameInBytes;
};

using Members = std::map<std::string, Member>;

/// Prints the JSON document, its members in ascending order of their names.
class Document {
 public:
  explicit Document(Console& console) : console_(console) {}

  JSON::Printed print(const JSON::Value& value) const {
    return JSON::Printed(value, JSON::Layout::pretty, escapes_, 1);
  }

  void write(const Members& members) {
    const auto write = [&](std::string_view piece) { console_.write(piece); };
    for (const auto& [name, member] : members) {
      write(std::exchange(isEmpty_, false) ? "{\n  " : ",\n  ");
      print(name).writeTo(write, encoder_);
      write(" : ");
      member.tags.writeTo(write, encoder_);
    }
  }

  /// Returns whether the output failed, so that the rest need not be read.
  bool isLost() const { return console_.failure() != 0; }
  void finish() { console_.write(isEmpty_ ? "{\n\n}\n" : "\n}\n"); }

 private:
  Console& console_;
  JSON::Escapes escapes_ = console_.outputIsTerminal() ? JSON::Escapes::forTerminal : JSON::Escapes::few;
  JSON::Base64Encoder encoder_{JSON::Base64Encoder::Keeping::sharedText};
  bool isEmpty_ = true;
};

std::string memberName(const std::filesystem::path& file) {
  return platform::Strings::fromUTF8Lossily(file.native());
}

/// Returns the indices of the files in the order of their members, or nothing if two files would have the
/// same member.
std::optional<std::vector<std::size_t>> orderOfMembers(const FileList& files) {
  std::vector<std::pair<std::string, std::size_t>> members;
  members.reserve(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) members.emplace_back(memberName(files.location(i)), i);
  std::ranges::sort(members);
  const auto clash = [&](const auto& a, const auto& b) {
    return a.first == b.first && files.location(a.second) != files.location(b.second);
  };
  if (std::ranges::adjacent_find(members, clash) != members.end()) return std::nullopt;
  std::vector<std::size_t> order(files.size());
  std::ranges::transform(members, order.begin(), [](const auto& member) { return member.second; });
  return order;
}

/// Keeps pictures, and equal ones only once.
class Pictures {
 public:
  using Bytes = platform::SharedBytes;

  /// Returns kept bytes that are equal to these.
  Bytes keep(const Bytes& picture) {
    const auto known = kept_.find(picture);
    return known != kept_.end() ? *known : *kept_.insert(picture.compacted()).first;
  }

 private:
  struct Before {
    bool operator()(const Bytes& a, const Bytes& b) const {
      if (a.size() != b.size()) return a.size() < b.size();
      return platform::charactersOf(a) < platform::charactersOf(b);
    }
  };
  std::set<Bytes, Before> kept_;
};

/// Returns the members of all files that could be read, except those that have been written. With `order`,
/// reads the files in this order and writes each member as soon as the next one has another name.
Members readMembers(const FileList& files, const std::optional<std::vector<std::size_t>>& order,
                    QuillmarkKit::ArtworkForm form, TagReader& reader, Document& document) {
  const auto location = [&](std::size_t i) { return files.location(order ? (*order)[i] : i); };
  platform::ReadAhead readAhead(files.size(), location);
  Pictures pictures;
  Members members;
  for (std::size_t i = 0; i < files.size() && !document.isLost(); ++i) {
    readAhead.advanceTo(i);
    const std::filesystem::path file = location(i);
    auto tags = reader.tagsOf(file);
    if (!tags) continue;
    const bool keepsPicture = tags->artwork && !order && form == QuillmarkKit::ArtworkForm::data;
    if (keepsPicture) tags->artwork->data = pictures.keep(tags->artwork->data);
    const std::string name = memberName(file);
    Member member{document.print(QuillmarkKit::encodeTagSet(*tags, form)),
                  name == file.native() ? "" : file.native()};
    if (order && !members.contains(name)) document.write(std::exchange(members, {}));
    const auto [place, isNew] = members.try_emplace(name, member);
    if (isNew) continue;
    if (place->second.nameInBytes != member.nameInBytes) {
      throw CLIError(platform::lastPathComponent(file) +
                     " and another file have one and the same name in JSON, as bytes that are not UTF-8 have "
                     "no place there. Read each in a run of its own, or rename one.");
    }
    place->second = std::move(member);
  }
  return members;
}

}  // namespace

void readAsJSON(const FileList& files, QuillmarkKit::ArtworkForm form, TagReader& reader, Console& console) {
  // A failure must leave nothing printed, unless the run continues after it.
  const auto order = reader.keepsGoing() ? orderOfMembers(files) : std::nullopt;
  Document document(console);
  document.write(readMembers(files, order, form, reader, document));
  document.finish();
}

}  // namespace quillmark
