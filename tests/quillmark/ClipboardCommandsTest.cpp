#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <csignal>
#include <functional>

#include "platform/Pasteboard.h"
#include "tests/Files.h"
#include "tests/Program.h"
#include "tests/Samples.h"

namespace tests {

namespace {

const std::string nothingThere =
    "quillmark: No Quillmark tags on the clipboard. Run 'quillmark copy <file>' first.\n";

class ClipboardCommandsTest : public testing::Test {
 protected:
  const TemporaryFolder folder;
  const std::filesystem::path source =
      folder.file("01.mp3", track(text("TIT2", "Kyrie") + text("TALB", "Mass") + text("TYER", "1977"), 64));
  const std::filesystem::path target = folder.file("02.mp3", track(text("TIT2", "Gloria"), 64));
  const std::filesystem::path state = folder.path() / ".local/state/quillmark";

  Finished run(const std::vector<std::string>& words) const { return quillmark(words, folder.path()); }
  void putDocument(std::string_view document) const {
    platform::Pasteboard(folder.path()).store(document, "");
  }
};

}  // namespace

TEST_F(ClipboardCommandsTest, CarryTagsFromOneRunToTheNext) {
  using std::filesystem::perms;
  EXPECT_EQ(run({"copy", "01.mp3", "ignored.mp3"}).output,
            "Copied tags from 01.mp3.\n  Title: Kyrie\n  Album: Mass\n  Year: 1977\n");
  for (const auto& place : {state, state.parent_path(), state.parent_path().parent_path()})
    EXPECT_EQ(std::filesystem::status(place).permissions(), perms::owner_all);
  EXPECT_EQ(std::filesystem::status(state / "pasteboard").permissions(), perms{0600});

  EXPECT_EQ(run({"paste", "--fields", "year", "02.mp3"}).status, 0);
  EXPECT_EQ(run({"read", "02.mp3"}).output, "  Title  Gloria\n  Year   1977\n");
  EXPECT_EQ(run({"paste", "02.mp3"}).status, 0);
  EXPECT_EQ(run({"read", "02.mp3"}).output, "  Title  Gloria\n  Album  Mass\n  Year   1977\n");

  folder.file("empty.mp3", audio());
  EXPECT_EQ(run({"copy", "empty.mp3"}).output, "Copied tags from empty.mp3.\n  No tags\n");
  EXPECT_EQ(run({"paste", "--fields", "album", "02.mp3"}).status, 0);
  EXPECT_EQ(run({"read", "02.mp3"}).output, "  Title  Gloria\n  Year   1977\n");
}

TEST_F(ClipboardCommandsTest, ReportTheFirstErrorInAFixedOrder) {
  EXPECT_EQ(run({"copy"}).error, "quillmark: No files given.\n");
  EXPECT_EQ(run({"paste", "--fields", "mood"}).error, "quillmark: No files given.\n");
  EXPECT_EQ(run({"paste", "--fields", "mood", "02.mp3"}).error, nothingThere);
  putDocument(R"({"version":1,"tags":{}})");
  EXPECT_EQ(run({"paste", "--fields", "mood", "02.mp3"}).error,
            "quillmark: Unknown field 'mood'. Run 'quillmark fields' for the list.\n");
}

TEST_F(ClipboardCommandsTest, ReadDocumentsOfOtherPrograms) {
  const std::string unreadable = "quillmark: The tags on the clipboard cannot be read: ";
  for (const auto& [document, error] : std::vector<std::pair<std::string, std::string>>{
           {R"({"version":1,"tags":{"year":1977.0,"mood":[{}]},"extra":[-1e999]})", ""},
           {R"({"tags":{"year":3,"year":1.977e3,"title":null},"version":-1})", ""},
           {R"({"version":2,"tags":{}})",
            "quillmark: These tags were copied by a newer version of Quillmark (format 2).\n"},
           {R"({"version":99999999999999999999,"tags":{}})",
            unreadable +
                "\"version\" should be a whole number of at most 64 bits but is 99999999999999999999.\n"},
           {R"({"version":1,"tags":{"year":1e999}})",
            unreadable + "\"tags.year\" should be a whole number of at most 64 bits but is 1e999.\n"},
           {R"({"version":1)", unreadable + "not valid JSON: it ends too early.\n"},
           {R"({"tags":{}})", unreadable + "\"document\" has no member \"version\".\n"},
           {R"({"version":1,"tags":null})", unreadable + "\"tags\" should be an object but is null.\n"},
           {R"({"version":1,"tags":{"year":"1977"}})",
            unreadable + "\"tags.year\" should be a number but is a text.\n"},
           {R"({"version":1,"tags":{"artwork":{"data":"/9j/4A","format":"jpeg"}}})",
            unreadable + "\"tags.artwork.data\" is not base64.\n"},
           {R"({"version":1,"tags":{"artwork":{"data":"/9j/","format":"JPEG"}}})",
            unreadable + "\"tags.artwork.format\" is neither \"jpeg\" nor \"png\".\n"},
           {R"({"version":1 "tags":{}})",
            unreadable + "not valid JSON: a comma or a closing brace was expected at line 1, column 19.\n"},
           {"{}{", unreadable + "not valid JSON: the end was expected at line 1, column 3.\n"},
           {std::string(100000, '['), unreadable + "values nested more than 512 deep.\n"},
       }) {
    SCOPED_TRACE(document.substr(0, 80));
    folder.file("02.mp3", track(text("TIT2", "Gloria"), 64));
    putDocument(document);
    const Finished pasted = run({"paste", "--fields", "year", "02.mp3"});
    EXPECT_EQ(pasted.error, error);
    EXPECT_EQ(pasted.status, error.empty() ? 0 : 1);
    EXPECT_EQ(run({"read", "02.mp3"}).output,
              error.empty() ? "  Title  Gloria\n  Year   1977\n" : "  Title  Gloria\n");
  }
}

TEST_F(ClipboardCommandsTest, DistinguishADamagedStoreFromAnEmptyOne) {
  ASSERT_EQ(run({"copy", "01.mp3"}).status, 0);
  const std::string stored = contentsOf(state / "pasteboard");
  const std::string document = stored.substr(stored.find('{'));
  const std::string signature = "quillmark pasteboard 1\n";
  const std::string damaged = "quillmark: The clipboard could not be read: it is damaged, copy again.\n";
  const std::string head = signature + "org.quillmark.tagset\n";
  for (const std::string& bytes : {stored.substr(0, stored.size() / 2), stored.substr(1), stored + "more",
                                   head + "-1\n" + document, head + "99999999\n" + document}) {
    folder.file(".local/state/quillmark/pasteboard", bytes);
    EXPECT_EQ(run({"paste", "02.mp3"}).error, damaged) << bytes;
  }
  // Longer than the limit, so refused before it is read. The file is sparse and takes no room on the disk.
  folder.file(".local/state/quillmark/pasteboard", head + "2147483649\n");
  std::filesystem::resize_file(state / "pasteboard", head.size() + 11 + 2147483649);
  EXPECT_EQ(run({"paste", "02.mp3"}).error, damaged);
  for (const std::string& bytes : {std::string(), signature}) {
    folder.file(".local/state/quillmark/pasteboard", bytes);
    EXPECT_EQ(run({"paste", "02.mp3"}).error, nothingThere);
  }
}

TEST_F(ClipboardCommandsTest, RefuseContentThatAnotherUserCouldHaveStored) {
  using std::filesystem::perms;
  namespace filesystem = std::filesystem;
  const auto opened = [](const filesystem::path& place) {
    return [place] { filesystem::permissions(place, perms::all); };
  };
  const auto given = [](const filesystem::path& place) {
    return [place] { ASSERT_EQ(::lchown(place.c_str(), 65534, 65534), 0); };
  };
  const auto linked = [&](const filesystem::path& place) {
    return [&, place] {
      filesystem::rename(place, folder.path() / "elsewhere");
      filesystem::create_symlink(folder.path() / "elsewhere", place);
    };
  };
  const auto store = state / "pasteboard";
  const std::string foreignHome = "the home folder is not the user's alone";
  const std::string foreignParent = "a folder above it is not the user's alone";
  struct Row {
    std::function<void()> change;
    std::string reasonForPaste;
    /// Empty if copying repairs the clipboard.
    std::string reasonForCopy;
    bool needsRoot = false;
  };
  for (const Row& row : std::vector<Row>{
           {opened(folder.path()), foreignHome, foreignHome},
           {opened(state.parent_path()), foreignParent, foreignParent},
           {opened(state), "others can use it", ""},
           {linked(state), "Not a directory", "Not a directory"},
           {linked(store), "a link is in its place", ""},
           {linked(state / "lock"), "", "a link is in its place"},
           {[&] { filesystem::remove(store), filesystem::create_directory(store); },
            "it is no file of the user's own", "Is a directory"},
           {[&] { filesystem::remove(store), ::mkfifo(store.c_str(), 0600); },
            "it is no file of the user's own", ""},
           {given(folder.path()), foreignHome, foreignHome, true},
           {given(state.parent_path()), foreignParent, foreignParent, true},
           {given(state), "it belongs to another user", "it belongs to another user", true},
           {given(store), "it is no file of the user's own", "", true},
           {given(state / "lock"), "", "it is no file of the user's own", true},
       }) {
    if (row.needsRoot && ::geteuid() != 0) continue;
    SCOPED_TRACE(row.reasonForPaste + " / " + row.reasonForCopy);
    filesystem::remove_all(folder.path() / ".local");
    filesystem::remove_all(folder.path() / "elsewhere");
    ASSERT_EQ(run({"copy", "01.mp3"}).error, "");
    row.change();
    const auto line = [](const std::string& reason, const std::string& more) {
      const std::string failure = reason == "Is a directory" ? "could not be written: " : "cannot be used: ";
      return reason.empty() ? "" : "quillmark: The clipboard " + failure + reason + "." + more + "\n";
    };
    EXPECT_EQ(run({"paste", "--dry-run", "02.mp3"}).error, line(row.reasonForPaste, ""));
    const Finished copied = run({"copy", "02.mp3"});
    EXPECT_EQ(copied.error, line(row.reasonForCopy, " What was copied before is still there."));
    EXPECT_EQ(copied.status, row.reasonForCopy.empty() ? 0 : 1);
    EXPECT_EQ(copied.output, row.reasonForCopy.empty() ? "Copied tags from 02.mp3.\n  Title: Gloria\n" : "");
    if (row.reasonForCopy.empty()) {
      EXPECT_EQ(filesystem::status(state).permissions(), perms::owner_all);
      EXPECT_EQ(run({"paste", "--dry-run", "02.mp3"}).error, "");
    }
    ASSERT_EQ(::chown(folder.path().c_str(), ::geteuid(), ::getegid()), 0);
    filesystem::permissions(folder.path(), perms::owner_all);
  }
}

TEST_F(ClipboardCommandsTest, WaitForAnotherWriterFirst) {
  ASSERT_EQ(run({"copy", "01.mp3"}).error, "");
  const int lock = ::open((state / "lock").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(lock, LOCK_EX), 0);
  EXPECT_EQ(run({"copy", "02.mp3"}).error,
            "quillmark: The clipboard could not be written: another program holds it locked. What was copied "
            "before is still there.\n");
  ::close(lock);
}

TEST_F(ClipboardCommandsTest, OfferTheSummaryToTheDesktop) {
  // A substitute for every clipboard program. Logs its arguments and the state that it inherits from the
  // process.
  const std::string script = R"sh(#!/bin/sh
echo noise; echo noise >&2
while read -r name value; do [ "$name" != SigIgn: ] || ignored=${value#?????????}; done </proc/$$/status
read -r pid _ _ _ _ session _ </proc/$$/stat
echo "${0##*/} $* $ignored $((pid - session)) $(/bin/readlink /proc/$$/cwd)" >>"$HOME/log"
)sh";
  const std::string takes = script + "/bin/cat >\"$HOME/taken\"; /bin/sleep 3 & exit 0";
  const std::string fails = script + "/bin/cat >/dev/null; exit 1";
  const std::string hangs = script + "echo $$ >\"$HOME/hung\"; exec /bin/sleep 30";
  const std::string wlCopy = "wl-copy --type text/plain 0000000 0 /\n";
  const std::string xclip = "xclip -selection clipboard -in 0000000 0 /\n";
  const std::string xsel = "xsel --clipboard --input 0000000 0 /\n";
  const std::map<std::string, std::string> none{{"DISPLAY", ""}};
  const std::map<std::string, std::string> x{{"DISPLAY", ":7"}};
  const std::map<std::string, std::string> wayland{{"WAYLAND_DISPLAY", "w"}};
  const std::map<std::string, std::string> both{*x.begin(), *wayland.begin()};
  const std::map<std::string, std::string> all{{"wl-copy", takes}, {"xclip", takes}, {"xsel", takes}};

  const std::string summary = "Title: " + std::string(200'000, 'k');
  folder.file("01.mp3", track(text("TIT2", std::string(200'000, 'k')), 64));
  struct Row {
    std::map<std::string, std::string> environment, programs;
    std::string log;
    bool isTaken;
    std::vector<std::string> words = {"copy", "01.mp3"};
  };
  const auto offer = [&](Row row) {
    SCOPED_TRACE(row.log);
    const TemporaryFolder bin;
    for (const auto& [name, contents] : row.programs)
      std::filesystem::permissions(bin.file(name, contents), std::filesystem::perms::owner_all);
    for (const char* name : {"log", "taken"}) std::filesystem::remove(folder.path() / name);
    row.environment["PATH"] = bin.path();
    // Another program may wait for this pipe to close to detect the end of the process.
    std::array<int, 2> held{};
    ASSERT_EQ(::pipe2(held.data(), O_NONBLOCK), 0);
    const Finished run = quillmark(row.words, folder.path(), row.environment);
    ::close(held[1]);
    char byte = 0;
    EXPECT_EQ(::read(held[0], &byte, 1), 0);
    ::close(held[0]);
    EXPECT_EQ(contentsOf(folder.path() / "log"), row.log);
    EXPECT_EQ(contentsOf(folder.path() / "taken") == summary, row.isTaken);
    EXPECT_EQ((run.output + run.error).find("noise"), std::string::npos);
  };
  for (const Row& row : std::vector<Row>{
           {none, all, "", false},
           {both, all, wlCopy, true},
           {both, all, "", false, {"copy", "--no-desktop", "01.mp3"}},
           {wayland, {{"wl-copy", fails}, {"xclip", takes}}, wlCopy, false},
           {both, {{"wl-copy", fails}, {"xclip", takes}, {"xsel", takes}}, wlCopy + xclip, true},
           {x, {{"wl-copy", takes}, {"xclip", hangs}, {"xsel", takes}}, xclip + xsel, true},
           {both, {}, "", false},
       }) {
    offer(row);
  }
  const pid_t hung = std::stoi(contentsOf(folder.path() / "hung"));
  EXPECT_EQ(::kill(hung, 0), -1) << "what takes no text is ended";
  std::filesystem::remove_all(state);
  folder.file(".local/state/quillmark", "no folder");
  offer({both, {{"wl-copy", takes}}, "", false});
}

}  // namespace tests
