"""Tags to check, made by hand or by other programs."""
import struct
import subprocess
import zlib

from mutagen.id3 import (APIC, CHAP, COMM, CTOC, GEOB, ID3, POPM, PRIV, TBPM, TCON, TDRC, TIPL, TIT2, TMCL, TMOO, TPE1,
                         TPOS, TRCK, TSOP, TXXX, UFID, USLT, WOAR, WXXX, Frames)

from tagbytes import f2, f3, f4, size4, tag, text, unsynchronised

PNG = b"\x89PNG\r\n\x1a\n" + bytes(range(256)) * 3
JPEG = b"\xff\xd8\xff\xe1" + b"Exif\0\0" + bytes(range(255, -1, -1)) * 3
AUDIO = b"\xff\xfb\x90\x64" + bytes(range(256)) * 4
PICTURE = b"\0image/jpeg\0\3\0" + JPEG
FULL_COMMENTS = (f3("COMM", b"\0engiTunNORM\0 00000A"), f3("COMM", b"\0engsource\0CD"), f3("COMM", b"\0deu\0Ein Satz"),
                 f3("COMM", b"\0engSongs-DB_Custom1\0a"), f3("COMM", b"\0deuID3v1 Comment\0b"))

# Whole tags, each under the name of its oddity. Words of the names choose checks: "refused" marks those that --lossless
# does not write; for "APE" and "ID3v1", see after_audio.
HAND_MADE = {
    "v2.3 unsynchronised": tag(3, body=unsynchronised(f3("TIT2", text("ÿþ")) + f3("APIC", PICTURE) + bytes(9)),
                               flags=0x80),
    "v2.3 several values": tag(3, f3("TPE1", text("A\0B", 1)), f3("TCON", text("(51)(39)Noise (old)"))),
    "v2.3 UTF-8, missing marks": tag(3, f3("TIT2", text("Väskelund", 3)), f3("TPE1", b"\1A\0B\0"),
                                     f3("TALB", text("x/y", 1))),
    "v2.3 empty frame in the middle": tag(3, f3("TIT2", text("Kyrie")), f3("TPE1", b""), f3("TALB", text("Songs")),
                                          f3("PRIV", b"o\0x")),
    "v2.3 undecodable text": tag(3, f3("TIT2", b"\1\xff\xfe\0\xd8"), f3("TALB", text("Songs"))),
    "v2.3 refused, a size that does not fit": tag(3, f3("TIT2", text("Kyrie")), b"TXXX\0\1\0\0\0\0\0k\0v"),
    "v2.4 encrypted by an unknown method": tag(4, f4("TSOP", text("Kyrie"), 0x000C)),
    "v2.3 flags, invalid identifier": tag(3, f3("TCOM", text("C"), 0xE000), f3("TENC", b"G" + text("E"), 0x0020),
                                    f3("PRIV", b"\x81\xff\0?", 0x0040),
                                    f3("TXXX", b"\0\0\0\5" + zlib.compress(b"\0k\0v!"), 0x0080), f3("AB?!", b"odd"),
                                    flags=0x20),
    "v2.4 flags": tag(4, f4("TCOM", text("C"), 0x7000), f4("TENC", b"G" + text("E"), 0x0040),
                      f4("TXXX", size4(5) + zlib.compress(b"\0k\0v!"), 0x0009),
                      f4("TMOO", text("\xff").replace(b"\xff", b"\xff\0"), 0x0002),
                      f4("TALB", size4(3) + text("Al"), 0x0001), f4("TPE2", b""), f4("TCMP", text("\xff")), flags=0x20),
    "v2.4 flags of carried frames": tag(4, f4("PRIV", b"\x81\xff\0?", 0x0004), f4("UFID", b"Go\0u", 0x0040),
                                        f4("GEOB", b"\0\0\0\0G")),
    "v2.4 line break, no mark": tag(4, f4("TIT2", text("Kyrie\r\n", 2)), f4("TALB", text("x\r\n", 2))),
    "v2.3 unknown languages": tag(3, f3("COMM", b"\0XXX\0a"), f3("USLT", b"\0\0\0\0\0b")),
    "v2.3 comment in capitals": tag(3, f3("COMM", b"\0ENG\0a"), f3("USLT", b"\0LAT\0b")),
    "v2.3 genre by number": tag(3, f3("TCON", text("(7)"))),
    "v2.3 revision": tag(3, f3("TIT2", text("Kyrie")), f3("TXXX", b"\0k\0v"), revision=1),
    "v2.3 comments": tag(3, *FULL_COMMENTS,
                         f3("USLT", b"\1eng" + "d".encode("utf-16") + b"\0\0" + "text".encode("utf-16"))),
    "v2.3 pictures": tag(3, f3("APIC", b"\0image/png\0\4back\0" + PNG), f3("APIC", b"\0image/jpg\0\3\0" + JPEG),
                         f3("APIC", b"\0image/webp\0\6\0RIFF\0\0\0\0WEBP"), f3("APIC", b"\0-->\0\7\0http://a/b.png")),
    "v2.3 only a back cover": tag(3, f3("APIC", b"\0image/png\0\4back\0" + PNG)),
    "v2.3 only a WebP": tag(3, f3("APIC", b"\0image/webp\0\3\0RIFF\0\0\0\0WEBP"), f3("TPOS", text("A")),
                            f3("TBPM", text("98.6"))),
    "v2.3 date": tag(3, f3("TYER", text("2004")), f3("TDAT", text("0605")), f3("TIME", text("1030")),
                     f3("TRCK", text("A1/012"))),
    "v2.3 genre": tag(3, f3("TCON", text("R&B (Soul)")), f3("TRCK", text("03/12")), f3("TPOS", text("/2"))),
    "v2.3 two titles": tag(3, f3("TIT2", text("One")), f3("TIT2", text("Two"))),
    "v2.3 two lists of artists": tag(3, f3("TPE1", text("A")), f3("TPE1", text("B\0A"))),
    "v2.3 blank description": tag(3, f3("COMM", b"\0deu \0d"), f3("TIT2", text("K"))),
    "v2.3 zeros": tag(3, f3("TYER", b"\0\0\0\5" + zlib.compress(text("0000")), 0x80), f3("TRCK", text("0"))),
    "v2.4 zeros": tag(4, f4("TDRC", size4(5) + zlib.compress(text("0000")), 9), f4("TIT2", text("K"))),
    "v2.4 compressed to a small part": tag(4, f4("COMM", size4(5005) + zlib.compress(b"\3eng\0" + b"a" * 5000), 9),
                               f4("TIT2", text("K"))),
    "v2.4 lengths": tag(4, f4("TBPM", size4(2) + text("0"), 1), f4("TSRC", size4(13) + text("USRC17607839"), 1)),
    "v2.3 one frame fills the tag": tag(3, f3("TIT2", text("Kyrie")), padding=0),
    "v2.4 unsynchronised frames": tag(4, f4("TIT2", text("ÿþ").replace(b"\xff", b"\xff\0"), 0x0002),
                                      f4("APIC", unsynchronised(PICTURE), 0x0002), f4("TXXX", b"\3k\0v"), flags=0x80),
    "v2.4 announces a footer": tag(4, f4("TIT2", text("Kyrie", 3)), padding=0, flags=0x10),
    "v2.4 extended header, footer": tag(4, f4("TIT2", text("Kyrie", 3)), f4("TXXX", b"\3k\0v"), padding=0,
                                        before=b"\0\0\0\6\1\0", flags=0x50) + b"3DI\4\0\x50" + size4(35),
    "v2.4 date to the second": tag(4, f4("TDRC", text("2004-05-06T10:30:15")), f4("TYER", text("1999"))),
    "v2.4 date in seconds": tag(4, f4("TDRC", text("981173106"))),
    "v2.2": tag(2, f2("TT2", text("Kyrie")), f2("TXX", b"\0k\0v"), f2("PIC", b"\0PNG\3\0" + PNG), f2("TCP", text("1")),
                f2("TYE", text("2004")), f2("TDA", text("0605")), f2("COM", b"\0eng\0a"), f2("COM", b"\0engb\0c"),
                f2("TST", text("K")), f2("TS2", text("V")), f2("ULT", b"\0eng\0la"), f2("WAR", b"http://a"),
                f2("CNT", b"\0\0\0\7")),
    "ID3v1 alone": b"",
    "refused, APE alone": b"",
    "refused, APE before ID3v1": b"",
    "no tag": b"",
}
ID3V1 = b"TAG" + b"".join(value.ljust(size, b"\0") for value, size in (
    (b"An old title  ", 30), ("V\xe4skelund".encode("latin-1"), 30), (b"An album", 30), (b"1977", 4),
    (b"A comment  ", 28))) + b"\0\5\x11"
