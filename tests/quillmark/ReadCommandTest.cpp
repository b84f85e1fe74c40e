#include "tests/Program.h"

namespace tests {

const std::string picture = "\x89PNG\r\n\x1A\n";

class ReadCommandTest : public ProgramTest {
 protected:
  ReadCommandTest() {
    folder.file("01.mp3", track(text("TPE1", "V\xE4skelund") + text("TALB", "Morning / Songs"), 64));
    folder.file("02.mp3", audio());
    folder.file("03.mp3",
                track(text("TRCK", "3/12") + text("TIT2", "Credo") + frame("COMM", "\0eng\0one\ntwo"sv) +
                          frame("APIC", "\0image/png\0\3\0"s + picture),
                      64));
  }
};

TEST_F(ReadCommandTest, ListsTheFieldsOfEachFile) {
  const std::string first = "  Artist  Väskelund\n  Album   Morning / Songs\n";
  const std::string second = "02.mp3:\n  (no tags)\n";
  const std::string third =
      "03.mp3:\n  Title         Credo\n  Comment       one\ntwo\n  Track Number  3\n  Track Total   12\n"
      "  Artwork       PNG, 8 bytes\n";
  const std::string missing = "a~.mp3 could not be read.";
  const std::string unusable = " cannot be used as a list of files: ";
  shell(R"(printf '03.mp3\0a~.mp3\0' >two; printf '~/03.mp3\0' >tilde; printf '03.mp3\0\0' >twice)");
  shell(": >empty; echo 03.mp3 >lines");
  check({
      {"read 01.mp3 --unknown", first},
      {"read '~/03.mp3' 02.mp3 " + (folder.path() / "01.mp3").native() + " 03.mp3",
       third + "\n" + second + "\n01.mp3:\n" + first + "\n" + third},
      {"read 02.mp3 a~.mp3 03.mp3", second + "\na~.mp3:\n", missing},
      {"read 02.mp3 --json a~.mp3", "", missing},
      {"read a~.mp3 02.mp3 --keep-going 03.mp3", second + "\n" + third, missing, 2},
      {"read --json a~.mp3 --keep-going", "{\n\n}\n", missing, 2},
      {"read 02.mp3 --files0-from two 03.mp3", second + "\n" + third + "\n" + third + "\na~.mp3:\n", missing},
      {"read --files0-from tilde", "", "03.mp3 could not be read."},
      {"read --files0-from empty", "", "No files given."},
      {"read --files0-from no", "", "no could not be read: No such file or directory."},
      {"read 03.mp3 --files0-from twice", "", "twice" + unusable + "a name in it is empty."},
      {"read 03.mp3 --files0-from lines", "",
       "lines" + unusable + "its last name is not ended by a NUL, as find -print0 does."},
  });
}

TEST_F(ReadCommandTest, PrintsJSONByPath) {
  std::string path = std::filesystem::canonical(folder.path()).native();
  for (std::size_t at = 0; (at = path.find('/', at)) != std::string::npos; at += 2) path.insert(at, 1, '\\');
  folder.file("0\"\\\n\x01\x7F\u00FC\xFF.mp3", track(text("TCON", "\x80"), 64));
  shell("cp 02.mp3 a\xFF.mp3; cp 02.mp3 a\xFE.mp3");
  const std::string key = "\n  \"" + path + "\\/";
  const std::string document = "{" + key + R"(0\"\\\n\u0001)" + "\x7F\u00FC\uFFFD" + R"(.mp3" : {
    "genre" : ")" + "\u0080" + R"("
  },)" + key + R"(02.mp3" : {

  },)" + key + R"(03.mp3" : {
    "artwork" : {
      "data" : "iVBORw0KGgo=",
      "format" : "png"
    },
    "comment" : "one\ntwo",
    "title" : "Credo",
    "trackNumber" : 3,
    "trackTotal" : 12
  }
}
)";
  const std::string odd = "'0\"\\\n\x01\x7F\u00FC\xFF.mp3'";
  check({
      {"read 03.mp3 02.mp3 --json " + odd + " .//./03.mp3", document},
      {"read 03.mp3 02.mp3 --json " + odd + " no.mp3 --keep-going", document, "no.mp3 could not be read.", 2},
      {"read --json --no-artwork --fields artwork,track-total 03.mp3",
       "{" + key +
           "03.mp3\" : {\n    \"artwork\" : {\n      \"bytes\" : 8,\n      \"format\" : \"png\"\n    },\n"
           "    \"trackTotal\" : 12\n  }\n}\n"},
      {"read --json a\xFF.mp3 ./a\xFF.mp3", "{" + key + "a\uFFFD.mp3\" : {\n\n  }\n}\n"},
  });
  const CommandLine clash = run("read --json --keep-going a\xFF.mp3 a\xFE.mp3");
  EXPECT_TRUE(clash.error.starts_with("quillmark: a\xFE.mp3 and another file have one and the same name"));
  EXPECT_EQ(clash.output + std::to_string(*clash.status), "1");
}

