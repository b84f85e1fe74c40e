#include "quillmark/Listings.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "QuillmarkKit/model/TagSetJSON.h"
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

/// Sorts the files by the names of their members. Returns false, and does not sort, if two files would have
/// the same member.
bool sortByMember(FileList& files) {
  std::vector<std::pair<std::string, std::size_t>> members;
  members.reserve(files.size());
  for (std::size_t i = 0; i < files.size(); ++i) members.emplace_back(memberName(files.location(i)), i);
  std::ranges::sort(members);
  const auto clash = [&](const auto& a, const auto& b) {
    return a.first == b.first && files.location(a.second) != files.location(b.second);
  };
  if (std::ranges::adjacent_find(members, clash) != members.end()) return false;
  std::vector<std::size_t> order(files.size());
  std::ranges::transform(members, order.begin(), [](const auto& member) { return member.second; });
  files.reorder(order);
  return true;
}

/// An order in which equal pictures are next to each other.
struct PictureOrder {
  bool operator()(const platform::SharedBytes& a, const platform::SharedBytes& b) const {
    if (a.size() != b.size()) return a.size() < b.size();
    return platform::charactersOf(a) < platform::charactersOf(b);
  }
};

/// Pictures that are kept, equal ones only once.
using Pictures = std::set<platform::SharedBytes, PictureOrder>;

/// Returns kept bytes that are equal to these.
platform::SharedBytes kept(const platform::SharedBytes& picture, Pictures& pictures) {
  const auto known = pictures.find(picture);
  return known != pictures.end() ? *known : *pictures.insert(picture.compacted()).first;
}

}  // namespace

int readAsJSON(FileList& files, const Arguments& arguments, Console& console) {
  using Form = QuillmarkKit::ArtworkForm;
  const Form form = arguments.has(options::noArtwork) ? Form::size : Form::data;
  // A failure must leave nothing printed, unless the run continues after it.
  const bool isSorted = arguments.has(options::keepGoing) && sortByMember(files);
  TagReader reader(arguments, files, console);
  Document document(console);
  Pictures pictures;
  Members members;
  while (reader.next()) {
    auto tags = reader.tags();
    if (!tags) continue;
    const bool keepsPicture = tags->artwork && !isSorted && form == Form::data;
    if (keepsPicture) tags->artwork->data = kept(tags->artwork->data, pictures);
    const std::string& file = reader.file().native();
    const std::string name = memberName(reader.file());
    Member member{document.print(QuillmarkKit::encodeTagSet(*tags, form)), name == file ? "" : file};
    // The members of one file, which can be named twice, follow each other.
    if (isSorted && !members.contains(name)) document.write(std::exchange(members, {}));
    const auto [place, isNew] = members.try_emplace(name, member);
    if (isNew) continue;
    if (place->second.nameInBytes != member.nameInBytes) {
      throw CLIError(platform::lastPathComponent(reader.file()) +
                     " and another file have one and the same name in JSON, as bytes that are not UTF-8 have "
                     "no place there. Read each in a run of its own, or rename one.");
    }
    place->second = std::move(member);
  }
  document.write(members);
  document.finish();
  return reader.status();
}

}  // namespace quillmark
