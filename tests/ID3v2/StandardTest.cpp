#include <gtest/gtest.h>

#include "ID3v2/Reading.h"
#include "ID3v2/Writing.h"
#include "tests/TagBytes.h"

namespace tests {

namespace {

using namespace ID3v2;

/// Applies unsynchronisation as the programs that write tags do.
std::string unsynchronised(std::string bytes) {
  for (std::size_t i = bytes.size(); i-- > 0;) {
    const int next = static_cast<unsigned char>(bytes[i + 1]);
    if (bytes[i] == '\xFF' && (next >= 0xE0 || next == 0)) bytes.insert(i + 1, 1, '\0');
  }
  return bytes;
}

const auto v2 = [] { return TagBytes(2); };
const auto v3 = [](std::uint8_t flags = 0) { return TagBytes(3, flags); };
const auto v4 = [](std::uint8_t flags = 0) { return TagBytes(4, flags); };
/// Returns the frames of the tag without its header, for building a body that contains more than frames.
std::string frames(const TagBytes& tag) {
  return tag.characters().substr(10);
}

std::string repeated(int count, std::string_view text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

const std::string picture = "\0image/jpeg\0\3\0\xFF\xD8\xFF\xE0\0\1\xFF"s + std::string(200, 'p');
const std::string chapter = "c1\0\0\0\0\0\0\0\3\xE8\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s;
const std::string long200(200, 'L');
// zlib streams: "abc" ten times after an encoding byte 3 or 0, and 70000 times "a" after 3.
const std::string deflatedUTF8 = "\x78\x9c\x63\x4e\x4c\x4a\xc6\x83\x00\xb2\x6a\x0b\x80"s;
const std::string deflatedLatin1 = "\x78\x9c\x63\x48\x4c\x4a\xc6\x83\x00\xb2\x0d\x0b\x7d"s;
const std::string deflatedBomb =
    "\x78\xda\xed\xc1\x21\x01\x00\x00\x00\x02\xa0\xe0\x52\xff\x9f\xf0\x84\x11\x48\x01"s +
    std::string(66, '\0') + "\x80\xbb\x01\x7b\x8b\xa1\x7d"s;
const std::string hidden = std::string(147, 'o') + frames(v3().text("TPE1", "x")) + std::string(116, 'o');
const TagBytes pictured = v3().frame("APIC", picture).text("TALB", "a");
const TagBytes album = v3().text("TALB", "a");
const std::string noCounterpart = ", which ID3v2.3 has no counterpart for";

/// A tag, the v2.3 tag with the same meaning, and the names of the parts that are unreadable.
struct Row {
  const char* what;
  std::string tag;
  TagBytes written;
  std::string unreadable = {};
};

// clang-format off
const Row rows[] = {
    {"a v2.3 tag is unchanged",
     v3().frame("TIT2", "\1"s + utf16("a"), 0xE000).text("TPE1", "x").frame("tit2", "?")
         .frame("TIT3", "\0\0\0\x1F"s + deflatedLatin1, 0x80).padding(9),
     v3().frame("TIT2", "\1"s + utf16("a"), 0xE000).text("TPE1", "x").frame("tit2", "?")
         .frame("TIT3", "\0\0\0\x1F"s + deflatedLatin1, 0x80)},
    {"an unsynchronised v2.3 tag with an extended header",
     v3(0xC0).raw(unsynchronised("\0\0\0\6\0\0\0\0\0\0"s + frames(pictured))), pictured},
    {"unsynchronised v2.4 frames, with and without a length",
     v4(0x80).frame("APIC", unsynchronised(picture), 2)
         .frame("APIC", TagBytes::synchsafe(picture.size()) + unsynchronised(picture), 3)
         .frame("PRIV", "not so\0\xFF\0\xFF"s, 2),
     v3().frame("APIC", picture).frame("APIC", picture).frame("PRIV", "not so\0\xFF\0\xFF"s)},
    {"a v2.4 tag unsynchronised as a whole, with frame sizes from before",
     v4(0x80).raw(unsynchronised(frames(v4().frame("APIC", picture).text("TALB", "a")))), pictured},
    {"the flag for unsynchronisation without unsynchronised bytes",
     v3(0x80).frame("APIC", picture).text("TALB", "a"), pictured},
    {"an extended header of v2.3 that counts its own size field",
     v3(0x40).raw("\0\0\0\xA\0\0\0\0\0\0"s).text("TALB", "a"), album},
    {"a body too short for the size of an extended header", v3(0x40).raw("\0\0\0"s), v3()},
    {"data after the last frame", v3().text("TALB", "a").padding(3).raw("TIT"), album,
     "the data after frame TALB"},
    {"data instead of frames", v3().raw("junk"), v3(), "the data in its tag"},
    {"plain sizes in v2.4, with three zero bytes in front of the padding",
     v4().raw("TIT2\0\0\1\x49\0\0\1"s + utf16(std::string(162, 'L')) + "\0\0"s).padding(99),
     v3().text("TIT2", std::string(162, 'L'))},
    {"a size that leads into the padding if read the other way, before a damaged frame",
     v4().frame("TIT2", "\3" + long200).frame("\x80TT2", "\3t").padding(200), v3().text("TIT2", long200),
     "the data after frame TIT2"},
    {"unsynchronised v2.4 frames before damage, which lead into the padding if unsynchronised as a whole",
     v4(0x80).frame("TIT2", "\1\xFF\0\xFE\x41\0"s).frame("TPE1", "\1\xFF\0\xFE\x42\0"s).text("TALB", "a")
         .raw("\1\2\3").padding(2000), v3().frame("TIT2", "\0A"s).frame("TPE1", "\0B"s).text("TALB", "a"),
     "the data after frame TALB"},
    {"the same with the flags of unsynchronised frames",
     v4(0x80).frame("TIT2", "\3a", 2).frame("PRIV", unsynchronised(repeated(6, "\xFF\xE0")), 2).raw("\0\0TT"s)
         .padding(20), v3().text("TIT2", "a").frame("PRIV", repeated(6, "\xFF\xE0")),
     "the data after frame PRIV"},
    {"a size in v2.4 that leads to the end of the tag if read the other way",
     v4().frame("TIT2", "\3" + long200).text("TALB", "a").raw(std::string(116, '?')),
     v3().text("TIT2", long200).text("TALB", "a"), "the data after frame TALB"},
    {"synchsafe sizes in v2.3, of which one leads into the padding if read as a plain one",
     v3().text("TIT2", "t").raw("TALB\0\0\1\x49\0\0\0"s + long200).text("TPE1", "x").padding(999),
     v3().text("TIT2", "t").text("TALB", long200).text("TPE1", "x")},
    {"a v2.3 tag unsynchronised frame by frame, which leads into the padding if read as a whole",
     v3(0x80).frame("TALB", "\1\xFF\0\xFE\x41\0"s).text("TPE1", "x").text("TCON", "y").padding(2000),
     v3().frame("TALB", "\1\xFF\xFE\x41\0"s).text("TPE1", "x").text("TCON", "y")},
    {"plain sizes in v2.4, one of which leads to a frame inside its own frame if read as synchsafe",
     v4().raw("TIT2\0\0\0\xC9\0\0\3"s + long200).raw("PRIV\0\0\1\x13\0\0"s + hidden).text("TALB", "a"),
     v3().text("TIT2", long200).frame("PRIV", hidden).text("TALB", "a")},
    {"more frames than any program writes", v3().raw(repeated(0x8001, frames(v3().text("TALB", "a")))),
     v3().raw(repeated(0x8000, frames(v3().text("TALB", "a")))), "the data after frame TALB"},
    {"more frames in chapters than any program writes",
     v4().frame("CHAP", chapter + repeated(20'000, frames(v4().text("TIT2", "T"))))
         .frame("CHAP", chapter + repeated(20'000, frames(v4().text("TIT2", "T")))),
     v3().frame("CHAP", chapter + repeated(20'000, frames(v3().text("TIT2", "T")))), "the frame CHAP"},
    {"a frame longer than its tag", v3().text("TALB", "a").frameDeclaring(90, "TIT2", "abc"), album,
     "the data after frame TALB"},
    {"a tag beyond its file", v3().text("TALB", "a").declaring(900), album, "the cut-off end of its tag"},
    {"compression, lengths, frames that stay compressed, identifiers of v2.2",
     v4().frame("TIT2", "\0\0\0\x1F"s + deflatedUTF8, 9).frame("TPE1", deflatedUTF8, 8)
         .frame("TPE2", "\0\0\0\3\3ab"s, 1).frame("PRIV", deflatedLatin1)
         .frame("TIT1", "\0\4\x22\x71"s + deflatedBomb, 9)
         .frame("TIT3", "\0\0\0\x1F"s + deflatedUTF8 + "?", 9).text("TCP\0"sv, "1").frame("TT2\0"sv, "\3t"),
     v3().text("TIT2", repeated(10, "abc")).text("TPE1", repeated(10, "abc")).text("TPE2", "ab")
         .frame("PRIV", deflatedLatin1).frame("TIT1", "\0\1\x11\x71"s + deflatedBomb, 0x80)
         .frame("TIT3", "\0\0\0\x1F"s + deflatedUTF8 + "?", 0x80).text("TCMP", "1").text("TIT2", "t")},
    {"status flags, groups and encryption, also with a length, which v2.3 cannot represent",
     v4().frame("TIT2", "G\3a", 0x5040).frame("PRIV", "Go\0d"s, 0x2040).frame("TPE1", "Mxx", 4)
         .frame("TPE2", "GM\0\0\0\x9xx"s, 0x4D).frame("TIT3", "M\0\0\0\2xx"s, 5),
     v3().frame("TIT2", "G\0a"s, 0xA020).frame("PRIV", "Go\0d"s, 0x4020).frame("TPE1", "Mxx", 0x40)
         .frame("TPE2", "\0\0\0\x9MGxx"s, 0xE0), "the encrypted frame TIT3"},
    {"all encodings, terminators, several values, a flag for an extended header without the header",
     v4(0x40).frame("TIT2", "\0\xE9\0\0"s).frame("TPE1", "\1\xFE\xFF\0A\0\0\x20\xAC"s)
         .frame("TPE2", "\2\x20\xAC\0\0"s).frame("TCOM", "\3\xC3\xA9\0\xE2\x82\xAC\0"s)
         .frame("TPE3", "\1\xFF\xFE\xAC"s).frame("TEXT", "\3\xFF"),
     v3().frame("TIT2", "\0\xE9"s).frame("TPE1", "\1\xFF\xFE\x41\0\0\0\xFF\xFE\xAC\x20"s)
         .frame("TPE2", "\1\xFF\xFE\xAC\x20").frame("TCOM", "\1\xFF\xFE\xE9\0\0\0\xFF\xFE\xAC\x20"s)
         .frame("TPE3", "\0\xAC"s).frame("TEXT", "\3\xFF")},
    {"an extended header of v2.4, descriptions, links, seconds, an empty text, an empty frame",
     v4(0x40).raw("\0\0\0\6\1\0"s).frame("COMM", "\3engd\0\xE2\x82\xAC"s).frame("USLT", "\3xxx\0"s)
         .frame("TXXX", "\2\0d\0\0\0v"s).frame("TXXX", "\3k\0"s)
         .frame("APIC", "\3image/png\0\4\xC3\xA9\0\x89PNG"s).frame("WXXX", "\3\xC3\xA9\0http"s)
         .frame("WOAR", "http\0x"s).frame("WFED", "\0u\0"s).text("TDRC", "981173106").frame("TIT2", "")
         .text("TALB", "a"),
     v3().frame("COMM", "\1eng"s + utf16("d") + "\0\0\xFF\xFE\xAC\x20"s)
         .frame("USLT", "\1xxx\xFF\xFE\0\0\xFF\xFE\0\0"s).frame("TXXX", "\0d\0v"s)
         .frame("TXXX", "\1"s + utf16("k") + "\0\0\xFF\xFE\0\0"s)
         .frame("APIC", "\0image/png\0\4\xE9\0\x89PNG"s).frame("WXXX", "\3\xC3\xA9\0http"s)
         .frame("WOAR", "http\0x"s).frame("WFED", "\0u"s).text("TDRC", "981173106").text("TALB", "a")},
    {"identifiers and layouts of v2.2, of which some have no counterpart, and a picture that is too short",
     v2().text("TT2", "t").frame("PIC", "\0PNG\3d\0\x89PNG"s).frame("PIC", "\0-->\4\0http"s).text("TSP", "s")
         .frame("LNK", "TT2u\0"s).frame("COM", "\0eng\0c"s).frame("CNT", "\0\0\0\1"s).frame("CRM", "o\0e\0d"s)
         .frame("XYZ", "?").frame("PIC", "\0JP"s).text("TAL", "a"),
     v3().text("TIT2", "t").frame("APIC", "\0image/png\0\3d\0\x89PNG"s).frame("APIC", "\0-->\0\4\0http"s)
         .text("TSOP", "s").frame("LINK", "TIT2u\0"s).frame("COMM", "\0eng\0c"s).frame("PCNT", "\0\0\0\1"s)
         .text("TALB", "a"),
     "the frame CRM" + noCounterpart + "; the frame XYZ" + noCounterpart + "; the frame PIC"},
    {"chapters of v2.4, of which some cannot be converted",
     v4().frame("CTOC", "t\0\3\2c1\0c2\0"s + frames(v4().frame("TIT2", "\3T")))
         .frame("CHAP", chapter + frames(v4().frame("TIT2", "\3" + long200).frame("WXXX", "\3\xC3\xA9\0u"s)))
         .frame("CHAP", chapter + "?").frame("CHAP", chapter + frames(v4().frame("TIT2", "M\0\0\0\2xx"s, 5)))
         .frame("CTOC", "?").text("TALB", "a"),
     v3().frame("CTOC", "t\0\3\2c1\0c2\0"s + frames(v3().text("TIT2", "T")))
         .frame("CHAP", chapter + frames(v3().text("TIT2", long200).frame("WXXX", "\3\xC3\xA9\0u"s)))
         .frame("CTOC", "?").text("TALB", "a"), "the frame CHAP; the frame CHAP"},
};
// clang-format on

/// Removes the bytes of v2.4 frames, so that `write` makes v2.3 frames from their content.
void makeAnew(std::vector<Frame>& frames) {
  std::erase_if(frames, [](const Frame& frame) {
    return std::holds_alternative<Unread>(frame.content) || frame.content == Content(Opaque{});
  });
  for (Frame& frame : frames) {
    frame.original = {};
    if (auto* inner = std::get_if<Chapter>(&frame.content)) makeAnew(inner->frames);
    if (auto* table = std::get_if<TableOfContents>(&frame.content)) makeAnew(table->frames);
  }
}

Written writtenWith(const Tag& tag, std::size_t padding) {
  return write(tag, [&](std::size_t) { return padding; });
}

}  // namespace

TEST(StandardTest, ReadsWhatTheStandardsAllow) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    auto reading = read(bytesFrom(row.tag));
    ASSERT_TRUE(reading);
    std::string unreadable;
    for (const auto& part : reading->unreadable) unreadable += (unreadable.empty() ? "" : "; ") + part.what;
    EXPECT_EQ(unreadable, row.unreadable);
    if (std::exchange(reading->tag.version, 3) == 4) makeAnew(reading->tag.frames);
    const Written written = writtenWith(reading->tag, 5);
    EXPECT_TRUE(written.notKept.empty());
    EXPECT_EQ(platform::charactersOf(written.bytes), TagBytes(row.written).padding(5).characters());
  }
}

TEST(StandardTest, FindsTheEndOfATag) {
  const std::string tag = v4(0x10).text("TALB", "a").characters();
  const std::string footer = "3DI" + tag.substr(3, 7);
  EXPECT_EQ(tagLength(bytesFrom(tag)), tag.size() + 10);
  EXPECT_EQ(read(bytesFrom(tag + footer + audio()))->length, tag.size() + 10);
  EXPECT_EQ(read(bytesFrom(tag + audio()))->length, tag.size());
  EXPECT_EQ(read(bytesFrom(TagBytes(2, 0, 7).padding(9).characters()))->length, 19);
  for (const std::string& none : {"ID3"s, TagBytes(5).padding(9).characters(), audio()})
    EXPECT_FALSE(read(bytesFrom(none))) << none.substr(0, 4);
}

TEST(StandardTest, NamesTheFramesThatCannotBeWritten) {
  EXPECT_EQ(writtenWith({}, std::size_t{1} << 28).bytes.size(), (1 << 28) + 9);
  const Tag tag{.frames = {{.identifier = "WOAR", .content = URL{"\xE2\x82\xAC"}},
                           {.identifier = "TT2", .content = Text{"a"}}}};
  const Written written = writtenWith(tag, 0);
  EXPECT_EQ(written.notKept, (std::vector{"the frame WOAR"s, "the frame TT2"s}));
  EXPECT_EQ(written.bytes.size(), 10);
}

}  // namespace tests
