#include <gtest/gtest.h>

#include "tests/Program.h"
#include "tests/Samples.h"

namespace tests {

namespace {

class ReadCommandTest : public testing::Test {
 protected:
  ReadCommandTest() {
    folder.file("01 Kyrie.mp3", track(text("TPE1", "V\xE4skelund") + text("TALB", "Morning / Songs"), 64));
    folder.file("02 Gloria.mp3", audio());
    folder.file("03.mp3",
                track(text("TRCK", "3/12") + text("TIT2", "Credo") + frame("COMM", "\0eng\0one\ntwo"sv) +
                          frame("APIC", "\0image/png\0\3\0\x89PNG\r\n\x1A\n"s),
                      64));
  }

  const TemporaryFolder folder;
};

}  // namespace

TEST_F(ReadCommandTest, ListsTheFieldsOfEachFile) {
  const std::string kyrie = "  Artist  Väskelund\n  Album   Morning / Songs\n";
  const std::string gloria = "02 Gloria.mp3:\n  (no tags)\n";
  const std::string credo =
      "03.mp3:\n  Title         Credo\n  Comment       one\ntwo\n  Track Number  3\n  Track Total   12\n"
      "  Artwork       PNG, 8 bytes\n";
  const std::string missing = "quillmark: a~.mp3 could not be read.\n";
  const auto listed = [&](const std::string& name, std::string_view names) {
    folder.file(name, names);
    return name;
  };
  struct Row {
    std::vector<std::string> arguments;
    std::string output;
    std::string error;
    int failureStatus = 1;
  };
  for (const Row& row : std::vector<Row>{
           {{"read", "01 Kyrie.mp3", "--unknown"}, kyrie, ""},
           {{"read", "~/03.mp3", "02 Gloria.mp3", folder.path() / "01 Kyrie.mp3", "03.mp3"},
            credo + "\n" + gloria + "\n01 Kyrie.mp3:\n" + kyrie + "\n" + credo,
            ""},
           {{"read", "02 Gloria.mp3", "a~.mp3", "03.mp3"}, gloria + "\na~.mp3:\n", missing},
           {{"read", "02 Gloria.mp3", "--json", "a~.mp3"}, "", missing},
           {{"read", "a~.mp3", "02 Gloria.mp3", "--keep-going", "03.mp3"}, gloria + "\n" + credo, missing, 2},
           {{"read", "--json", "a~.mp3", "--keep-going"}, "{\n\n}\n", missing, 2},
           {{"read", "02 Gloria.mp3", "--files0-from", listed("two", "03.mp3\0a~.mp3\0"sv), "03.mp3"},
            gloria + "\n" + credo + "\n" + credo + "\na~.mp3:\n",
            missing},
           {{"read", "--files0-from", listed("tilde", "~/03.mp3\0"sv)},
            "",
            "quillmark: 03.mp3 could not be read.\n"},
           {{"read", "--files0-from", listed("empty", "")}, "", "quillmark: No files given.\n"},
           {{"read", "--files0-from", "no"},
            "",
            "quillmark: no could not be read: No such file or directory.\n"},
       }) {
    const Finished run = quillmark(row.arguments, folder.path());
    EXPECT_EQ(run.output, row.output);
    EXPECT_EQ(run.error, row.error);
    EXPECT_EQ(run.status, row.error.empty() ? 0 : row.failureStatus);
  }
  for (const auto& [names, reason] : std::vector<std::pair<std::string_view, std::string>>{
           {"03.mp3\0\0"sv, "a name in it is empty"},
           {"03.mp3\n"sv, "its last name is not ended by a NUL, as find -print0 does"}}) {
    const Finished run = quillmark({"read", "03.mp3", "--files0-from", listed("list", names)}, folder.path());
    EXPECT_EQ(run.error, "quillmark: list cannot be used as a list of files: " + reason + ".\n");
    EXPECT_EQ(run.output + std::to_string(run.status), "1");
  }
}

TEST_F(ReadCommandTest, PrintsJSONByPath) {
  std::string path = std::filesystem::canonical(folder.path()).native();
  for (std::size_t at = 0; (at = path.find('/', at)) != std::string::npos; at += 2) path.insert(at, 1, '\\');
  const std::string odd = "0\"\\\n\x01\x7F\u00FC\xFF.mp3";
  folder.file(odd, track(text("TCON", "\x80"), 64));
  const Finished run =
      quillmark({"read", "03.mp3", "02 Gloria.mp3", "--json", odd, ".//./03.mp3"}, folder.path());
  EXPECT_EQ(run.error + std::to_string(run.status), "0");
  const std::string key = "\n  \"" + path + "\\/";
  EXPECT_EQ(run.output, "{" + key + R"(0\"\\\n\u0001)" + "\x7F\u00FC\uFFFD" + R"(.mp3" : {
    "genre" : ")" + "\u0080" +
                            R"("
  },)" + key + R"(02 Gloria.mp3" : {

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
)");
  const Finished early =
      quillmark({"read", "03.mp3", "02 Gloria.mp3", "--json", odd, "no.mp3", ".//./03.mp3", "--keep-going"},
                folder.path());
  EXPECT_EQ(early.output, run.output);
  EXPECT_EQ(early.error + std::to_string(early.status), "quillmark: no.mp3 could not be read.\n2");
}

TEST_F(ReadCommandTest, PrintsPictureSizesAndRefusesEqualNamesInJSON) {
  folder.file("a\xFF.mp3", audio());
  folder.file("a\xFE.mp3", audio());
  const std::string sized = quillmark({"read", "--json", "--no-artwork", "03.mp3"}, folder.path()).output;
  EXPECT_NE(sized.find("{\n      \"bytes\" : 8,\n      \"format\" : \"png\"\n    }"), std::string::npos);
  EXPECT_EQ(quillmark({"read", "--json", "a\xFF.mp3", "./a\xFF.mp3"}, folder.path()).status, 0);
  const Finished clash =
      quillmark({"read", "--json", "--keep-going", "a\xFF.mp3", "a\xFE.mp3"}, folder.path());
  EXPECT_TRUE(clash.error.starts_with("quillmark: a\xFE.mp3 and another file have one and the same name"));
  EXPECT_EQ(clash.output + std::to_string(clash.status), "1");
}

TEST_F(ReadCommandTest, PrintsTheSelectedFieldsAndTables) {
  folder.file("a\t\\\n\xFF.mp3", track(text("TIT2", "one\ntwo\r\t\\ three") + text("TYER", "1977"), 64));
  std::filesystem::create_directory(folder.path() / "b");
  const std::string escaped = "a\\t\\\\\\n\xFF.mp3\t";
  const std::string missing = "quillmark: no.mp3 could not be read.\n";
  struct Row {
    std::vector<std::string> arguments;
    std::string output;
    std::string error = {};
    int status = 0;
  };
  for (const Row& row : std::vector<Row>{
           {{"--table", "b/../03.mp3", "02 Gloria.mp3"}, "03.mp3\t3\tCredo\t\t\t\n02 Gloria.mp3\t\t\t\t\t\n"},
           {{"--table", "--paths", "--fields", "artwork, comment,trackTotal,comment", "./03.mp3"},
            "./03.mp3\tPNG, 8 bytes\tone\\ntwo\t12\n"},
           {{"--table", "a\t\\\n\xFF.mp3"}, escaped + "\tone\\ntwo\\r\\t\\\\ three\t\t\t1977\n"},
           {{"--table", "--fields", ",", "03.mp3", "no.mp3", "03.mp3"}, "03.mp3\n", missing, 1},
           {{"--table", "--fields", "bpm", "--keep-going", "03.mp3", "no.mp3", "03.mp3"},
            "03.mp3\t\n03.mp3\t\n",
            missing,
            2},
           {{"--fields", "trackNumber,title", "03.mp3", "02 Gloria.mp3"},
            "03.mp3:\n  Title         Credo\n  Track Number  3\n\n02 Gloria.mp3:\n  (none of these "
            "fields)\n"},
           {{"--fields", "title,mood", "03.mp3"},
            "",
            "quillmark: Unknown field 'mood'. Run 'quillmark fields' for the list.\n",
            1},
           {{"--table", "--json", "03.mp3"},
            "",
            "quillmark: read takes only one of --json, --table and --save-artwork.\n",
            1},
       }) {
    SCOPED_TRACE(testing::PrintToString(row.arguments));
    auto words = row.arguments;
    words.insert(words.begin(), "read");
    const Finished run = quillmark(words, folder.path());
    EXPECT_EQ(run.output, row.output);
    EXPECT_EQ(run.error, row.error);
    EXPECT_EQ(run.status, row.status);
  }
  const std::string document =
      quillmark({"read", "--json", "--fields", "track-total", "03.mp3"}, folder.path()).output;
  EXPECT_TRUE(document.ends_with("03.mp3\" : {\n    \"trackTotal\" : 12\n  }\n}\n"));
}

TEST_F(ReadCommandTest, SavesTheArtwork) {
  const std::string picture = "\x89PNG\r\n\x1A\n";
  const auto save = [&](const std::string& to, const std::string& from = "03.mp3") {
    return quillmark({"read", "--save-artwork", to, from}, folder.path());
  };
  EXPECT_EQ(save("-").output, picture);
  const auto saved = folder.path() / "cover";
  const mode_t mask = ::umask(027);
  const Finished made = save("~/cover");
  ::umask(mask);
  EXPECT_EQ(made.output + made.error + std::to_string(made.status), "0");
  EXPECT_EQ(contentsOf(saved), picture);
  const auto rights = [&] { return std::filesystem::status(saved).permissions(); };
  EXPECT_EQ(rights(), std::filesystem::perms{0640});

  const std::ptrdiff_t entries = folder.entryCount();
  folder.file("cover", "a longer picture");
  std::filesystem::permissions(saved, std::filesystem::perms{0604});
  const FileState before(saved);
  EXPECT_EQ(save("cover", "02 Gloria.mp3").error, "quillmark: 02 Gloria.mp3 has no artwork.\n");
  EXPECT_EQ(save("cover", "no.mp3").error, "quillmark: no.mp3 could not be read.\n");
  EXPECT_TRUE(FileState(saved) == before);
  EXPECT_EQ(save("cover").error, "");
  EXPECT_EQ(contentsOf(saved), picture);
  EXPECT_NE(FileState(saved).inode, before.inode);
  EXPECT_EQ(rights(), std::filesystem::perms{0604});
  EXPECT_EQ(folder.entryCount(), entries);

  folder.file("other", "of another program");
  std::filesystem::create_symlink("other", folder.path() / "link");
  std::filesystem::create_symlink("nowhere", folder.path() / "dangling");
  for (const auto& [to, error] : std::vector<std::pair<std::string, std::string>>{
           {"link", "link could not be written: it is a symbolic link."},
           {"dangling", "dangling could not be written: it is a symbolic link."},
           {"/dev/null", "null could not be written: it is not a regular file."},
           {"/", "/ could not be written: it is a folder."},
           {"01 Kyrie.mp3", "--save-artwork does not replace an MP3 with a picture: 01 Kyrie.mp3."},
           {"new.MP3", "--save-artwork does not replace an MP3 with a picture: new.MP3."},
       }) {
    const Finished run = save(to);
    EXPECT_EQ(run.error, "quillmark: " + error + "\n");
    EXPECT_EQ(run.output + std::to_string(run.status), "1");
  }
  EXPECT_EQ(quillmark({"read", "--save-artwork", "x", "03.mp3", "03.mp3"}, folder.path()).error,
            "quillmark: --save-artwork takes one MP3.\n");
  EXPECT_EQ(contentsOf(folder.path() / "other"), "of another program");
  EXPECT_EQ(folder.entryCount(), entries + 3);
}

}  // namespace tests
