#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "QuillmarkKit/model/TagSetJSON.h"
#include "platform/FileError.h"
#include "platform/base/JSON.h"
#include "platform/base/Strings.h"
#include "quillmark/ArtworkFile.h"
#include "quillmark/CLIError.h"
#include "quillmark/Commands.h"
#include "quillmark/FieldSelection.h"
#include "quillmark/FileList.h"
#include "quillmark/Hints.h"
#include "quillmark/Progress.h"
#include "quillmark/Stores.h"
#include "quillmark/StrictChecks.h"
#include "quillmark/TagTable.h"

namespace quillmark {

using QuillmarkKit::TagField;
using QuillmarkKit::TagSet;
namespace JSON = platform::JSON;

namespace {

void list(const TagSet& tags, std::string_view ifEmpty, Console& console) {
  std::vector<std::pair<std::string_view, std::string>> lines;
  std::size_t width = 0;
  for (const TagField field : QuillmarkKit::allTagFields) {
    auto value = tags.value(field);
    if (!value) continue;
    lines.emplace_back(displayName(field), std::move(*value));
    width = std::max(width, displayName(field).size());
  }
  if (lines.empty()) console.write(ifEmpty);
  for (const auto& [label, value] : lines) {
    console.write("  " + std::string(label) + std::string(width - label.size(), ' ') + "  " +
                  console.shown(value, width + 4) + "\n");
  }
}

/// Reads one file after another, and may be told to go on when one cannot be read.
class Reader {
 public:
  Reader(const Arguments& arguments, std::size_t fileCount, Console& console)
      : keepsGoing_(arguments.has(options::keepGoing)),
        separatesValues_(arguments.has(options::lossless) && !arguments.has(options::json)),
        notes_(console.wantsNotes() && (arguments.has(options::notes) || arguments.has(options::lossless))),
        store_(storeFor(arguments)),
        console_(console),
        progress_(fileCount, console) {
    if (const auto list = arguments.value(options::printedFields)) fields_ = fieldsNamed(*list);
  }

  bool keepsGoing() const { return keepsGoing_; }
  /// The exit status so far.
  int status() const { return status_; }

  /// Whether fields are left out.
  bool isLimited() const { return fields_ != QuillmarkKit::TagFields::all; }

  /// Returns the file's tags, without the fields that were not asked for. If the file cannot be read, throws,
  /// or prints the error and returns nothing.
  std::optional<TagSet> tagsOf(const std::filesystem::path& file) {
    constexpr int someFilesFailed = 2;
    progress_.next(file);
    if (!keepsGoing_) return read(file);
    try {
      return read(file);
    } catch (const std::exception& error) {
      console_.flush();
      console_.printError(error.what());
      status_ = someFilesFailed;
      return std::nullopt;
    }
  }

 private:
  TagSet read(const std::filesystem::path& file) {
    try {
      TagSet tags = notes_ ? readWithNotes(file) : store_->read(file);
      if (separatesValues_) separateValues(tags);
      return isLimited() ? TagSet().merging(tags, fields_) : tags;
    } catch (const platform::FileError& error) {
      std::string hint = folderHint(file);
      if (hint.empty()) throw;
      throw CLIError(error.what(), std::move(hint));
    }
  }

  TagSet readWithNotes(const std::filesystem::path& file) {
    auto source = store_->readWithNotes(file);
    if (!source.losses.empty()) {
      console_.flush();
      console_.printNote(platform::lastPathComponent(file) + ": " + source.losses);
    }
    return std::move(source.tags);
  }

  /// Puts " / " between the values of a text, which U+0000 separates in a tag.
  static void separateValues(TagSet& tags) {
    for (const TagField field : QuillmarkKit::allTagFields) {
      const QuillmarkKit::TextMember text = stringKeyPath(field);
      if (text != nullptr && tags.*text) tags.*text = joiningValues(*(tags.*text));
    }
  }

