#!/usr/bin/env python3
"""Checks with mutagen, an independent reader, that the writing commands lose nothing with --lossless, and that they
report every loss without it. The tags are written by other programs or made by hand.

Usage: lossless.py PROGRAM SAMPLES_FOLDER
"""
import json
import os
import pathlib
import re
import sys
import tempfile
import time

from mutagen.id3 import APIC, COMM, ID3, PRIV, USLT, Frames, PictureType
from mutagen._constants import GENRES

import proof
from proof import audio_of, check, run
from tagbytes import f3, f4, split, tag, text
from tagcases import AUDIO, HAND_MADE, PNG, PROGRAMS, after_audio
from tagview import FIELDS, others, values_of, view

# The names of frames in notes.
NAMES = {**FIELDS, "APIC": "picture", "TDRC": "date", "TXXX": "user text", "TRCK": "track", "TPOS": "disc",
         "TBPM": "BPM"}
# The descriptions of comments that programs write for themselves begin with these; such a comment is not the field.
TECHNICAL = ("iTun", "ID3v1", "Songs-DB")
# Tags that have a value which `apply --lossless` cannot carry: an undecodable title, a BPM of 98.6, a track number A1.
REJECTED_AS_SOURCE = ("v2.3 undecodable text", "v2.3 only a WebP", "v2.3 date")
PUBLISHER = ("--publisher", "P")


class TaggedFile:
    """The file track.mp3 with a tag to check, and the view of its original.

    --lossless must refuse to write it if is_refused, and must write it otherwise.
    """

    def __init__(self, program, folder, name, original, is_refused=False):
        self.program, self.folder, self.name, self.original = program, folder, name, original
        self.is_refused = is_refused
        self.path = folder / "track.mp3"
        self.reset()
        self.before = view(self.path)

    def reset(self):
        self.path.write_bytes(self.original)

    def check(self, what, actual, expected):
        check(f"{self.name}: {what}", actual, expected)

    def run(self, *words, status=0, errors=""):
        """Like proof.run with the file as the last word; checks the status, and the errors unless they are None."""
        result = run(self.program, [*words, self.path.name], self.folder)
        self.check(f"{' '.join(words)}: status", result[0], status)
        if errors is not None:
            self.check(f"{' '.join(words)}: errors", result[2], errors)
        return result

    def write(self, *words):
        """Writes the original with --lossless and returns the view of the result.

        Checks that the audio stays, and that the same command changes nothing the next time.
        """
        words = ("set", "--lossless", *words)
        self.reset()
        self.run(*words)
        written = self.path.read_bytes()
        self.check("the audio stays", audio_of(written) == self.audio(), True)
        self.check("the audio moves by whole blocks", (len(written) - len(self.original)) % 4096, 0)
        self.check("a second run changes nothing", self.run(*words)[1].split()[0], "unchanged")
        return view(self.path)

    def audio(self):
        """Returns the original after its ID3v2 tag and the footer of that."""
        if self.original[:3] != b"ID3":
            return self.original
        after = audio_of(self.original)
        return after[10 if after.startswith(b"3DI") else 0:]

    def comments(self, is_technical):
        """Returns the comments of the original, by their keys: the technical or the other ones."""
        return {key: value for key, value in self.before.items()
                if key[:5] == "COMM:" and value[0].startswith(TECHNICAL) == is_technical}


def check_refusal(file):
    """Checks that --lossless explains why it cannot write the file, and leaves it unchanged."""
    for more in ((), ("--dry-run",)):
        errors = file.run("set", "--lossless", *PUBLISHER, *more, status=2, errors=None)[2]
        file.check("the message of a refused write", "track.mp3: --lossless cannot keep " in errors, True)
    file.check("a refused write changes nothing", file.path.read_bytes(), file.original)


def check_one_field(file):
    """Checks that the edit of one field keeps all other frames, byte by byte where their form can stay."""
    after = file.write(*PUBLISHER)
    is_v23_unsynchronised = file.original[3] == 3 and file.original[5] & 0x80
    if file.original[3:4] in (b"\3", b"\4") and not is_v23_unsynchronised:
        version, frames = split(file.original)
        new_version, new_frames = split(file.path.read_bytes())
        file.check("version", new_version, version)
        file.check("frames", *([frame for frame in all_frames if frame[:4] != b"TPUB"]
                               for all_frames in (new_frames, frames)))
        if "TPUB" not in file.before:
            file.run("set", "--lossless", "--clear", "publisher")
            file.check("version and frames after the opposite edit", split(file.path.read_bytes()), (version, frames))
    file.check("all frames after an edit of the publisher", after, {**file.before, "TPUB": ("P",)})


def new_value(field):
    return "1977" if field in ("year", "bpm", "track-number", "disc-number") else f"new {field}"


