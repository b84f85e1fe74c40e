#!/usr/bin/env python3
"""Reads what the program wrote with an independent reader, mutagen, and compares it with what was asked for.

Usage: crosscheck.py PROGRAM SAMPLES_FOLDER
"""
import os
import pathlib
import random
import shutil
import struct
import sys
import tempfile

from mutagen.id3 import (APIC, CHAP, COMM, GEOB, ID3, POPM, PRIV, TALB, TBPM, TCOM, TCON, TCOP, TDRC, TENC, TEXT, TIT1,
                         TIT2, TIT3, TKEY, TOWN, TPE1, TPE2, TPE3, TPOS, TPUB, TRCK, TSSE, TXXX, TYER, UFID, USLT, WXXX)

import proof
from proof import DATE, SOURCE, audio_of, check, run

MANAGED = set("TIT2 TPE1 TALB TPE2 TCOM TPE3 TIT1 TPUB TCOP TEXT TIT3 TENC TKEY TOWN TCON COMM USLT TYER TBPM TRCK "
              "TPOS APIC".split())
def tag(version, flags, body):
    size = bytes(len(body) >> shift & 0x7F for shift in (21, 14, 7, 0))
    return b"ID3" + bytes([version, 0, flags]) + size + body


def split(data):
    """The (identifier, flags, payload) of each frame of a tag's bytes in their order, and the audio behind the tag."""
    if data[:3] != b"ID3":
        return [], data
    end = 10 + sum((data[6 + n] & 0x7F) << (21 - 7 * n) for n in range(4))
    body = data[10:end].replace(b"\xff\0", b"\xff") if data[5] & 0x80 else data[10:end]
    frames, at = [], 0
    while data[3] > 2 and body[at:at + 1].strip(b"\0"):
        sizes = body[at + 4:at + 8]
        size = sum(b << (7 * n) for n, b in enumerate(reversed(sizes))) if data[3] == 4 else int.from_bytes(sizes, "big")
        frames.append((body[at:at + 4].decode("latin-1"), body[at + 8:at + 10], body[at + 10:at + 10 + size]))
        at += 10 + size
    return frames, data[end:]


def carried(frames):
    return [frame for frame in frames if frame[0] not in MANAGED]


def values(path):
    """What mutagen makes of the managed frames."""
    found = {}
    for frame in ID3(path, translate=False).values():
        name = frame.FrameID
        if name in ("COMM", "USLT"):
            found[name] = (frame.lang, frame.desc, str(frame))
        elif name == "APIC":
            found[name] = (frame.mime, int(frame.type), frame.desc, frame.data)
        elif name in MANAGED:
            found[name] = "\0".join(str(text) for text in frame.text)
    return found


def state(path):
    status = os.stat(path)
    return status.st_ino, status.st_mode, status.st_mtime_ns, status.st_ctime_ns, path.read_bytes()


def report(label, names, summary):
    return "".join(f"{label:<10}{name}\n" for name in names) + f"\n{summary}\n"


def check_apply(program, folder, source, flags, expected):
    """Applies source to the files that expected names; expected holds the managed values of each afterwards."""
    names, count = list(expected), len(expected)
    for name in names:
        os.chmod(folder / name, 0o640)
        os.utime(folder / name, ns=(DATE, DATE))
    before = {name: state(folder / name) for name in names}
    listing = sorted(os.listdir(folder))
    words = ["apply", "--from", source, *flags, *names]

    def expect(words, label, summary):
        check(" ".join(words), run(program, words, folder), (0, report(label, names, summary), ""))

    expect([*words, "--dry-run"], "would", f"would change {count}, unchanged 0, failed 0")
    check("files after a dry run", {name: state(folder / name) for name in names}, before)

    expect(words, "updated", f"changed {count}, unchanged 0, failed 0")
    for name in names:
        path, (old_frames, old_audio) = folder / name, split(before[name][4])
        new_frames, new_audio = split(path.read_bytes())
        check(f"{name}: version", path.read_bytes()[:6], b"ID3\3\0\0")
        check(f"{name}: managed frames", values(path), expected[name])
        check(f"{name}: each managed frame once", len(new_frames) - len(carried(new_frames)), len(expected[name]))
        check(f"{name}: carried frames", carried(new_frames), carried(old_frames))
        check(f"{name}: audio bytes", new_audio, old_audio)
        status = os.stat(path)
        check(f"{name}: mode and time", (status.st_mode & 0o7777, status.st_mtime_ns), (0o640, DATE))

    after = {name: state(folder / name) for name in names}
    expect(words, "unchanged", f"changed 0, unchanged {count}, failed 0")
    check("files after a second run", {name: state(folder / name) for name in names}, after)
    check("files in the folder", sorted(os.listdir(folder)), listing)


def check_album(program, folder, samples):
    for sample in samples.glob("*.mp3"):
        shutil.copy(sample, folder)
    source = values(folder / SOURCE)
    cover = source["APIC"]
    check("the sample's cover", (cover[:3], cover[3][:4]), (("image/jpeg", 3, ""), b"\xff\xd8\xff\xe0"))
    identity = {name: source[name] for name in "TALB TPE2 TPE1 TCON TYER TPOS TPUB TCOP APIC".split()}
    check_apply(program, folder, SOURCE, [], {
        f"{number:02} {title}.mp3": {**identity, "TIT2": title, "TRCK": f"{number}/4"}
        for number, title in ((2, "Gloria"), (3, "Credo"), (4, "Sanctus"))})