  bool keepsGoing_;
  QuillmarkKit::TagFields fields_ = QuillmarkKit::TagFields::all;
  bool separatesValues_;
  bool notes_;
  std::unique_ptr<const QuillmarkKit::MP3TagStore> store_;
  Console& console_;
  Progress progress_;
  int status_ = 0;
};

void readAsText(const FileList& files, Reader& reader, Console& console) {
  const std::string_view ifEmpty = reader.isLimited() ? "  (none of these fields)\n" : "  (no tags)\n";
  bool isFirst = true;
  platform::ReadAhead readAhead = files.readAhead();
  for (std::size_t i = 0; i < files.size(); ++i) {
    // Nobody is there to read what else would come.
    if (console.failure() != 0) return;
    readAhead.advanceTo(i);
    const std::filesystem::path file = files.location(i);
    const auto writeHeader = [&] {
      if (!std::exchange(isFirst, false)) console.write("\n");
      if (files.size() > 1) console.write(console.shown(platform::lastPathComponent(file)) + ":\n");
    };
    // An error that ends the run stands below the name of its file.
    if (!reader.keepsGoing()) writeHeader();
    const auto tags = reader.tagsOf(file);
    if (!tags) continue;
    if (reader.keepsGoing()) writeHeader();
    list(*tags, ifEmpty, console);
  }
}

/// A file's member of the JSON document, in print.
struct Member {
  JSON::Printed tags;
  /// The file's name where it is not that of the member, which must be UTF-8.
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

  /// Returns whether the output failed, so that nobody is there to read the rest.
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

/// Returns the indices of the files in the order of their members; nothing if members of different files
/// would have one name.
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

/// Keeps pictures, equal ones once.
class Pictures {
 public:
  using Bytes = platform::SharedBytes;

  /// Returns the kept bytes that equal these.
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

/// Returns the members of all files that could be read, as far as they are not in the document yet. With
/// `order`, the files are read in it, and a file's member is written when that of the next one is known.
Members readMembers(const FileList& files, const std::optional<std::vector<std::size_t>>& order,
                    QuillmarkKit::ArtworkForm form, Reader& reader, Document& document) {
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
    if (place->second.nameInBytes != member.nameInBytes) throw CLIError::sameMember(file);
    place->second = std::move(member);
  }
  return members;
}

void readAsJSON(const FileList& files, QuillmarkKit::ArtworkForm form, Reader& reader, Console& console) {
  // A failure must leave nothing printed, unless the run goes on after it.
  const auto order = reader.keepsGoing() ? orderOfMembers(files) : std::nullopt;
  Document document(console);
  document.write(readMembers(files, order, form, reader, document));
  document.finish();
}

void readAsTable(const FileList& files, const Arguments& arguments, Reader& reader, Console& console) {
  const auto list = arguments.value(options::printedFields);
  TagTable::Fields fields(TagTable::usualFields.begin(), TagTable::usualFields.end());
  if (list) fields = fieldsInOrder(*list);
  const bool givesPaths = arguments.has(options::pathsInTable);
  TagTable table(std::move(fields), console);
  try {
    for (std::size_t i = 0; i < files.size() && console.failure() == 0; ++i) {
      const std::filesystem::path file = files.location(i);
      const auto tags = reader.tagsOf(file);
      if (tags) table.add(givesPaths ? std::string(files.name(i)) : platform::lastPathComponent(file), *tags);
    }
  } catch (...) {
    table.finish();
    throw;
  }
  table.finish();
}

/// Throws CLIError for options that ask for different outputs.
void requireOneOutput(const Arguments& arguments) {
  const int count = static_cast<int>(arguments.has(options::json)) +
                    static_cast<int>(arguments.has(options::table)) +
                    static_cast<int>(arguments.value(options::saveArtwork).has_value());
  if (count > 1) throw CLIError("read takes only one of --json, --table and --save-artwork.");
}

}  // namespace

int commandRead(const Arguments& arguments, Console& console) {
  requireOneOutput(arguments);
  const FileList files(arguments);
  if (arguments.has(options::strict)) requireMP3Files(files);
  if (const auto file = arguments.value(options::saveArtwork)) {
    saveArtwork(files, *file, *storeFor(arguments), console);
    return 0;
  }
  Reader reader(arguments, files.size(), console);
  if (arguments.has(options::table)) {
    readAsTable(files, arguments, reader, console);
  } else if (arguments.has(options::json)) {
    using Form = QuillmarkKit::ArtworkForm;
    readAsJSON(files, arguments.has(options::noArtwork) ? Form::size : Form::data, reader, console);
  } else {
    readAsText(files, reader, console);
  }
  return reader.status();
}

}  // namespace quillmark
