#!/usr/bin/env python3
"""Checks that `set --from-json` writes the edits of a document of `read --json` and nothing else.

A document without edits changes nothing, nor does one with a mistake.

Usage: documents.py PROGRAM
"""
import base64
import json
import os
import pathlib
import random
import shutil

import proof
from proof import ENVIRONMENT, check, quillmark
from tagbytes import f3, f4, tag, text
from tagcases import AUDIO, HAND_MADE, JPEG, PNG, after_audio
from tagview import others, view

ROUNDS = 4
FILES = 40
TEXTS = ("title", "artist", "album", "albumArtist", "composer", "conductor", "grouping", "publisher", "copyright",
         "lyricist", "subtitle", "encodedBy", "initialKey", "fileOwner", "genre", "comment", "lyrics")
WORDS = ("Kyrie", "Väskelund", "春の海", "שלום", "🎵",
         "a\\b", 'q"', "R&B", "x\ny", "/", "\u202e", "\t", "e\u0301")


def words(chance, joint=" "):
    chosen = chance.sample(WORDS[:5], chance.randint(1, 2)) + chance.sample(WORDS, chance.randint(0, 2))
    return joint.join([*chosen, "."])


def picture(chance):
    return chance.choice((PNG, JPEG)) + chance.randbytes(chance.randint(0, 5000))


def edit(chance, fields, is_lossless):
    """Changes some fields of a file at random; null removes one."""
    for field in chance.sample(TEXTS, 3):
        several = is_lossless and field in ("artist", "composer") and chance.random() < 0.3
        fields[field] = None if chance.random() < 0.3 else words(chance, "\0" if several else " ")
    for field in ("year", "bpm"):
        if chance.random() < 0.3:
            fields[field] = chance.choice((None, chance.randint(1000, 9999)))
    for kind in ("track", "disc"):  # a tag cannot hold a total without its number
        if chance.random() < 0.5:
            fields[kind + "Number"] = chance.choice((None, chance.randint(1, 99)))
            fields[kind + "Total"] = fields[kind + "Number"] and chance.choice((None, chance.randint(1, 99)))
    if chance.random() < 0.3:
        data = picture(chance)
        fields["artwork"] = chance.choice((None, {"data": base64.b64encode(data).decode(),
                                                  "format": "png" if data.startswith(PNG[:4]) else "jpeg"}))


