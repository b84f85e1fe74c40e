#include <fcntl.h>
#include <sys/file.h>

#include <array>

#include "tests/Program.h"
#include "tests/Samples.h"

namespace tests {

namespace {

namespace filesystem = std::filesystem;
using filesystem::perms;

const std::string nothingThere = "No Quillmark tags on the clipboard. Run 'quillmark copy <file>' first.";
const std::string tags = "Copied tags from 01.mp3.\n  Title: Kyrie\n  Album: Mass\n  Year: 1977\n";

class ClipboardCommandsTest : public ProgramTest {
 protected:
  const filesystem::path state = folder.path() / ".local/state/quillmark";
  const filesystem::path store = state / "pasteboard";

  ClipboardCommandsTest() {
    folder.file("01.mp3", track(text("TIT2", "Kyrie") + text("TALB", "Mass") + text("TYER", "1977"), 64));
    folder.file("02.mp3", track(text("TIT2", "Gloria"), 64));
  }
  void put(std::string_view bytes) const { folder.file(".local/state/quillmark/pasteboard", bytes); }
};

}  // namespace

TEST_F(ClipboardCommandsTest, CarryTagsFromOneRunToTheNext) {
  folder.file("empty.mp3", audio());
  const std::string updated = "updated   02.mp3\n\nchanged 1, unchanged 0, failed 0\n";
  check({{"copy", "", "No files given."},
         {"paste --fields mood", "", "No files given."},
         {"paste --fields mood 02.mp3", "", nothingThere},
         {"copy 01.mp3 ignored.mp3", tags},
         {"paste --fields mood 02.mp3", "", "Unknown field 'mood'. Run 'quillmark fields' for the list."},
         {"paste --fields year 02.mp3", updated},
         {"read 02.mp3", "  Title  Gloria\n  Year   1977\n"},
         {"paste 02.mp3", updated},
         {"read 02.mp3", "  Title  Gloria\n  Album  Mass\n  Year   1977\n"},
         {"copy empty.mp3", "Copied tags from empty.mp3.\n  No tags\n"},
         {"paste --fields album 02.mp3", updated},
         {"read 02.mp3", "  Title  Gloria\n  Year   1977\n"}});
  for (const auto& place : {state, state.parent_path(), state.parent_path().parent_path()})
    EXPECT_EQ(filesystem::status(place).permissions(), perms::owner_all);
  EXPECT_EQ(filesystem::status(store).permissions(), perms{0600});
}

TEST_F(ClipboardCommandsTest, ReadDocumentsOfOtherPrograms) {
  check({{"copy 01.mp3", tags}});
  const std::string unreadable = "The tags on the clipboard cannot be read: ";
  for (const auto& [document, message] : std::vector<std::pair<std::string, std::string>>{
           {R"({"version":1,"tags":{"year":1977.0,"mood":[{}]},"extra":[-1e999]})", ""},
           {R"({"tags":{"year":3,"year":1.977e3,"title":null},"version":-1})", ""},
           {R"({"version":2,"tags":{}})",
            "These tags were copied by a newer version of Quillmark (format 2)."},
           {R"({"version":99999999999999999999,"tags":{}})",
            unreadable +
                "\"version\" should be a whole number of at most 64 bits but is 99999999999999999999."},
           {R"({"version":1)", unreadable + "not valid JSON: it ends too early."},
           {R"({"tags":{}})", unreadable + "\"document\" has no member \"version\"."},
           {R"({"version":1,"tags":null})", unreadable + "\"tags\" should be an object but is null."},
           {R"({"version":1,"tags":{"year":"1977"}})",
            unreadable + "\"tags.year\" should be a number but is a text."},
           {R"({"version":1,"tags":{"artwork":{"data":"/9j/4A","format":"jpeg"}}})",
            unreadable + "\"tags.artwork.data\" is not base64."},
           {R"({"version":1,"tags":{"artwork":{"data":"/9j/","format":"JPEG"}}})",
            unreadable + "\"tags.artwork.format\" is neither \"jpeg\" nor \"png\"."},
           {R"({"version":1 "tags":{}})",
            unreadable + "not valid JSON: a comma or a closing brace was expected at line 1, column 19."},
           {std::string(100000, '['), unreadable + "values nested more than 512 deep."},
       }) {
    SCOPED_TRACE(document.substr(0, 80));
    folder.file("02.mp3", track(text("TIT2", "Gloria"), 64));
    put("quillmark pasteboard 1\norg.quillmark.tagset\n" + std::to_string(document.size()) + "\n" + document);
    const std::string updated = "updated   02.mp3\n\nchanged 1, unchanged 0, failed 0\n";
    check({{"paste --fields year 02.mp3", message.empty() ? updated : "", message},
           {"read 02.mp3", message.empty() ? "  Title  Gloria\n  Year   1977\n" : "  Title  Gloria\n"}});
  }
}

TEST_F(ClipboardCommandsTest, DistinguishADamagedStoreFromAnEmptyOne) {
  check({{"copy 01.mp3", tags}});
  const std::string stored = contentsOf(store);
  const std::string signature = "quillmark pasteboard 1\n";
  const std::string head = signature + "org.quillmark.tagset\n";
  const CommandLine damaged{"paste 02.mp3", "",
                            "The clipboard could not be read: it is damaged, copy again."};
  for (const std::string& bytes : {stored.substr(0, stored.size() / 2), stored.substr(1), stored + "more",
                                   head + "-1\n{}", head + "99999999\n{}"}) {
    put(bytes);
    check({damaged});
  }
  // Longer than the limit, so refused before it is read. The file is sparse and takes no room on the disk.
  put(head + "2147483649\n");
  filesystem::resize_file(store, head.size() + 11 + 2147483649);
  check({damaged});
  for (const std::string& bytes : {std::string(), signature}) {
    put(bytes);
    check({{"paste 02.mp3", "", nothingThere}});
  }
}

TEST_F(ClipboardCommandsTest, RefuseContentThatAnotherUserCouldHaveStored) {
  const std::string used = "cannot be used: ";
  const std::string home = used + "the home folder is not the user's alone";
  const std::string parent = used + "a folder above it is not the user's alone";
  const std::string otherUser = used + "it belongs to another user";
  const std::string link = used + "a link is in its place";
  const std::string noFile = used + "it is no file of the user's own";
  const std::string noFolder = used + "Not a directory";
  struct Row {
    /// Shell commands, with the folder of the clipboard in $S.
    std::string change;
    std::string pasteFailure;
    /// Empty if copying repairs the clipboard.
    std::string copyFailure;
  };
  for (const Row& row : std::vector<Row>{
           {"chmod 777 .", home, home},
           {"chmod 777 .local/state", parent, parent},
           {"chmod 777 $S", used + "others can use it", ""},
           {"mv $S elsewhere; ln -s ../../elsewhere $S", noFolder, noFolder},
           {"mv $S/pasteboard elsewhere; ln -s \"$PWD/elsewhere\" $S/pasteboard", link, ""},
           {"mv $S/lock elsewhere; ln -s \"$PWD/elsewhere\" $S/lock", "", link},
           {"rm $S/pasteboard; mkdir $S/pasteboard", noFile, "could not be written: Is a directory"},
           {"rm $S/pasteboard; mkfifo -m 600 $S/pasteboard", noFile, ""},
           {"chown 65534 .", home, home},
           {"chown 65534 .local/state", parent, parent},
           {"chown 65534 $S", otherUser, otherUser},
           {"chown 65534 $S/pasteboard", noFile, ""},
           {"chown 65534 $S/lock", "", noFile},
       }) {
    // Only root can make files of other users.
    if (row.change.starts_with("chown") && ::geteuid() != 0) continue;
    SCOPED_TRACE(row.change);
    shell("rm -rf .local elsewhere; chmod 700 .; chown $(id -u) .");
    check({{"copy 01.mp3", tags}});
    ASSERT_EQ(shell("S=.local/state/quillmark; " + row.change), 0);
    const std::string pasted = "would     02.mp3\n\nwould change 1, unchanged 0, failed 0\n";
    const bool isRepaired = row.copyFailure.empty();
    check({row.pasteFailure.empty()
               ? CommandLine{"paste --dry-run 02.mp3", pasted}
               : CommandLine{"paste --dry-run 02.mp3", "", "The clipboard " + row.pasteFailure + "."},
           isRepaired ? CommandLine{"copy 01.mp3", tags}
                      : CommandLine{"copy 01.mp3", "",
                                    "The clipboard " + row.copyFailure +
                                        ". What was copied before is still there."}});
    if (!isRepaired) continue;
    check({{"paste --dry-run 02.mp3", pasted}});
    EXPECT_EQ(filesystem::status(state).permissions(), perms::owner_all);
  }
}

TEST_F(ClipboardCommandsTest, WaitForAnotherWriterFirst) {
  check({{"copy 01.mp3", tags}});
  const int lock = ::open((state / "lock").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(lock, LOCK_EX), 0);
  check({{"copy 02.mp3", "",
          "The clipboard could not be written: another program holds it locked. What was copied before is "
          "still "
          "there."}});
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
  const std::string longTitle(200'000, 'k');
  folder.file("01.mp3", track(text("TIT2", longTitle), 64));
  const auto offer = [&](const std::string& desktop,
                         const std::vector<std::pair<const char*, std::string>>& programs,
                         const std::string& log, bool isTaken, const char* words = "copy 01.mp3") {
    SCOPED_TRACE(log);
    const TemporaryFolder bin;
    for (const auto& [name, contents] : programs)
      filesystem::permissions(bin.file(name, contents), perms::owner_all);
    shell("rm -f log taken");
    // Another program may wait for this pipe to close to detect the end of the process.
    std::array<int, 2> held{};
    ASSERT_EQ(::pipe2(held.data(), O_NONBLOCK), 0);
    const Finished done = run(words, desktop + " PATH=" + bin.path().native());
    ::close(held[1]);
    char byte = 0;
    EXPECT_EQ(::read(held[0], &byte, 1), 0);
    ::close(held[0]);
    EXPECT_EQ(contentsOf(folder.path() / "log"), log);
    EXPECT_EQ(contentsOf(folder.path() / "taken"), isTaken ? "Title: " + longTitle : "");
    EXPECT_EQ((done.output + done.error).find("noise"), std::string::npos);
  };
  const std::vector<std::pair<const char*, std::string>> all{
      {"wl-copy", takes}, {"xclip", takes}, {"xsel", takes}};
  offer("DISPLAY=", all, "", false);
  offer("WAYLAND_DISPLAY=w DISPLAY=:7", all, wlCopy, true);
  offer("WAYLAND_DISPLAY=w DISPLAY=:7", all, "", false, "copy --no-desktop 01.mp3");
  offer("WAYLAND_DISPLAY=w", {{"wl-copy", fails}, {"xclip", takes}}, wlCopy, false);
  offer("WAYLAND_DISPLAY=w DISPLAY=:7", {{"wl-copy", fails}, {"xclip", takes}, {"xsel", takes}},
        wlCopy + xclip, true);
  offer("DISPLAY=:7", {{"wl-copy", takes}, {"xclip", hangs}, {"xsel", takes}}, xclip + xsel, true);
  offer("WAYLAND_DISPLAY=w DISPLAY=:7", {}, "", false);
  EXPECT_NE(shell("kill -0 $(cat hung) 2>/dev/null"), 0) << "what takes no text is ended";
  shell("rm -r .local/state/quillmark; : >.local/state/quillmark");
  offer("WAYLAND_DISPLAY=w DISPLAY=:7", all, "", false);
}

}  // namespace tests
