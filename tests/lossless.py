#!/usr/bin/env python3
"""Checks with mutagen, an independent reader, that the writing commands lose nothing with --lossless, and that they
report every loss without it. The tags are written by other programs or made by hand.

Usage: lossless.py PROGRAM SAMPLES_FOLDER
"""
import hashlib
import json
import os
import pathlib
import re
import struct
import subprocess
import sys
import tempfile
import time
import zlib

from mutagen.id3 import (APIC, CHAP, COMM, CTOC, GEOB, ID3, POPM, PRIV, TCON, TDRC, TIPL, TIT2, TMCL, TMOO, TPE1, TRCK,
                         TSOP, TXXX, UFID, USLT, WOAR, WXXX, Frames, ID3NoHeaderError, PictureType)
from mutagen._constants import GENRES

import proof
from proof import audio_of, check, run

# The frame in which mutagen keeps each field; it shows tags of all versions as v2.4.
FIELDS = {"TIT2": "title", "TPE1": "artist", "TALB": "album", "TPE2": "album-artist", "TCOM": "composer",
          "TPE3": "conductor", "TIT1": "grouping", "TPUB": "publisher", "TCOP": "copyright", "TEXT": "lyricist",
          "TIT3": "subtitle", "TENC": "encoded-by", "TKEY": "initial-key", "TOWN": "file-owner", "TCON": "genre",
          "COMM": "comment", "USLT": "lyrics", "TDRC": "year", "TBPM": "bpm", "TRCK": "track-number",
          "TPOS": "disc-number", "APIC": "artwork"}
# The names of frames in notes.
NAMES = {**FIELDS, "APIC": "picture", "TDRC": "date", "TXXX": "user text", "TRCK": "track", "TPOS": "disc",
         "TBPM": "BPM"}
PNG = b"\x89PNG\r\n\x1a\n" + bytes(range(256)) * 3
JPEG = b"\xff\xd8\xff\xe1" + b"Exif\0\0" + bytes(range(255, -1, -1)) * 3


def size4(size):
    return bytes(size >> shift & 0x7F for shift in (21, 14, 7, 0))


def tag(version, *frames, flags=0, revision=0, padding=32, before=b"", body=None):
    body = before + b"".join(frames) + bytes(padding) if body is None else body
    return b"ID3" + bytes([version, revision, flags]) + size4(len(body)) + body


def f2(name, payload):
    return name.encode() + len(payload).to_bytes(3, "big") + payload


def f3(name, payload, flags=0):
    return name.encode() + struct.pack(">IH", len(payload), flags) + payload


def f4(name, payload, flags=0):
    return name.encode() + size4(len(payload)) + flags.to_bytes(2, "big") + payload


def unsynchronised(data):
    return re.sub(rb"\xff(?=[\xe0-\xff\0]|$)", b"\xff\0", data)


def text(value, encoding=0):
    coding = ("latin-1", "utf-16", "utf-16-be", "utf-8")[encoding]
    return bytes([encoding]) + value.encode(coding)


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


AUDIO = b"\xff\xfb\x90\x64" + bytes(range(256)) * 4
TECHNICAL = ("iTun", "ID3v1", "Songs-DB")