APE = b"APETAGEX" + struct.pack("<IIII8x", 2000, 32, 0, 0)


def after_audio(name):
    """Returns the tags at the end of the file of a hand-made tag: those that its name mentions."""
    return (APE if "APE" in name else b"") + (ID3V1 if "ID3v1" in name else b"")


OTHER_TEXTS = ("TALB", "TPE2", "TCOM", "TPE3", "TIT1", "TCOP", "TEXT", "TIT3", "TENC", "TKEY", "TOWN")


def mutagen_tags():
    inner = CHAP("one", 0, 900, 0xFFFFFFFF, 0xFFFFFFFF,
                 [TIT2(3, "An inner title " * 10), APIC(3, "image/png", 0, "", PNG)])
    return [TIT2(3, "Kyrie"), TPE1(3, ["Väskelund", "朝"]), TSOP(3, "V"), TCON(3, ["17", "Choral"]),
            *(Frames[name](3, f"{name} 朝 𝄞 ’") for name in OTHER_TEXTS), TBPM(3, "72"), TPOS(3, "2/3"),
            TDRC(3, "2004-05-06"), TRCK(3, "3/12"), TMOO(3, "calm"), TIPL(3, [["producer", "P"]]),
            TMCL(3, [["organ", "O"]]), inner, CTOC("toc", 3, ["one"], [TIT2(3, "Contents")]),
            GEOB(3, "text/plain", "ä", "b", b"\0\xff" * 99), UFID("o", b"\xff\0"), POPM("a@b", 9, 7),
            PRIV("o", b"\xff\xe0"), WOAR("http://a"), WXXX(3, "ü", "http://b"), TXXX(3, "k", ["v", "w"]),
            COMM(3, "deu", "", "Ein Satz"), COMM(3, "eng", "iTunSMPB", " 0"), COMM(3, "eng", "d", "described"),
            USLT(3, "lat", "", "Kyrie eleison"), APIC(3, "image/jpeg", 3, "c", JPEG), APIC(3, "image/png", 8, "a", PNG)]