class Proof:
    """A folder of MP3s that are read and written as a document."""

    def __init__(self, folder, files):
        self.folder = folder
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        for name, data in files.items():
            (folder / name).write_bytes(data)
        self.names = sorted(files)

    def read(self, *options):
        status, document, errors = quillmark(["read", "--json", *options, *self.names], self.folder)
        check("read", (status, errors), (0, ""))
        return document

    def write(self, document, *options):
        path = self.folder.parent / "album.json"
        path.write_bytes(document if isinstance(document, bytes) else document.encode())
        with path.open() as stream:
            return quillmark(["set", "--from-json", "-", *options], self.folder, stdin=stream)

    def contents(self):
        return {path.name: (path.stat().st_ino, path.read_bytes()) for path in self.folder.iterdir()}

    def check_written(self, what, document, options, changed):
        status, output, errors = self.write(document, *options)
        check(f"{what} {options}", (status, output.splitlines()[-1:], errors),
              (0, [f"changed {changed}, unchanged {len(self.names) - changed}, failed 0"], ""))

    def check_unchanged(self, what):
        for options in ((), ("--lossless",)):
            for more in ((), ("--no-artwork",)):
                self.check_written(what, self.read(*options, *more), options, 0)

    def check_edits(self, chance, options):
        old = json.loads(self.read(*options))
        frames = {name: others(view(pathlib.Path(name))) for name in old}
        document = json.loads(self.read(*options, "--no-artwork"))
        for fields in document.values():
            for field in chance.sample(list(fields), len(fields) // 3):
                del fields[field]
            if chance.random() < 0.8:
                edit(chance, fields, "--lossless" in options)
        expected = {name: {field: value for field, value in {**old[name], **fields}.items() if value is not None}
                    for name, fields in document.items()}
        for name, fields in document.items():
            if "bytes" in (fields.get("artwork") or {}):
                expected[name]["artwork"] = old[name]["artwork"]
        changed = sum(old[name] != expected[name] for name in old)
        self.check_written("edits", json.dumps(document, ensure_ascii=chance.random() < 0.5), options, changed)
        after = json.loads(self.read(*options))
        for name in old:
            check(f"edits {options}: {name}", (after[name], others(view(pathlib.Path(name)))), (expected[name], frames[name]))


# Documents with one mistake each, and the message. Each "T" is replaced by the name of a file.
TRACK = '"/d/01 Kyrie.mp3"'
AT = f"of {TRACK} "
BROKEN = (
    ("", "not valid JSON: it ends too early"),
    ('{"01.mp3":\n {"title": "x",}}', "not valid JSON: a name in quotes was expected at line 2, column 16"),
    ('{"01.mp3": {"year": 01}}', "not valid JSON: a comma or a closing brace was expected at line 1, column 22"),
    ('{"01.mp3": {"title": "a\nb"}}', "not valid JSON: a value was expected at line 2, column 0"),
    (b'{"01.mp3": {"title": "\xff"}}', "not valid JSON: a value was expected at line 1, column 23"),
    ("{}".encode("utf-16"), "not valid JSON: it holds a zero byte"),
    ("[" * 600, "values nested more than 512 deep"),
    ("[]", "the document is not an object"),
    ('{"/d/01 Kyrie.mp3": {}, "\\/d\\/01 Kyrie.mp3": {}}', f"{TRACK} is there twice"),
    ('{"01.mp3": {}, "./01.mp3": {"title": "x"}}', '"./01.mp3" and "01.mp3" are the same file'),
    ('{"01.mp3": {"year": 1}, "link.mp3": {"year": 2}}', '"01.mp3" and "link.mp3" are the same file'),
    ('{"": {}}', '"" cannot be the name of a file'),
    ('{"01.mp3\\u0000x": {}}', '"01.mp3\\x00x" cannot be the name of a file'),
    ('{"01\\n.mp3": null}', '"01\\x0a.mp3" is not an object'),
    ("{T: [1]}", f"{TRACK} is not an object"),
    ('{T: {"mood": "x"}}', f'"mood" {AT}is not a field'),
    ('{T: {"track-number": 1}}', f'"track-number" {AT}is not a field, but "trackNumber" is one'),
    ('{T: {"title": "x", "title": "y"}}', f'"title" {AT}is there twice'),
    ('{T: {"title": 1}}', f'"title" {AT}is not a text'),
    ('{T: {"lyrics": ["a", "b"]}}', f'"lyrics" {AT}is not a text'),
    ('{T: {"trackNumber": "3/12"}}', f'"trackNumber" {AT}is not a number'),
    ('{T: {"year": true}}', f'"year" {AT}is not a number'),
    ('{T: {"bpm": 98.6}}', f'"bpm" {AT}is not a whole number of at most 64 bits'),
    ('{T: {"year": 9223372036854775808}}', f'"year" {AT}is not a whole number of at most 64 bits'),
    ('{T: {"artwork": "cover.jpg"}}', f'"artwork" {AT}is not an object'),
    ('{T: {"artwork": {"bytes": 3}}}', f'"artwork" {AT}has no "format"'),
    ('{T: {"artwork": {"format": "png", "data": "", "bytes": 0}}}', f'"artwork" {AT}needs either "data" or "bytes"'),
    ('{T: {"artwork": {"format": "gif", "bytes": 3}}}', f'"format" of "artwork" {AT}is neither "jpeg" nor "png"'),
    ('{T: {"artwork": {"format": "png", "bytes": -1}}}', f'"bytes" of "artwork" {AT}is less than 0'),
    ('{T: {"artwork": {"format": "png", "data": null}}}', f'"data" of "artwork" {AT}is not a text'),
    ('{T: {"artwork": {"format": "png", "data": "iVBORw0KGgo"}}}', f'"data" of "artwork" {AT}is not Base64'),
    ('{T: {"artwork": {"format": "png", "data": "R0lGODlh"}}}', f'"data" of "artwork" {AT}is not a PNG picture'),
    ('{T: {"artwork": {"format": "jpeg", "data": "iVBORw0KGgo="}}}', f'"data" of "artwork" {AT}is not a JPEG picture'),
    ('{T: {"artwork": {"format": "png", "bytes": 3, "type": 3}}}', f'"type" of "artwork" {AT}is not part of a picture'),
    ('{T: {"year": 12345}}', f'{TRACK}: --lossless cannot write the year 12345 (expected a year of four digits)'),
)


def check_broken(one):
    """Checks that a document with a mistake writes nothing, not even the members before the mistake."""
    before = one.contents()
    for document, mistake in BROKEN:
        if isinstance(document, str) and "T:" in document:
            document = '{"01.mp3": {"title": "new"}, ' + document[1:].replace("T:", TRACK + ":")
        result = one.write(document, "--lossless")
        check(f"{document!r:.70}", result, (1, "", f"quillmark: standard input: {mistake}.\n"))
    check("a document with a mistake writes nothing", one.contents(), before)


def check_runs(one):
    """Checks reports, other options and backups of a run with a document."""
    folder, before = one.folder, one.contents()

    def result(*words):
        return quillmark(words, folder, env={**ENVIRONMENT, "HOME": str(folder)})

    (folder / "album.json").write_text(json.dumps({
        "02.mp3": {"title": " new ", "comment": ""}, "no.mp3": {"title": "x"}, "./01.mp3": {"album": None}, "~/01.mp3": {},
        str(folder / "03.mp3"): {}}))
    (folder / "empty.json").write_text("\ufeff{}")
    failures = ("quillmark: failed    no.mp3: no.mp3 could not be read.\n"
                "quillmark: failed    ~/01.mp3: 01.mp3 could not be read.\n")
    dry_run = ("would     ./01.mp3\n    - Album         A\n" f"unchanged {folder}/03.mp3\n"
               "would     02.mp3\n    - Title         K\n    + Title         new\n    - Comment       c\n"
               "\nwould change 2, unchanged 1, failed 2\n")
    check("a dry run", result("set", "--from-json", "~/album.json", "--paths", "--dry-run", "--diff"), (2, dry_run, failures))
    check("a dry run writes nothing", {**one.contents(), **before}, one.contents())
    check("a run", result("set", "--from-json", "album.json", "--backup")[0], 2)
    check("the backups of a run", sorted(path.name for path in folder.glob("*.orig")), ["01.mp3.orig", "02.mp3.orig"])
    check("the listing after a run", result("read", "01.mp3", "02.mp3")[1],
          "01.mp3:\n  Title    K\n  Comment  c\n\n02.mp3:\n  Title  new\n  Album  A\n")
    check("a document without files", result("set", "--from-json", "empty.json"),
          (0, "\nchanged 0, unchanged 0, failed 0\n", ""))
    taken = "--from-json takes its files and fields from the document; leave out"
    for words, error in ((("empty.json", "01.mp3"), f"{taken} 01.mp3."), (("empty.json", "--title", "x"), f"{taken} --title."),
                         (("empty.json", "--files0-from", "x"), f"{taken} --files0-from."),
                         (("no.json",), "no.json could not be read: No such file or directory.")):
        check(words, result("set", "--from-json", *words), (1, "", f"quillmark: {error}\n"))


def check_round_trips(folder):
    chance = random.Random(int(os.environ.get("SEED", "1")))
    # Every write trims a line break before U+0000.
    files = {f"{name}.mp3": data + AUDIO + after_audio(name)
             for name, data in HAND_MADE.items() if name != "v2.4 line break, no mark"}
    files["damaged PNG.mp3"] = tag(3, f3("APIC", b"\0image/png\0\3\0" + PNG[:4] + bytes(9))) + AUDIO
    files.update((path.name, path.read_bytes()) for path in proof.SAMPLES.glob("*.mp3"))
    Proof(folder / "odd", files).check_unchanged("samples and oddities")
    for options in ((), ("--lossless",)):
        frames = [("TXXX", text("k\0v")), ("COMM", b"\0eng\0at dawn"), ("APIC", b"\0image/png\0\3\0" + PNG), ("TBPM", text("72")),
                  ("PRIV", b"owner\0" + chance.randbytes(99)), ("TPE1", text("\u6625\u306e\u6d77", 1)), ("TCON", text("Rock"))]
        one = Proof(folder / "album", {
            f"{number:02}.mp3": tag(version, *(make(*frame) for frame in chance.sample(frames, 5))) + AUDIO
            for number in range(FILES) for version, make in [chance.choice(((3, f3), (4, f4)))]})
        for _ in range(ROUNDS):
            one.check_edits(chance, options)
            one.check_unchanged("edited tags")


def check_messages(folder):
    three_fields = tag(3, f3("TIT2", text("K")), f3("TALB", text("A")), f3("COMM", b"\0eng\0c")) + AUDIO
    one = Proof(folder / "album", dict.fromkeys(("01.mp3", "02.mp3", "03.mp3"), three_fields))
    (one.folder / "link.mp3").symlink_to("01.mp3")
    check_broken(one)
    (one.folder / "link.mp3").unlink()
    check_runs(one)


proof.main("A document writes the fields that were edited, and nothing else.", check_round_trips, check_messages)