def check_all_fields(file):
    """Checks that new values for all fields replace only the frames of these fields."""
    (file.folder / "new.png").write_bytes(PNG + b"new")
    options = ((f"--{name}", new_value(name)) for name in FIELDS.values() if name != "artwork")
    after = file.write("--artwork", "new.png", *(word for option in options for word in option))
    file.check("frames of no field after an edit of all fields", others(after), others(file.before))
    for frame, name in FIELDS.items():
        old, new = ([value for key, value in seen.items() if key[:4] == frame] for seen in (file.before, after))
        if frame in ("COMM", "USLT", "APIC"):
            is_new_there = name == "artwork" or new_value(name) in [value[1] for value in new]
            file.check(f"the new {name}", is_new_there, True)
            file.check(f"one {name} is new, and replaces one at most",
                       (len(set(old) - set(new)) <= 1, len(set(new) - set(old))), (True, 1))
        else:
            file.check(name, [value[0].split("/")[0] for value in new], [new_value(name)])


def check_clearing(file):
    """Checks that the removal of all fields but the title keeps the frames of no field and the technical comments."""
    for fields in ("artwork", ",".join([*FIELDS.values(), "track-total", "disc-total"])):
        after = file.write("--title", "T", "--clear", fields)
    shown = run(file.program, ["read", "--lossless", file.path.name], file.folder)[1]
    file.check("all fields cleared", (shown, after),
               ("  Title  T\n", {**others(file.before), **file.comments(is_technical=True), "TIT2": ("T",)}))


def check_notes(file):
    """Checks that a write without --lossless reports each value that it loses, and nothing else."""
    file.reset()
    words = ("set", *PUBLISHER)
    notes = file.run(*words, "--notes", "--dry-run", errors=None)[2]
    file.check("the notes of a dry run and of the run", file.run(*words, "--notes", errors=None)[2], notes)
    lost = values_of(file.before) - values_of(view(file.path))
    for frame, value in () if file.is_refused else lost:
        named = NAMES.get(frame, frame.split()[-1]).replace("-", " ")
        file.check(f"the loss of {frame} {value} is in the notes {notes!r}", named in notes, True)
    file.check(f"a hidden tag in {notes!r}", "hides its APE tag" in notes, "APE" in file.name)
    # Mutagen does not see everything in these.
    if not any(word in file.name for word in ("ID3v1", "APE", "refused", "undecodable text", "invalid identifier")):
        file.check(f"notes only for a loss: {notes!r}", notes != "", lost != set())
    file.reset()
    file.run(*words)


def artwork_and_year(seen):
    """Returns what a view has of the fields artwork (front cover, else the first picture) and year."""
    pictures = [value for key, value in seen.items() if key[:4] == "APIC"]
    chosen = next((picture for picture in pictures if picture[1] == 3), pictures[0] if pictures else (None,) * 4)
    date = seen.get("TDRC", [""])[0]
    # Some programs write the date as seconds since 1970.
    return chosen[3], str(time.gmtime(int(date)).tm_year) if len(date) == 9 else date[:4]


def check_applied(file, option, seen, notes):
    """Checks that a target has each field of the file, or that the notes name the field."""
    artwork, year = artwork_and_year(file.before)
    found = next((value[3] for key, value in seen.items() if key[:4] == "APIC"), None)
    differing = {"artwork"} if found != artwork else set()
    if seen.get("TDRC", [""])[0] != year:
        differing.add("date")
    for frame, value in values_of(file.before) - values_of(seen):
        if frame in FIELDS and frame not in ("COMM", "USLT", "APIC", "TDRC"):
            differing.add(NAMES[frame].replace("-", " "))
    file.check(f"{option}: fields neither applied nor in the notes {notes!r}",
               {name for name in differing if name not in notes}, set())
    if option == "--lossless":
        own = sorted(file.comments(is_technical=False).values(), key=lambda comment: comment[0] != "")
        file.check("the comment applied", [value[1] for key, value in seen.items() if key[:5] == "COMM:"],
                   [comment[1] for comment in own[:1]])


def check_apply(file):
    """Checks that `apply` gives another file the fields of this one, or fails and leaves it unchanged."""
    target = file.folder / "target.mp3"
    file.reset()
    for option in ("--lossless", "--notes"):
        target.write_bytes(file.audio())
        words = ["apply", option, "--all", "--from", file.path.name, target.name]
        status, _, notes = run(file.program, words, file.folder)
        is_rejected = option == "--lossless" and (file.is_refused or file.name in REJECTED_AS_SOURCE)
        file.check(f"{option}: status of apply", status, 1 if is_rejected else 0)
        if status == 0:
            check_applied(file, option, view(target), notes)
        else:
            file.check(f"{option}: a failed apply changes nothing", target.read_bytes() == file.audio(), True)