def save_with_mutagen(version):
    def make(path):
        tags = ID3()
        for frame in mutagen_tags():
            tags.add(frame)
        if version == 3:
            tags.update_to_v23()
        tags.save(path, v1=0, v2_version=version)
    return make


def program(*words):
    return lambda path: subprocess.run([*words, path], check=True, capture_output=True)


def encode(path):
    """Encodes the audio again; the encoder writes the tag."""
    wav = path.with_suffix(".wav")
    subprocess.run(["mpg123", "-q", "-w", wav, path], check=True)
    subprocess.run(["lame", "--silent", "-b", "32", "--add-id3v2", "--tt", "Kyrie", "--ta", "Väskelund",
                    "--ty", "1977", "--tn", "3/12", "--tg", "17", "--tc", "by lame", wav, path], check=True)
    wav.unlink()


# Functions that take the path of an MP3 and tag it.
PROGRAMS = {
    "by mutagen, v2.4": save_with_mutagen(4),
    "by mutagen, v2.3": save_with_mutagen(3),
    "by lame": encode,
    "by eyeD3": program("eyeD3", "-Q", "-t", "Kyrie", "-a", "Väskelund", "-G", "Rock", "-n", "3", "-N", "12",
                        "--release-date", "2004-05-06", "-c", "plain", "--add-comment", "described:d:deu",
                        "--unique-file-id", "http://o:id", "--add-popularity", "a@b:9:7", "--user-text-frame", "k:v"),
    "by id3v2": program("id3v2", "-t", "Kyrie", "-a", "V", "-A", "Songs", "-g", "17", "-y", "2004", "-T", "3/12", "-c",
                        "d:described:eng", "--TCOM", "C", "--WXXX", "http://a", "--TXXX", "k:v"),
}
