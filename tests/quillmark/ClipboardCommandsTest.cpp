#include "tests/Program.h"

namespace tests {

namespace filesystem = std::filesystem;

const std::string nothingThere = "No Quillmark tags on the clipboard. Run 'quillmark copy <file>' first.";
const std::string tags = "Copied tags from 01.mp3.\n  Title: Kyrie\n  Album: Mass\n  Year: 1977\n";
const std::string there = ". What was copied before is still there.";
const std::string updated = "updated   02.mp3\n\nchanged 1, unchanged 0, failed 0\n";

class ClipboardCommandsTest : public ProgramTest {
 protected:
  const filesystem::path state = folder.path() / ".local/state/quillmark";
  const filesystem::path store = state / "pasteboard";

  ClipboardCommandsTest() {
    folder.file("01.mp3", track(text("TIT2", "Kyrie") + text("TALB", "Mass") + text("TYER", "1977"), 64));
    folder.file("02.mp3", track(text("TIT2", "Gloria"), 64));
  }
};

TEST_F(ClipboardCommandsTest, CarryTagsFromOneRunToTheNext) {
  folder.file("empty.mp3", audio());
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
  EXPECT_EQ(shell("test -z \"$(find .local -type d ! -perm 700 -o -type f ! -perm 600)\""), 0);
  shell(
      "flock .local/state/quillmark/lock sh -c ': >locked; sleep 9' >held 2>&1 & until test -e locked; do "
      "sleep 0.1; done");
  check({{"copy 02.mp3", "", "The clipboard could not be written: another program holds it locked" + there}});
}

TEST_F(ClipboardCommandsTest, ReadWhatOtherProgramsStored) {
  check({{"copy 01.mp3", tags}});
  const std::string stored = contentsOf(store);
  const std::string signature = "quillmark pasteboard 1\n";
  const std::string head = signature + "org.quillmark.tagset\n";
  const auto holding = [&](const std::string& document) {
    return head + std::to_string(document.size()) + "\n" + document;
  };
  const std::string unreadable = "The tags on the clipboard cannot be read: ";
  const std::string damaged = "The clipboard could not be read: it is damaged, copy again.";
  const std::string tooLong = head + "2147483649\n";
  for (const auto& [bytes, message] : std::vector<std::pair<std::string, std::string>>{
           {holding(R"({"version":1,"tags":{"year":1977.0,"mood":[{}]},"extra":[-1e999]})"), ""},
           {holding(R"({"tags":{"year":3,"year":1.977e3,"title":null},"version":-1})"), ""},
           {holding(R"({"version":2,"tags":{}})"),
            "These tags were copied by a newer version of Quillmark (format 2)."},
           {holding(R"({"version":1,"tags":{"year":1e999}})"),
            unreadable + "\"tags.year\" should be a whole number of at most 64 bits but is 1e999."},
           {holding(R"({"version":1)"), unreadable + "not valid JSON: it ends too early."},
           {holding(R"({"tags":{}})"), unreadable + "\"document\" has no member \"version\"."},
           {holding(R"({"version":1,"tags":null})"),
            unreadable + "\"tags\" should be an object but is null."},
           {holding(R"({"version":1,"tags":{"artwork":{"data":"/9j/","format":"JPEG"}}})"),
            unreadable + "\"tags.artwork.format\" is neither \"jpeg\" nor \"png\"."},
           {stored.substr(0, stored.size() / 2), damaged},
           {stored.substr(1), damaged},
           {stored + "more", damaged},
           {head + "-1\n{}", damaged},
           {head + "99999999\n{}", damaged},
           {tooLong, damaged},
           {"", nothingThere},
           {signature, nothingThere},
       }) {
    SCOPED_TRACE(bytes);
    folder.file("02.mp3", track(text("TIT2", "Gloria"), 64));
    folder.file(".local/state/quillmark/pasteboard", bytes);
    // Refused before it is read. The file is sparse and takes no room on the disk.
    if (bytes == tooLong) filesystem::resize_file(store, tooLong.size() + 2147483649);
    check({{"paste --fields year 02.mp3", message.empty() ? updated : "", message},
           {"read 02.mp3", message.empty() ? "  Title  Gloria\n  Year   1977\n" : "  Title  Gloria\n"}});
  }
}

TEST_F(ClipboardCommandsTest, RefuseContentThatAnotherUserCouldHaveStored) {
  const std::string used = "The clipboard cannot be used: ";
  const std::string home = used + "the home folder is not the user's alone";
  const std::string parent = used + "a folder above it is not the user's alone";
  const std::string otherUser = used + "it belongs to another user";
  const std::string link = used + "a link is in its place";
  const std::string noFile = used + "it is no file of the user's own";
  const std::string noFolder = used + "Not a directory";
  // Shell commands, with the folder of the clipboard in $S, and the messages of pasting and copying, which
  // repairs the clipboard if it succeeds.
  for (const auto& [change, pasting, copying] : std::vector<std::array<std::string, 3>>{
           {"chmod 777 .", home + ".", home + there},
           {"chmod 777 .local/state", parent + ".", parent + there},
           {"chmod 777 $S", used + "others can use it.", ""},
           {"mv $S elsewhere; ln -s ../../elsewhere $S", noFolder + ".", noFolder + there},
           {"mv $S/pasteboard elsewhere; ln -s \"$PWD/elsewhere\" $S/pasteboard", link + ".", ""},
           {"mv $S/lock elsewhere; ln -s \"$PWD/elsewhere\" $S/lock", "", link + there},
           {"rm $S/pasteboard; mkdir $S/pasteboard", noFile + ".",
            "The clipboard could not be written: Is a directory" + there},
           {"rm $S/pasteboard; mkfifo -m 600 $S/pasteboard", noFile + ".", ""},
           {"chown 65534 .", home + ".", home + there},
           {"chown 65534 .local/state", parent + ".", parent + there},
           {"chown 65534 $S", otherUser + ".", otherUser + there},
           {"chown 65534 $S/pasteboard", noFile + ".", ""},
           {"chown 65534 $S/lock", "", noFile + there},
       }) {
    // Only root can make files of other users.
    if (change.starts_with("chown") && ::geteuid() != 0) continue;
    SCOPED_TRACE(change);
    shell("rm -rf .local elsewhere; chmod 700 .; chown $(id -u) .");
    check({{"copy 01.mp3", tags}});
    ASSERT_EQ(shell("S=.local/state/quillmark; " + change), 0);
    const std::string pasted = "would     02.mp3\n\nwould change 1, unchanged 0, failed 0\n";
    check({{"paste --dry-run 02.mp3", pasting.empty() ? pasted : "", pasting},
           {"copy 01.mp3", copying.empty() ? tags : "", copying}});
    if (!copying.empty()) continue;
    check({{"paste --dry-run 02.mp3", pasted}});
    EXPECT_EQ(filesystem::status(state).permissions(), filesystem::perms::owner_all);
  }
}

TEST_F(ClipboardCommandsTest, OfferTheSummaryToTheDesktop) {
  // A substitute for every clipboard program. Logs its arguments and the state that it inherits from the
  // process: ignored signals, its session, the folder, and a file that another program has opened for it.
  const std::string script = R"sh(#!/bin/sh
echo noise; echo noise >&2
while read -r name value; do [ "$name" != SigIgn: ] || ignored=${value#?????????}; done </proc/$$/status
read -r pid _ _ _ _ session _ </proc/$$/stat
echo "${0##*/} $* $ignored $((pid - session)) $(/bin/readlink /proc/$$/cwd /proc/$$/fd/9)" >>"$HOME/log"
)sh";
  const std::string takes = script + "/bin/cat >\"$HOME/taken\"; /bin/sleep 3 & exit 0";
  const std::string fails = script + "/bin/cat >/dev/null; exit 1";
  const std::string hangs = script + "echo $$ >\"$HOME/hung\"; exec /bin/sleep 30";
  const std::string wlCopy = "wl-copy --type text/plain 0000000 0 /\n";
  const std::string xclip = "xclip -selection clipboard -in 0000000 0 /\n";
  const std::string xsel = "xsel --clipboard --input 0000000 0 /\n";
  using Programs = std::vector<std::pair<const char*, std::string>>;
  const std::string longTitle(200'000, 'k');
  folder.file("01.mp3", track(text("TIT2", longTitle), 64));
  const auto offer = [&](const std::string& desktop, const Programs& programs, const std::string& log,
                         bool isTaken, const char* words = "copy 01.mp3") {
    SCOPED_TRACE(log);
    const TemporaryFolder bin;
    for (const auto& [name, contents] : programs)
      filesystem::permissions(bin.file(name, contents), filesystem::perms::owner_all);
    shell("rm -f log taken");
    const CommandLine done = run(words + " 9>held"s, desktop + " PATH=" + bin.path().native());
    EXPECT_EQ(contentsOf(folder.path() / "log"), log);
    EXPECT_EQ(contentsOf(folder.path() / "taken"), isTaken ? "Title: " + longTitle : "");
    EXPECT_EQ((done.output + done.error).find("noise"), std::string::npos);
  };
  const Programs all{{"wl-copy", takes}, {"xclip", takes}, {"xsel", takes}};
  const std::string both = "WAYLAND_DISPLAY=w DISPLAY=:7";
  offer("DISPLAY=", all, "", false);
  offer(both, all, wlCopy, true);
  offer(both, all, "", false, "copy --no-desktop 01.mp3");
  offer("WAYLAND_DISPLAY=w", {{"wl-copy", fails}, {"xclip", takes}}, wlCopy, false);
  offer(both, {{"wl-copy", fails}, {"xclip", takes}, {"xsel", takes}}, wlCopy + xclip, true);
  offer("DISPLAY=:7", {{"wl-copy", takes}, {"xclip", hangs}, {"xsel", takes}}, xclip + xsel, true);
  offer(both, {}, "", false);
  EXPECT_EQ(shell("test -s hung && ! kill -0 $(cat hung) 2>/dev/null"), 0) << "what takes no text is ended";
  shell("rm -r .local/state/quillmark; : >.local/state/quillmark");
  offer(both, all, "", false);
}

}  // namespace tests
