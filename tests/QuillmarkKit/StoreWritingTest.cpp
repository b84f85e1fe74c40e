#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>

#include "QuillmarkKit/store/ID3TagEditorStore.h"
#include "platform/FileManager.h"
#include "tests/FileState.h"
#include "tests/Samples.h"

namespace tests {

using namespace QuillmarkKit;
namespace FileManager = platform::FileManager;
namespace filesystem = std::filesystem;
using filesystem::perms;

namespace {

const ID3TagEditorStore store(true);

std::string narrow(std::string_view id, std::string_view text) {
  return frame(id, "\0"s + std::string(text) + "\0"s);
}
std::string wide(std::string_view id, std::string_view text) {
  return frame(id, "\1" + utf16(text) + "\0\0"s);
}
std::string localized(std::string_view id, std::string_view text) {
  return frame(id, "\1eng" + utf16("") + "\0\0"s + utf16(text));
}
TagSet titleOnly(std::string_view title) {
  TagSet tags;
  tags.title = title;
  return tags;
}

/// Permission bits hold for this user, even in a test that root runs.
class OrdinaryUser {
 public:
  OrdinaryUser() { changes_ = ::geteuid() == 0 && ::seteuid(65534) == 0; }
  ~OrdinaryUser() { static_cast<void>(changes_ && ::seteuid(0) == 0); }
  OrdinaryUser(const OrdinaryUser&) = delete;

 private:
  bool changes_ = false;
};

/// Writing a file beyond this size fails.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t limit) {
    std::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const struct rlimit limited { .rlim_cur = limit, .rlim_max = before_.rlim_max };
    ::setrlimit(RLIMIT_FSIZE, &limited);
  }
  ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }
  FileSizeLimit(const FileSizeLimit&) = delete;

 private:
  struct rlimit before_ {};
};

}  // namespace

TEST(StoreWritingTest, WritesAFrameForEachField) {
  const TemporaryFolder folder;
  const auto file = folder.file("track.MP3", audio(300000));
  store.write(everyField(), file);
  const std::string frames =
      wide("TALB", "the album") + wide("TPE2", "the album-artist") + wide("TPE1", "the artist") +
      wide("TIT2", "the title") + narrow("TCON", "the genre") + narrow("TRCK", "1973/1974") +
      frame("APIC", "\0image/jpeg\0\3\0\xFF\xD8\xFF\xE0"s + "cover") + wide("TCOM", "the composer") +
      wide("TPE3", "the conductor") + wide("TIT1", "the grouping") + wide("TCOP", "the copyright") +
      wide("TENC", "the encoded-by") + wide("TOWN", "the file-owner") + wide("TEXT", "the lyricist") +
      wide("TPUB", "the publisher") + wide("TIT3", "the subtitle") + wide("TKEY", "the initial-key") +
      narrow("TBPM", "1972") + narrow("TPOS", "1975/1976") + localized("USLT", "the lyrics") +
      localized("COMM", "the comment") + narrow("TYER", "1971");
  EXPECT_EQ(contentsOf(file), TagBytes(3).raw(frames).padding(2048).characters() + audio(300000));
  EXPECT_EQ(store.read(file), everyField());

  store.write(TagSet().merging(everyField(), {TagField::lyricist, TagField::trackTotal, TagField::discTotal}),
              file);
  EXPECT_EQ(contentsOf(file),
            TagBytes(3).raw(wide("TEXT", "the lyricist")).padding(2048).characters() + audio(300000));
}

TEST(StoreWritingTest, CarriesOtherFramesOver) {
  const std::string bytes300 = std::string(150, '\xFF') + std::string(150, '\0');
  const std::string user = frame("TXXX", "\0a\0b"sv);
  const std::string priv = frame("PRIV", bytes300, 0xC0E0);
  const std::string date = text("TDRC", "1977");
  const std::string comment = frame("COMM", "\0deu\0hallo"sv);
  const std::string picture = frame("APIC", "\0image/jpeg\0\4\0\xFF\xD8\xFF\xE0"sv);
  struct Row {
    std::string_view name;
    TagBytes old;
    std::string carried;
  };
  for (const Row& row : std::vector<Row>{
           {"v2.3", TagBytes(3).raw(user + wide("TIT2", "Old") + priv + date + user).padding(99),
            user + priv + date + user},
           {"v2.4", TagBytes(4).text("TIT2", "Old").frame("PRIV", bytes300, 0xC0E0).text("TDRC", "1977"),
            priv + date},
           {"unsynchronised", TagBytes(3).flags(0x80).raw("CRM0\0\0\0\4\0\0\xFF\0\xE0\xFF\0\0"s + user),
            frame("CRM0", "\xFF\xE0\xFF\0"sv) + user},
           {"extended header", TagBytes(3).flags(0x40).raw("\0\0\0\6\0\0\0\0\0\0"s + priv), priv},
           {"extended header v2.4", TagBytes(4).flags(0x40).raw("\0\0\0\6\1\0"s).text("TDRC", "1977"), date},
           {"v2.2", TagBytes(2).text("TT2", "Old").frame("UFI", "id\0\1"sv), ""},
           {"behind padding", TagBytes(3).padding(10).raw(user), ""},
           {"what a tag set holds",
            TagBytes(3).raw(wide("TIT2", "Old") + wide("TIT2", "Older") + comment + picture), ""},
       }) {
    SCOPED_TRACE(row.name);
    const TemporaryFolder folder;
    const auto file = folder.file("track.mp3", row.old.characters() + audio());
    store.write(titleOnly("New"), file);
    EXPECT_EQ(contentsOf(file), track(wide("TIT2", "New") + row.carried, row.carried.empty() ? 2048 : 0));
    EXPECT_EQ(store.read(file), titleOnly("New"));
    EXPECT_EQ(folder.entryCount(), 1);
    if (row.carried.empty()) continue;
    store.write(TagSet(), file);
    EXPECT_EQ(contentsOf(file), track(row.carried));
  }
}