TEST_F(ReadCommandTest, PrintsTheSelectedFieldsAndTables) {
  folder.file("a\t\\\n\xFF.mp3", track(text("TIT2", "one\ntwo\r\t\\ three") + text("TYER", "1977"), 64));
  const std::string missing = "no.mp3 could not be read.";
  check({
      {"read --table .//./03.mp3 02.mp3", "03.mp3\t3\tCredo\t\t\t\n02.mp3\t\t\t\t\t\n"},
      {"read --table --paths --fields 'artwork, comment,trackTotal,comment' ./03.mp3",
       "./03.mp3\tPNG, 8 bytes\tone\\ntwo\t12\n"},
      {"read --table 'a\t\\\n\xFF.mp3'", "a\\t\\\\\\n\xFF.mp3\t\tone\\ntwo\\r\\t\\\\ three\t\t\t1977\n"},
      {"read --table --fields , 03.mp3 no.mp3 03.mp3", "03.mp3\n", missing},
      {"read --table --fields bpm --keep-going 03.mp3 no.mp3 03.mp3", "03.mp3\t\n03.mp3\t\n", missing, 2},
      {"read --fields trackNumber,title 03.mp3 02.mp3",
       "03.mp3:\n  Title         Credo\n  Track Number  3\n\n02.mp3:\n  (none of these fields)\n"},
      {"read --fields title,mood 03.mp3", "", "Unknown field 'mood'. Run 'quillmark fields' for the list."},
      {"read --table --json 03.mp3", "", "read takes only one of --json, --table and --save-artwork."},
  });
}

TEST_F(ReadCommandTest, SavesTheArtwork) {
  using std::filesystem::perms;
  const auto saved = folder.path() / "cover";
  const mode_t mask = ::umask(027);
  check({{"read --save-artwork - 03.mp3", picture}, {"read --save-artwork '~/cover' 03.mp3", ""}});
  ::umask(mask);
  EXPECT_EQ(contentsOf(saved), picture);
  EXPECT_EQ(std::filesystem::status(saved).permissions(), perms{0640});

  folder.file("cover", "a longer picture");
  const auto other = folder.file("other", "of another program");
  shell("ln -s other link; chmod 604 cover; ln cover kept");
  const std::string before = stateOf(saved);
  const std::ptrdiff_t entries = folder.entryCount();
  const std::string notWritten = " could not be written: it is ";
  const std::string noMP3 = "--save-artwork does not replace an MP3 with a picture: ";
  check({
      {"read --save-artwork cover 02.mp3", "", "02.mp3 has no artwork."},
      {"read --save-artwork cover no.mp3", "", "no.mp3 could not be read."},
      {"read --save-artwork cover 03.mp3 03.mp3", "", "--save-artwork takes one MP3."},
      {"read --save-artwork link 03.mp3", "", "link" + notWritten + "a symbolic link."},
      {"read --save-artwork /dev/null 03.mp3", "", "null" + notWritten + "not a regular file."},
      {"read --save-artwork / 03.mp3", "", "/" + notWritten + "a folder."},
      {"read --save-artwork 01.mp3 03.mp3", "", noMP3 + "01.mp3."},
      {"read --save-artwork new.MP3 03.mp3", "", noMP3 + "new.MP3."},
  });
  EXPECT_TRUE(stateOf(saved) == before);
  EXPECT_EQ(contentsOf(other), "of another program");
  check({{"read --save-artwork cover 03.mp3", ""}});
  EXPECT_EQ(contentsOf(saved), picture);
  EXPECT_EQ(contentsOf(folder.path() / "kept"), "a longer picture");
  EXPECT_EQ(std::filesystem::status(saved).permissions(), perms{0604});
  EXPECT_EQ(folder.entryCount(), entries);
}

}  // namespace tests
