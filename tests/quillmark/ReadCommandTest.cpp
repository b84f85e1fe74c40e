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
}

TEST_F(ReadCommandTest, TellsPicturesInJSONByTheirSizeAndNamesThatAreOne) {
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

}  // namespace tests