TEST(StoreWritingTest, KeepsWhatBelongsToTheFile) {
  const TemporaryFolder folder;
  const auto file = folder.file("track.mp3", audio());
  filesystem::permissions(file, perms{02640});
  constexpr timespec date{.tv_sec = 981173106, .tv_nsec = 123456789};
  FileManager::setModificationDate(file, date);
  const bool hasAttributes = ::setxattr(file.c_str(), "user.mood", "calm", 4, 0) == 0;

  store.write(titleOnly("New"), file);
  EXPECT_EQ(filesystem::status(file).permissions(), perms{02640});
  const timespec kept = FileManager::modificationDate(file).value();
  EXPECT_EQ(kept.tv_sec, date.tv_sec);
  EXPECT_EQ(kept.tv_nsec, date.tv_nsec);
  ID3TagEditorStore(false).write(titleOnly("Newer"), file);
  EXPECT_GT(FileManager::modificationDate(file).value().tv_sec, date.tv_sec);

  if (!hasAttributes) GTEST_SKIP() << "The file system has no extended attributes.";
  char mood[5] = "";
  EXPECT_EQ(::getxattr(file.c_str(), "user.mood", mood, 4), 4);
  EXPECT_STREQ(mood, "calm");
}

TEST(StoreWritingTest, ReplacesWhatALinkPointsTo) {
  const TemporaryFolder folder;
  const TemporaryFolder elsewhere;
  const std::string priv = frame("PRIV", "p");
  const auto target = elsewhere.file("target", track(wide("TIT2", "Old") + priv));
  const auto direct = folder.path() / "direct";
  const auto link = folder.path() / "link.mp3";
  filesystem::create_symlink(target, direct);
  filesystem::create_symlink("direct", link);
  for (const auto& [tags, frames] :
       {std::pair(titleOnly("New"), wide("TIT2", "New") + priv), std::pair(TagSet(), priv)}) {
    store.write(tags, link);
    EXPECT_EQ(filesystem::read_symlink(link), "direct");
    EXPECT_EQ(filesystem::read_symlink(direct), target);
    EXPECT_EQ(contentsOf(target), track(frames));
    EXPECT_EQ(folder.entryCount(), 2);
    EXPECT_EQ(elsewhere.entryCount(), 1);
  }
}

TEST(StoreWritingTest, LeavesTheFileAloneWhenItFails) {
  const std::string managed = track(wide("TIT2", "Old"), 64);
  const std::string carrying = track(wide("TIT2", "Old") + frame("PRIV", "p"));
  const std::string noRoom = "track.mp3 could not be written: File too large.";
  constexpr perms all{0777};
  struct Row {
    std::string contents;
    TagSet tags;
    perms folderMode;
    perms fileMode;
    rlim_t limit;
    std::string message;
  };
  for (const Row& row : std::vector<Row>{
           {managed, TagSet(), all, all, RLIM_INFINITY, "track.mp3: nothing would be left in its tag."},
           {managed, titleOnly("New"), perms{0555}, all, RLIM_INFINITY,
            "track.mp3 could not be written: Permission denied."},
           {managed, titleOnly("New"), all, perms{0}, RLIM_INFINITY, "track.mp3 could not be read."},
           {managed, titleOnly("New"), all, all, 100, noRoom},
           {managed, titleOnly("New"), all, all, 4096, noRoom},
           {carrying, titleOnly("New"), all, all, 2048, noRoom},
           {carrying, TagSet(), all, all, 2048, noRoom},
       }) {
    SCOPED_TRACE(row.message);
    const TemporaryFolder folder;
    const auto file = folder.file("track.mp3", row.contents);
    filesystem::permissions(folder.path(), row.folderMode);
    filesystem::permissions(file, row.fileMode);
    const FileState before(file);
    {
      const OrdinaryUser user;
      const FileSizeLimit limit(row.limit);
      EXPECT_EQ(messageOf([&] { store.write(row.tags, file); }), row.message);
    }
    EXPECT_TRUE(FileState(file) == before);
    EXPECT_EQ(folder.entryCount(), 1);
  }
}

}  // namespace tests