def check_tag(file):
    """Checks each of the writing commands with the tag of a file."""
    for part in (check_refusal,) if file.is_refused else (check_one_field, check_all_fields, check_clearing):
        part(file)
    check_apply(file)
    check_notes(file)


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


def check_genres(program, folder):
    """Checks that genres have the names that mutagen knows, or those of the standard."""
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


def check_picture_types(program, folder):
    """Checks that notes name types of pictures as mutagen does, or by the program's own names."""
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
    path.write_bytes(tag(4, f4("TBPM", text("127.98")), f4("TALB", text("A"))) + AUDIO)
    target.write_bytes(AUDIO)
    own = {"env": {**proof.ENVIRONMENT, "HOME": str(folder)}}
    copied = run(program, ["copy", "--lossless", "--no-desktop", path.name], folder, **own)
    check("values that fit no field: copied", (copied[0], copied[2]), (0, ""))
    message = 'quillmark: The clipboard cannot carry the bpm "127.98" of the copied file. Leave it out with --fields.\n'
    check("values that fit no field: pasted",
          run(program, ["paste", "--all", target.name], folder, **own)[::2], (1, message))
    check("values that fit no field: pasted without them",
          run(program, ["paste", "--fields", "album", target.name], folder, **own)[0], 0)


def check_several_positions(program, folder):
    """Checks that a new total changes the first of several positions only."""
    path = folder / "track.mp3"
    path.write_bytes(tag(4, f4("TRCK", text("1\0" + "2/9"))) + AUDIO)
    run(program, ["set", "--lossless", "--track-total", "5", path.name], folder)
    check("several positions", view(path)["TRCK"], ("1/5", "2/9"))


def check_data_before_tag(program, folder):
    """Checks that --lossless refuses files with data before their tag."""
    path = folder / "track.mp3"
    path.write_bytes(b"data" + tag(3, f3("TIT2", text("K"))) + AUDIO)
    for words in (["read"], ["set", "--title", "T"]):
        errors = run(program, [*words, "--lossless", path.name], folder)[2]
        check("data before the tag", "track.mp3: --lossless cannot keep the data before its ID3v2 tag." in errors, True)


def check_unread_frames(program, folder):
    """Checks that a frame that cannot be read is dropped only with its own field, and is reported then."""
    path = folder / "track.mp3"
    track, comment = tag(3, f3("TRCK", b"\x81abc", 0x40)), tag(3, f3("COMM", b"\x81abc", 0x40))
    webp, compressed = tag(3, f3("APIC", b"\0image/webp\0\3\0RIFF")), tag(4, f4("TPE1", b"\x81abc", 8))
    for what, data, words, (status, outcome, note) in (
            ("half of a frame", track, ["--clear", "track-total"], (0, "unchanged", "")),
            ("half of a frame is set", track, ["--track-total", "3"], (2, "", "cannot keep the frame TRCK")),
            ("a whole frame", track, ["--title", "T", "--clear", "track-number,track-total"],
             (0, "updated", "drops its track number that")),
            ("a comment", comment, ["--title", "T", "--clear", "comment"], (0, "updated", "drops its comment that")),
            ("a picture", webp, ["--title", "T", "--clear", "artwork"],
             (0, "updated", "drops its artwork (front cover, WebP")),
            ("a compressed frame", compressed, ["--title", "T", "--clear", "artist"],
             (0, "updated", "drops its artist that"))):
        path.write_bytes(data + AUDIO)
        result = run(program, ["set", "--lossless", "--notes", *words, path.name], folder)
        check(f"unread: {what}", (result[0], outcome in result[1].split("\n")[0], note in result[2]),
              (status, True, True))
        again = run(program, ["set", "--lossless", *words, path.name], folder)
        check(f"unread: {what}, again", again[1].startswith("unchanged"), status == 0)


def check_note_texts(program, folder):
    """Checks notes of writes without --lossless word by word."""
    path = folder / "track.mp3"
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
        for part in (check_every_field, check_blank_frames):
            part(program, folder, audio)
        for part in (check_genres, check_picture_types, check_artwork, check_values_that_fit_no_field,
                     check_several_positions, check_data_before_tag, check_unread_frames, check_note_texts):
            part(program, folder)
        for name, data in HAND_MADE.items():
            check_tag(TaggedFile(program, folder, name, data + audio + after_audio(name), "refused" in name))
        for name, make in PROGRAMS.items():
            path = folder / "made.mp3"
            path.write_bytes(audio)
            make(path)
            check_tag(TaggedFile(program, folder, name, path.read_bytes()))
    proof.finish("With --lossless nothing is lost; without it, every loss is reported.")


if __name__ == "__main__":
    main()