def mutagen_tags():
    inner = CHAP("one", 0, 900, 0xFFFFFFFF, 0xFFFFFFFF,
                 [TIT2(3, "An inner title " * 10), APIC(3, "image/png", 0, "", PNG)])
    return [TIT2(3, "Kyrie"), TPE1(3, ["Väskelund", "朝"]), TSOP(3, "V"), TCON(3, ["17", "Choral"]),
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


def language(frame):
    """Returns the language code; one for an unknown language counts as "eng", which is written instead."""
    return "eng" if frame.lang in ("XXX", "und", "\0\0\0") else frame.lang.lower()


def said(frame):
    """Returns the content of a frame, independent of its text encoding."""
    name = frame.FrameID
    if name == "TCON":
        return tuple(frame.genres)
    if name == "APIC":
        mime = frame.mime if "/" in frame.mime or frame.mime == "-->" else "image/" + frame.mime.lower()
        return mime.replace("/jpg", "/jpeg"), int(frame.type), frame.desc.strip(), hashlib.md5(frame.data).hexdigest()
    if name in ("COMM", "USLT"):
        return frame.desc.strip(), str(frame).strip("\0"), language(frame)
    if name in ("CHAP", "CTOC"):
        own = {key: value for key, value in vars(frame).items() if key != "sub_frames" and key[0] != "_"}
        return repr(own), {key: said(inner) for key, inner in frame.sub_frames.items()}
    if name[0] == "T" and name not in ("TXXX", "TIPL", "TMCL"):
        return tuple(str(value).strip() for value in frame.text if str(value).strip("\0 "))
    return re.sub(r"encoding=<Encoding[^>]*>|, ?\)", "", repr(frame))


def view(path):
    """Returns the contents of all frames that mutagen finds in the file, by their keys."""
    isOldTagRead = path.read_bytes()[:3] != b"ID3"
    try:
        tags = ID3(path, load_v1=isOldTagRead)
    except ID3NoHeaderError:
        return {}
    seen = {key: said(frame) for key, frame in tags.items() if key != "COMM:ID3v1 Comment:eng"}
    if isOldTagRead:
        seen["COMM::eng"] = "", str(tags["COMM:ID3v1 Comment:eng"]), "eng"
    seen.update((f"unread {data[:4].decode('latin-1')}", data[10:]) for data in tags.unknown_frames)
    return {key: value for key, value in seen.items() if value != ()}


def meaning(seen):
    """Returns the values of a view as a set of (frame, value), the same for equivalent spellings."""
    def plain(name, value):
        if name == "TCON":
            return tuple(sorted(re.sub("[ -]", "", genre.replace("&", "and")).lower() for genre in value))
        if name in ("TRCK", "TPOS"):
            return tuple(re.sub(r"^(?=/)", "0", re.sub(r"\b0+(?=\d)", "", position)) for position in value)
        return repr(value)
    return {(key.split(":")[0], plain(key[:4], value)) for key, value in seen.items()}


def others(seen):
    """Returns the part of a view that belongs to no field."""
    return {key: value for key, value in seen.items() if key[:4] not in FIELDS}


def split(data):
    """Returns the version of a tag and the bytes of each frame; v2.4 sizes are rewritten as synchsafe integers."""
    def number(field):
        return int.from_bytes(field, "big")
    def spread(field):
        return sum(byte << 7 * (3 - n) for n, byte in enumerate(field))
    version, at, end = data[3], 10, 10 + spread(data[6:10])
    if data[5] & 0x40:
        at += spread(data[10:14]) if version == 4 else 4 + number(data[10:14])
    frames = []
    while at + 10 <= end and data[at]:
        size = (spread if version == 4 else number)(data[at + 4:at + 8])
        size_as_written = size4(size) if version == 4 else data[at + 4:at + 8]
        frames.append(data[at:at + 4] + size_as_written + data[at + 8:at + 10 + size])
        at += 10 + size
    return version, frames


def new_value(field):
    return "1977" if field in ("year", "bpm", "track-number", "disc-number") else f"new {field}"


class Proof:
    """Checks one tag with each of the writing commands."""

    def __init__(self, program, folder, name, original, refused=False):
        self.program, self.folder, self.name, self.original = program, folder, name, original
        self.path = folder / "track.mp3"
        self.path.write_bytes(original)
        self.before = view(self.path)
        self.refused = refused

    def run(self, *words, status=0, errors=""):
        result = run(self.program, [*words, self.path.name], self.folder)
        check(f"{self.name}: {' '.join(words)}: status", result[0], status)
        if errors is not None:
            check(f"{self.name}: {' '.join(words)}: errors", result[2], errors)
        return result

    def settled(self, *words):
        """Runs a command on the original twice and returns the view of the result.

        Checks that the audio stays, and that the second run changes nothing.
        """
        self.path.write_bytes(self.original)
        self.run(*words)
        written = self.path.read_bytes()
        check(f"{self.name}: the audio stays", audio_of(written) == self.audio(), True)
        check(f"{self.name}: the audio moves by whole blocks", (len(written) - len(self.original)) % 4096, 0)
        check(f"{self.name}: a second run changes nothing", self.run(*words)[1].split()[0], "unchanged")
        return view(self.path)

    def audio(self):
        if self.original[:3] != b"ID3":
            return self.original
        after = audio_of(self.original)
        return after[10 if after.startswith(b"3DI") else 0:]

    def losslessly(self):
        if self.refused:
            for more in ((), ("--dry-run",)):
                errors = self.run("set", "--lossless", "--publisher", "P", *more, status=2, errors=None)[2]
                check(f"{self.name}: the message of a refused write",
                      "track.mp3: --lossless cannot keep " in errors, True)
            check(f"{self.name}: a refused write changes nothing", self.path.read_bytes(), self.original)
            return
        after = self.settled("set", "--lossless", "--publisher", "P")
        # The frames of tags that are unsynchronised as a whole, or of v2.2, get another form.
        if self.original[3:4] in (b"\3", b"\4") and not (self.original[3] == 3 and self.original[5] & 0x80):
            for found, expected in zip(split(self.path.read_bytes()), split(self.original)):
                if isinstance(found, list):
                    found, expected = ([frame for frame in frames if frame[:4] != b"TPUB"]
                                       for frames in (found, expected))
                check(f"{self.name}: version and frames", found, expected)
            if "TPUB" not in self.before:
                self.run("set", "--lossless", "--clear", "publisher")
                check(f"{self.name}: version and frames after the opposite edit",
                      split(self.path.read_bytes()), split(self.original))
        check(f"{self.name}: all frames after an edit of the publisher", after, {**self.before, "TPUB": ("P",)})
        (self.folder / "new.png").write_bytes(PNG + b"new")
        after = self.settled("set", "--lossless", "--artwork", "new.png", *(
            word for name in FIELDS.values() if name != "artwork" for word in (f"--{name}", new_value(name))))
        check(f"{self.name}: frames of no field after an edit of all fields", others(after), others(self.before))
        for frame, name in FIELDS.items():
            new = [value for key, value in after.items() if key[:4] == frame]
            old = [value for key, value in self.before.items() if key[:4] == frame]
            if frame in ("COMM", "USLT", "APIC"):
                check(f"{self.name}: the new {name}", name == "artwork" or f"new {name}" in [value[1] for value in new],
                      True)
                check(f"{self.name}: one {name} is new, and replaces one at most",
                      (len(set(old) - set(new)) <= 1, len(set(new) - set(old))), (True, 1))
            else:
                check(f"{self.name}: {name}", [value[0].split("/")[0] for value in new], [new_value(name)])
        kept = {key: value for key, value in self.before.items()
                if key[:5] == "COMM:" and value[0].startswith(TECHNICAL)}
        for field in ("artwork", ",".join([*FIELDS.values(), "track-total", "disc-total"])):
            after = self.settled("set", "--lossless", "--title", "T", "--clear", field)
        shown = run(self.program, ["read", "--lossless", "track.mp3"], self.folder)[1]
        check(f"{self.name}: all fields cleared", (shown, after),
              ("  Title  T\n", {**others(self.before), **kept, "TIT2": ("T",)}))

    def notes(self):
        """Checks that a write without --lossless reports each value that it loses, and nothing else."""
        self.path.write_bytes(self.original)
        words = ("set", "--publisher", "P")
        notes = self.run(*words, "--notes", "--dry-run", errors=None)[2]
        check(f"{self.name}: the notes of a dry run and of the run", self.run(*words, "--notes", errors=None)[2], notes)
        lost = meaning(self.before) - meaning(view(self.path))
        for frame, value in () if self.refused else lost:
            named = NAMES.get(frame, frame.split()[-1]).replace("-", " ")
            check(f"{self.name}: the loss of {frame} {value} is in the notes {notes!r}", named in notes, True)
        check(f"{self.name}: a hidden tag in {notes!r}", "hides its APE tag" in notes, "APE" in self.name)
        # Mutagen does not see everything in these.
        if not any(word in self.name for word in ("ID3v1", "APE", "refused", "undecodable text", "invalid identifier")):
            check(f"{self.name}: no notes without a loss", notes, "" if not lost else notes)
        self.path.write_bytes(self.original)
        self.run(*words)

    def as_source(self):
        """Checks that `apply` gives another file every field of this one or reports the field, or fails."""
        target = self.folder / "target.mp3"
        cover = [value for key, value in self.before.items() if key[:4] == "APIC"]
        cover = next((value for value in cover if value[1] == 3), cover[0] if cover else (None,) * 4)[3]
        year = self.before.get("TDRC", [""])[0]
        year = str(time.gmtime(int(year)).tm_year) if len(year) == 9 else year[:4]
        for option in ("--lossless", "--notes"):
            target.write_bytes(self.audio())
            words = ["apply", option, "--all", "--from", "track.mp3", "target.mp3"]
            status, _, notes = run(self.program, words, self.folder)
            seen = view(target)
            check(f"{self.name}: refused as the source of apply", status,
                  1 if option == "--lossless" and self.refused else status)
            if status != 0:
                check(f"{self.name}: a failed apply changes nothing", (status, target.read_bytes() == self.audio()),
                      (1 if option == "--lossless" else 2, True))
                continue
            found = next((value[3] for key, value in seen.items() if key[:4] == "APIC"), None)
            wrong = {name for name, same in (("artwork", found == cover),
                                             ("date", seen.get("TDRC", [""])[0] == year)) if not same}
            if option == "--lossless":
                own = [value for key, value in self.before.items()
                       if key[:5] == "COMM:" and not value[0].startswith(TECHNICAL)]
                own.sort(key=lambda comment: comment[0] != "")
                check(f"{self.name}: the comment applied",
                      [value[1] for key, value in seen.items() if key[:5] == "COMM:"], [comment[1] for comment in own[:1]])
            for frame, value in meaning(self.before) - meaning(seen):
                if frame in FIELDS and frame not in ("COMM", "USLT", "APIC", "TDRC"):
                    wrong.add(NAMES[frame].replace("-", " "))
            check(f"{self.name}: {option}: fields neither applied nor in the notes {notes!r}",
                  {name for name in wrong if name not in notes}, set())

    def all(self):
        self.losslessly()
        self.path.write_bytes(self.original)
        self.as_source()
        self.notes()


def check_every_field(program, folder, audio):
    """Checks that `apply` without --lossless copies every field, and keeps the other frames of the target."""
    source, target = folder / "source.mp3", folder / "track.mp3"
    for path in (source, target):
        path.write_bytes(audio)
    numbers = {"TDRC": "1977", "TBPM": "72", "TRCK": "1/12", "TPOS": "2/3"}
    own, fields = ID3(), ID3()
    own.add(PRIV("owner", b"\xff\xe0\xff\0\xff\xff\0\0" * 40))
    own.save(target, v1=0)
    texts = (Frames[name](3, numbers.get(name, f"{name} Björk 朝 𝄞 ’")) for name in FIELDS if name[0] == "T")
    for frame in (*texts, COMM(3, "eng", "", "Recorded\nat dawn, κύριε"),
                  USLT(3, "eng", "", "eleison, κύριε"),
                  APIC(0, "image/png", 3, "", PNG + bytes(range(256)) * 800)):
        fields.add(frame)
    fields.save(source, v1=0)
    expected = {**view(source), **view(target)}
    for outcome in ("updated", "unchanged"):
        report = run(program, ["apply", "--from", source.name, "--all", target.name], folder)
        check(f"every field: {outcome}", (report[0], report[1].split()[0], report[2]), (0, outcome, ""))
        check(f"every field: {outcome}, frames", view(target), expected)
        written = target.read_bytes()
        frames = split(written)[1]
        check(f"every field: {outcome}, the last frame", frames[-1][:4], b"PRIV")
        check(f"every field: {outcome}, size", len(written), 10 + sum(map(len, frames)) + len(audio))
        check(f"every field: {outcome}, audio", audio_of(written) == audio, True)


def check_names(program, folder):
    """Checks that genres and types of pictures have the names that mutagen knows, or those of the standard."""
    def read(*words):
        return json.loads(run(program, ["read", "--json", *words], folder)[1])

    def letters(genre):
        return re.sub("[^a-z0-9]", "", genre.lower().replace("&", "and"))

    standard = {"Alt. Rock": "AlternRock", "Gangsta Rap": "Gangsta", "Psychedelic": "Psychadelic",
                "Fast-Fusion": "Fast Fusion", "Bebop": "Bebob", "A Cappella": "Acapella"}
    genres = [standard.get(name, name) for name in GENRES]
    numbers = "".join(f"({number})" for number in range(len(genres)))
    (folder / "track.mp3").write_bytes(tag(3, f3("TCON", text(numbers))) + AUDIO)
    check("genres", list(read("--lossless", "track.mp3").values())[0]["genre"].split("\0"), genres)
    for number in range(80):
        (folder / f"{number:02}.mp3").write_bytes(tag(3, f3("TCON", text(f"({number})"))) + AUDIO)
    read_one_by_one = [tags["genre"] for _, tags in sorted(read(*(f"{number:02}.mp3" for number in range(80))).items())]
    check("genres without the option", list(map(letters, read_one_by_one)), list(map(letters, genres[:80])))

    own = {"OTHER": "other picture", "COVER_FRONT": "front cover", "COVER_BACK": "back cover",
           "RECORDING_LOCATION": "location", "DURING_RECORDING": "recording", "DURING_PERFORMANCE": "performance",
           "SCREEN_CAPTURE": "video frame", "FISH": "bright fish", "BAND_LOGOTYPE": "artist's logo",
           "PUBLISHER_LOGOTYPE": "publisher's logo"}
    types = {int(value): own.get(name, name.lower().replace("_", " "))
             for name, value in vars(PictureType).items() if name.isupper()}
    files = [f"{number:02}.mp3" for number in types]
    for number, name in zip(types, files):
        picture = f3("APIC", b"\0image/webp\0" + bytes([number]) + b"\0RIFF")
        (folder / name).write_bytes(tag(3, picture) + AUDIO)
    notes = run(program, ["set", "--notes", "--dry-run", "--title", "T", *sorted(files)], folder)[2]
    check("types of pictures", re.findall(r"drops a picture \((.*), WebP", notes),
          [name for _, name in sorted(types.items())])


def check_blank_frames(program, folder, audio):
    """Checks that a new comment and picture replace blank ones."""
    path = folder / "track.mp3"
    path.write_bytes(tag(3, f3("COMM", b"\0eng\0 "), f3("APIC", b"\0image/png\0\3\0"), f3("TIT2", text("K"))) + audio)
    (folder / "new.png").write_bytes(PNG)
    words = ["set", "--lossless", "--comment", "new", "--artwork", "new.png", path.name]
    check("blank frames", run(program, words, folder)[0], 0)
    check("blank frames: number of comments and pictures",
          [path.read_bytes().count(name) for name in (b"COMM", b"APIC")], [1, 1])


def check_artwork(program, folder):
    """Checks that a new front cover replaces a picture of the type "other", and precedes any other picture."""
    path = folder / "track.mp3"
    (folder / "new.png").write_bytes(PNG + b"new")
    for kind, version, make in ((0, 3, f3), (4, 3, f3), (4, 4, f4)):
        picture = make("APIC", b"\0image/png\0" + bytes([kind]) + b"d\0" + PNG)
        path.write_bytes(tag(version, make("TIT2", text("K")), picture) + AUDIO)
        output = run(program, ["set", "--lossless", "--diff", "--artwork", "new.png", path.name], folder)[1]
        pictures = [frame for frame in split(path.read_bytes())[1] if frame[:4] == b"APIC"]
        check(f"a picture of type {kind}",
              ([frame.endswith(b"new") for frame in pictures], "(stays, after the new one)" in output),
              ([True], False) if kind == 0 else ([True, False], True))


def check_values_that_fit_no_field(program, folder):
    """Checks that `copy` accepts values that no field can hold, and that `paste` rejects them."""
    path, target = folder / "track.mp3", folder / "target.mp3"
    path.write_bytes(tag(4, f4("TBPM", text("127.98")), f4("TALB", text("A")), f4("TRCK", text("1\0" + "2/9"))) + AUDIO)
    target.write_bytes(AUDIO)
    own = {"env": {**proof.ENVIRONMENT, "HOME": str(folder)}}
    copied = run(program, ["copy", "--lossless", "--no-desktop", path.name], folder, **own)
    check("values that fit no field: copied", (copied[0], copied[2]), (0, ""))
    message = 'quillmark: The clipboard cannot carry the bpm "127.98" of the copied file. Leave it out with --fields.\n'
    check("values that fit no field: pasted",
          run(program, ["paste", "--all", target.name], folder, **own)[::2], (1, message))
    check("values that fit no field: pasted without them",
          run(program, ["paste", "--fields", "album", target.name], folder, **own)[0], 0)
    run(program, ["set", "--lossless", "--track-total", "5", path.name], folder)
    check("several positions", view(path)["TRCK"], ("1/5", "2/9"))
    path.write_bytes(b"data" + tag(3, f3("TIT2", text("K"))) + AUDIO)
    for words in (["read"], ["set", "--title", "T"]):
        errors = run(program, [*words, "--lossless", path.name], folder)[2]
        check("data before the tag", "track.mp3: --lossless cannot keep the data before its ID3v2 tag." in errors, True)


def check_unread_frames(program, folder):
    """Checks that a frame that cannot be read is dropped only with its own field, and is reported then."""
    path = folder / "track.mp3"
    track, webp = f3("TRCK", b"\x81abc", 0x40), f3("APIC", b"\0image/webp\0\3\0RIFF")
    encrypted = tag(4, f4("TPE1", b"\x81abc", 8))
    for what, data, words, (status, outcome, note) in (
            ("half of a frame", tag(3, track), ["--clear", "track-total"], (0, "unchanged", "")),
            ("half of a frame is set", tag(3, track), ["--track-total", "3"], (2, "", "cannot keep the frame TRCK")),
            ("a whole frame", tag(3, track), ["--title", "T", "--clear", "track-number,track-total"],
             (0, "updated", "drops its track number that")),
            ("a comment", tag(3, f3("COMM", b"\x81abc", 0x40)), ["--title", "T", "--clear", "comment"],
             (0, "updated", "drops its comment that")),
            ("a picture", tag(3, webp), ["--title", "T", "--clear", "artwork"],
             (0, "updated", "drops its artwork (front cover, WebP")),
            ("a compressed frame", encrypted, ["--title", "T", "--clear", "artist"],
             (0, "updated", "drops its artist that"))):
        path.write_bytes(data + AUDIO)
        result = run(program, ["set", "--lossless", "--notes", *words, path.name], folder)
        check(f"unread: {what}", (result[0], outcome in result[1].split("\n")[0], note in result[2]),
              (status, True, True))
        again = run(program, ["set", "--lossless", *words, path.name], folder)
        check(f"unread: {what}, again", again[1].startswith("unchanged"), status == 0)
    for what, data, words, note in (
            ("a line feed at the end", tag(3, f3("USLT", b"\0eng\0la la\n"), f3("TIT2", text("\nT\n"))),
             ["--album", "A"], ""),
            ("a blank value at the end", tag(4, f4("TIT2", text("T\0\r\n", 2))), ["--album", "A"], ""),
            ("another comment", tag(3, f3("COMM", b"\0deud\0a"), f3("USLT", b"\0lat\0b")), ["--comment", "c"],
             'drops the language "lat" of the lyrics. --lossless keeps them.\n'),
            ("flags that v2.3 has elsewhere",
             tag(4, f4("PRIV", b"\x81a\0?", 4), f4("PRIV", b"Gb\0?", 0x40), f4("PRIV", b"Gc\0?", 0x40),
                 f4("PRIV", b"d\0?", 0x4000)), ["--album", "A"],
             "drops the encryption flag of a PRIV frame, 2 group flags of PRIV frames. --lossless keeps them.\n"),
            ("a date beside a year", tag(4, f4("TDRC", text("1966")), f4("TIT2", text("T"))), ["--year", "1999"],
             "the old date 1966 (TDRC) stays beside the new year 1999; --lossless replaces it.\n")):
        path.write_bytes(data + AUDIO)
        result = run(program, ["set", "--notes", *words, path.name], folder)[2]
        check(f"notes: {what}", result, note and f"quillmark: note: {path.name}: {note}")
    path.write_bytes(tag(3, f3("COMM", b"\0engd\0x"), f3("COMM", b"\0engkeep\0new")) + AUDIO)
    notes = run(program, ["set", "--notes", "--comment", "new", path.name], folder)[2]
    check("the description of another comment", 'drops the description "keep"' in notes, True)


def main():
    program, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2])
    audio = audio_of(min(samples.glob("*.mp3"), key=os.path.getsize).read_bytes())
    listed = re.findall(r"^  [* ] ([a-z-]+)  ", run(program, ["fields"], None)[1], re.MULTILINE)
    check("fields", {name.replace("-total", "-number") for name in listed}, set(FIELDS.values()))
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        check_every_field(program, folder, audio)
        check_names(program, folder)
        check_blank_frames(program, folder, audio)
        check_unread_frames(program, folder)
        check_artwork(program, folder)
        check_values_that_fit_no_field(program, folder)
        for name, data in HAND_MADE.items():
            Proof(program, folder, name, data + audio + after_audio(name), refused="refused" in name).all()
        for name, make in PROGRAMS.items():
            path = folder / "made.mp3"
            path.write_bytes(audio)
            make(path)
            Proof(program, folder, name, path.read_bytes()).all()
    proof.finish("With --lossless nothing is lost; without it, every loss is reported.")


if __name__ == "__main__":
    main()