def check_versions(program, folder, audio):
    names = ["v2.3 long.mp3", "v2.4.mp3", "unsynchronised.mp3", "v2.2.mp3"]
    for name in ("source.mp3", "all.mp3", *names):  # "all.mp3" is left without a tag
        (folder / name).write_bytes(audio)

    def save(name, version, *frames):
        tags = ID3()
        for frame in frames:
            tags.add(frame)
        tags.save(folder / name, v1=0, v2_version=version)

    def prepend(name, header):
        (folder / name).write_bytes(header + (folder / name).read_bytes())

    def text_frame(name, text):
        return name + struct.pack(">IH", len(text) + 1, 0) + b"\0" + text

    texts = {"TALB": "朝の歌 𝄞", "TPE2": "Chœur d’Ahlstad", "TPE1": "Väskelund", "TCON": "Хорал", "TPUB": "Förlag",
             "TCOP": "1977 ©", "TIT2": "Kyrie", "TCOM": "A. Björk", "TPE3": "C. Dirigent", "TIT1": "Mass", "TEXT": "Trad.",
             "TIT3": "for five voices", "TENC": "encoder", "TKEY": "Dm", "TOWN": "The choir"}
    kinds = (TALB, TPE2, TPE1, TCON, TPUB, TCOP, TIT2, TCOM, TPE3, TIT1, TEXT, TIT3, TENC, TKEY, TOWN)
    numbers = {"TYER": "1977", "TBPM": "72", "TRCK": "1/12", "TPOS": "2/3"}
    picture = b"\x89PNG\r\n\x1a\n" + random.Random(1).randbytes(200_000)  # outgrows every buffer
    save("source.mp3", 4, *(kind(3, texts[kind.__name__]) for kind in kinds), TDRC(3, "1977"), TBPM(3, "72"),
         TRCK(3, "1/12"), TPOS(3, "2/3"), COMM(3, "eng", "", "Recorded\nat dawn"), USLT(3, "eng", "", "Kyrie eleison, κύριε"),
         APIC(0, "image/png", 3, "", picture), TSSE(3, "the source's own"))

    # Private bytes that look like audio, and a payload past 127 bytes, whose size reads differently in each version.
    private, large = PRIV("owner", b"\xff\xe0\xff\0\xff\xff\0\0"), GEOB(0, "text/plain", "a", "b", bytes(range(256)) * 2)
    chapter = CHAP("one", 0, 900, 0xFFFFFFFF, 0xFFFFFFFF, [TIT2(0, "inner title")])
    save(names[0], 3, TIT2(1, "Glória"), TRCK(0, "2/2"), TCOM(1, "Kept"), COMM(1, "eng", "", "mine"), TPE1(1, "replaced"),
         TXXX(1, "k", "v"), private, large, chapter, TSSE(0, "LAME"), WXXX(1, "d", "http://example.org/"))
    save(names[1], 4, TIT2(3, "Credo"), TRCK(3, "3"), TPOS(3, "9/9"), TXXX(3, "k", "ü"), TDRC(3, "1999-05-01"), large,
         POPM(email="a@b", rating=9, count=7), UFID("http://example.org", b"\xff\0id"), private, chapter)
    body = (text_frame(b"TIT2", b"Sanctus") + text_frame(b"TRCK", b"4") +
            b"PRIV" + struct.pack(">IH", 14, 0) + b"own\0\xff\xe0\xff\0\0\xff\xff\xfb\0\xff" +
            b"XYZ1" + struct.pack(">IH", 3, 0x4000) + b"\xff\xf0\xff")
    prepend(names[2], tag(3, 0x80, body.replace(b"\xff", b"\xff\0") + bytes(64)))
    prepend(names[3], tag(2, 0, b"TT2\0\0\6\0AgnusTRK\0\0\4\0" b"5/6TXX\0\0\5\0k\0vv" + bytes(64)))

    identity = {name: texts[name] for name in "TALB TPE2 TPE1 TCON TPUB TCOP".split()}
    identity.update(TYER="1977", TPOS="2/3", APIC=("image/png", 3, "", picture))
    check_apply(program, folder, "source.mp3", [], {
        names[0]: {**identity, "TIT2": "Glória", "TRCK": "2/12", "TCOM": "Kept", "COMM": ("eng", "", "mine")},
        names[1]: {**identity, "TIT2": "Credo", "TRCK": "3/12"},
        names[2]: {**identity, "TIT2": "Sanctus", "TRCK": "4/12"},
        names[3]: {**identity, "TIT2": "Agnus", "TRCK": "5/12"}})
    check_apply(program, folder, "source.mp3", ["--all"], {"all.mp3": {
        **texts, **numbers, "COMM": ("eng", "", "Recorded\nat dawn"), "USLT": ("eng", "", "Kyrie eleison, κύριε"),
        "APIC": ("image/png", 3, "", picture)}})


def main():
    program, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2])
    with tempfile.TemporaryDirectory() as folder:
        check_album(program, pathlib.Path(folder), samples)
    with tempfile.TemporaryDirectory() as folder:
        check_versions(program, pathlib.Path(folder), audio_of((samples / SOURCE).read_bytes()))
    proof.finish("All that was written reads back as asked.")


if __name__ == "__main__":
    main()
