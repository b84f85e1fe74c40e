#!/usr/bin/env python3
"""Checks with mutagen, an independent reader, that the writing commands lose nothing with --lossless, and that they
report every loss without it. The tags are written by other programs or made by hand.

Usage: lossless.py PROGRAM
"""
import json
import os
import re
import time

from mutagen.id3 import PictureType
from mutagen._constants import GENRES

import proof
from proof import check, quillmark
from tagbytes import audio_of, f3, f4, split, tag, text
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

    def __init__(self, folder, name, original, is_refused=False):
        self.folder, self.name, self.original = folder, name, original
        self.is_refused = is_refused
        (folder / "new.png").write_bytes(PNG + b"new")
        self.path = folder / "track.mp3"
        self.path.write_bytes(original)
        self.before = view(self.path)
        audio = audio_of(original) if original[:3] == b"ID3" else original
        self.audio = audio[10 if audio.startswith(b"3DI") else 0:]

    def check(self, what, actual, expected):
        check(f"{self.name}: {what}", actual, expected)

    def run(self, *words, is_again=False, status=0):
        """Like proof.run with the file as the last word, on the original unless is_again; checks the status."""
        if not is_again:
            self.path.write_bytes(self.original)
        result = quillmark([*words, self.path.name], self.folder)
        self.check(f"{' '.join(words)}: status", result[0], status)
        return result

    def write(self, *words):
        """Writes the original with --lossless and returns the view of the result.

        Checks that the audio stays, and that the same command changes nothing the next time.
        """
        self.check("errors", self.run("set", "--lossless", *words)[2], "")
        written = self.path.read_bytes()
        self.check("the audio stays, and moves by whole blocks",
                   (audio_of(written) == self.audio, (len(written) - len(self.original)) % 4096), (True, 0))
        self.check("a second run changes nothing",
                   self.run("set", "--lossless", *words, is_again=True)[1].split()[0], "unchanged")
        return view(self.path)

    def comments(self, is_technical):
        """Returns the comments of the original, by their keys: the technical or the other ones."""
        return {key: value for key, value in self.before.items()
                if key[:5] == "COMM:" and value[0].startswith(TECHNICAL) == is_technical}


def check_refusal(file):
    """Checks that --lossless explains why it cannot write the file, and leaves it unchanged."""
    for more in ((), ("--dry-run",)):
        errors = file.run("set", "--lossless", *PUBLISHER, *more, status=2)[2]
        file.check("a refused write", ("track.mp3: --lossless cannot keep " in errors, file.path.read_bytes()),
                   (True, file.original))


def check_one_field(file):
    """Checks that the edit of one field keeps all other frames, byte by byte where their form can stay."""
    after = file.write(*PUBLISHER)
    is_v23_unsynchronised = file.original[3] == 3 and file.original[5] & 0x80
    if file.original[3:4] in (b"\3", b"\4") and not is_v23_unsynchronised:
        (version, frames), (new_version, new_frames) = split(file.original), split(file.path.read_bytes())
        file.check("version and frames", (new_version, [frame for frame in new_frames if frame[:4] != b"TPUB"]),
                   (version, [frame for frame in frames if frame[:4] != b"TPUB"]))
        if "TPUB" not in file.before:
            file.run("set", "--lossless", "--clear", "publisher", is_again=True)
            file.check("version and frames after the opposite edit", split(file.path.read_bytes()), (version, frames))
    file.check("all frames after an edit of the publisher", after, {**file.before, "TPUB": ("P",)})


def new_value(field):
    return "1977" if field in ("year", "bpm", "track-number", "disc-number") else f"new {field}"


def check_all_fields(file):
    """Checks that new values for all fields replace only the frames of these fields."""
    options = ((f"--{name}", new_value(name)) for name in FIELDS.values() if name != "artwork")
    after = file.write("--artwork", "new.png", *(word for option in options for word in option))
    file.check("frames of no field after an edit of all fields", others(after), others(file.before))
    for frame, name in FIELDS.items():
        old, new = ([value for key, value in seen.items() if key[:4] == frame] for seen in (file.before, after))
        if frame in ("COMM", "USLT", "APIC"):
            is_new_there = name == "artwork" or new_value(name) in [value[1] for value in new]
            file.check(f"one {name} is new, and replaces one at most",
                       (is_new_there, len(set(old) - set(new)) <= 1, len(set(new) - set(old))), (True, True, 1))
        else:
            file.check(name, [value[0].split("/")[0] for value in new], [new_value(name)])


def check_clearing(file):
    """Checks that the removal of all fields but the title keeps the frames of no field and the technical comments."""
    for fields in ("artwork", ",".join([*FIELDS.values(), "track-total", "disc-total"])):
        after = file.write("--title", "T", "--clear", fields)
    file.check("all fields cleared", (file.run("read", "--lossless", is_again=True)[1], after),
               ("  Title  T\n", {**others(file.before), **file.comments(is_technical=True), "TIT2": ("T",)}))


def check_notes(file):
    """Checks that a write without --lossless reports each value that it loses, and nothing else."""
    words = ("set", *PUBLISHER)
    notes = file.run(*words, "--notes", "--dry-run")[2]
    file.check("the notes of a dry run and of the run", file.run(*words, "--notes")[2], notes)
    lost = values_of(file.before) - values_of(view(file.path))
    for frame, value in () if file.is_refused else lost:
        named = NAMES.get(frame, frame.split()[-1]).replace("-", " ")
        file.check(f"the loss of {frame} {value} is in the notes {notes!r}", named in notes, True)
    file.check(f"a hidden tag in {notes!r}", "hides its APE tag" in notes, "APE" in file.name)
    # Mutagen does not see everything in these.
    if not any(word in file.name for word in ("ID3v1", "APE", "refused", "undecodable text", "invalid identifier")):
        file.check(f"notes only for a loss: {notes!r}", notes != "", lost != set())
    file.check("errors without --notes", file.run(*words)[2], "")


def artwork_and_year(seen):
    """Returns what a view has of the fields artwork (front cover, else the first picture) and year."""
    pictures = [value for key, value in seen.items() if key[:4] == "APIC"]
    chosen = next((picture for picture in pictures if picture[1] == 3), pictures[0] if pictures else (None,) * 4)
    date = seen.get("TDRC", [""])[0]
    # Some programs write the date as seconds since 1970.
    return chosen[3], str(time.gmtime(int(date)).tm_year) if len(date) == 9 else date[:4]


def check_apply(file):
    """Checks that `apply` gives another file each field of this one or names it in the notes, or fails."""
    target = file.folder / "target.mp3"
    file.path.write_bytes(file.original)
    for option in ("--lossless", "--notes"):
        target.write_bytes(file.audio)
        words = ["apply", option, "--all", "--from", file.path.name, target.name]
        status, _, notes = quillmark(words, file.folder)
        is_rejected = option == "--lossless" and (file.is_refused or file.name in REJECTED_AS_SOURCE)
        file.check(f"{option}: status of apply", status, 1 if is_rejected else 0)
        if status:
            file.check(f"{option}: a failed apply changes nothing", target.read_bytes() == file.audio, True)
            continue
        seen, (artwork, year) = view(target), artwork_and_year(file.before)
        found = next((value[3] for key, value in seen.items() if key[:4] == "APIC"), None)
        differing = {name for name, differs in (("artwork", found != artwork), ("date", seen.get("TDRC", [""])[0] != year))
                     if differs}
        differing |= {NAMES[frame].replace("-", " ") for frame, value in values_of(file.before) - values_of(seen)
                      if frame in FIELDS and frame not in ("COMM", "USLT", "APIC", "TDRC")}
        file.check(f"{option}: fields neither applied nor in the notes {notes!r}",
                   {name for name in differing if name not in notes}, set())
        if option == "--lossless":
            own = sorted(file.comments(is_technical=False).values(), key=lambda comment: comment[0] != "")
            file.check("the comment applied", [value[1] for key, value in seen.items() if key[:5] == "COMM:"],
                       [comment[1] for comment in own[:1]])


def check_tag(file):
    """Checks each of the writing commands with the tag of a file."""
    for part in (check_refusal,) if file.is_refused else (check_one_field, check_all_fields, check_clearing):
        part(file)
    check_apply(file)
    check_notes(file)


def check_tables(folder):
    """Checks the names of fields, and those of genres and of types of pictures against those of mutagen, or of the standard."""
    def read(*words):
        return [tags["genre"] for _, tags in sorted(json.loads(quillmark(["read", "--json", *words], folder)[1]).items())]

    listed = re.findall(r"^  [* ] ([a-z-]+)  ", quillmark(["fields"], None)[1], re.MULTILINE)
    check("fields", {name.replace("-total", "-number") for name in listed}, set(FIELDS.values()))
    standard = {"Alt. Rock": "AlternRock", "Gangsta Rap": "Gangsta", "Psychedelic": "Psychadelic",
                "Fast-Fusion": "Fast Fusion", "Bebop": "Bebob", "A Cappella": "Acapella"}
    genres = [standard.get(name, name) for name in GENRES]
    numbers = "".join(f"({number})" for number in range(len(genres)))
    own = {"OTHER": "other picture", "COVER_FRONT": "front cover", "COVER_BACK": "back cover",
           "RECORDING_LOCATION": "location", "DURING_RECORDING": "recording", "DURING_PERFORMANCE": "performance",
           "SCREEN_CAPTURE": "video frame", "FISH": "bright fish", "BAND_LOGOTYPE": "artist's logo",
           "PUBLISHER_LOGOTYPE": "publisher's logo"}
    types = [own.get(name, name.lower().replace("_", " "))
             for _, name in sorted((int(value), name) for name, value in vars(PictureType).items() if name.isupper())]
    files = [f"{number:02}.mp3" for number in range(80)]
    for number, name in enumerate(files):
        (folder / name).write_bytes(tag(3, f3("TCON", text(f"({number})")),
                                        f3("APIC", b"\0image/webp\0" + bytes([number]) + b"\0RIFF")) + AUDIO)
    (folder / "all.mp3").write_bytes(tag(3, f3("TCON", text(numbers))) + AUDIO)
    check("genres", read("--lossless", "all.mp3"), ["\0".join(genres)])
    check("genres without the option", [re.sub("[^a-z0-9]", "", genre.lower().replace("&", "and")) for genre in read(*files)],
          [re.sub("[^a-z0-9]", "", genre.lower().replace("&", "and")) for genre in genres[:80]])
    notes = quillmark(["set", "--notes", "--dry-run", "--title", "T", *files[:len(types)]], folder)[2]
    check("types of pictures", re.findall(r"drops a picture \((.*), WebP", notes), types)


def picture(kind, make=f3):
    return make("TIT2", text("K")), make("APIC", b"\0image/png\0" + bytes([kind]) + b"d\0" + PNG)


TRACK, COMMENT = tag(3, f3("TRCK", b"\x81abc", 0x40)), tag(3, f3("COMM", b"\x81abc", 0x40))
WEBP, COMPRESSED = tag(3, f3("APIC", b"\0image/webp\0\3\0RIFF")), tag(4, f4("TPE1", b"\x81abc", 8))
BEFORE = b"data" + tag(3, f3("TIT2", text("K")))
CANNOT = "track.mp3: --lossless cannot keep the data before its ID3v2 tag."
STAYS = "(stays, after the new one)"
# Tags, options of `set --lossless --notes --diff`, the status, parts of the output and of the notes, and for each of the
# frames COMM, APIC and TRCK afterwards whether it has the new value.
EDITS = (
    (tag(3, f3("COMM", b"\0eng\0 "), f3("APIC", b"\0image/png\0\3\0"), f3("TIT2", text("K"))),
     "--comment new --artwork new.png", 0, "updated", "", [1, 1]),
    (tag(3, *picture(0)), "--artwork new.png", 0, "updated", "", [1]),
    (tag(3, *picture(4)), "--artwork new.png", 0, STAYS, "", [1, 0]),
    (tag(4, *picture(4, f4)), "--artwork new.png", 0, STAYS, "", [1, 0]),
    (tag(4, f4("TRCK", text("1\0" + "2/9"))), "--track-total 5", 0, "updated", "", [1]),
    (BEFORE, "--title T", 2, "failed 1", CANNOT, None),
    # A frame that cannot be read is dropped only with its own field, and is reported then.
    (TRACK, "--clear track-total", 0, "unchanged 1", "", [0]),
    (TRACK, "--track-total 3", 2, "failed 1", "cannot keep the frame TRCK", [0]),
    (TRACK, "--title T --clear track-number,track-total", 0, "updated", "drops its track number that", []),
    (COMMENT, "--title T --clear comment", 0, "updated", "drops its comment that", []),
    (WEBP, "--title T --clear artwork", 0, "updated", "drops its artwork (front cover, WebP", []),
    (COMPRESSED, "--title T --clear artist", 0, "updated", "drops its artist that", []))
# Tags, options of `set --notes`, and the note.
NOTES = (
    (tag(3, f3("USLT", b"\0eng\0la la\n"), f3("TIT2", text("\nT\n"))), "--album A", ""),
    (tag(4, f4("TIT2", text("T\0\r\n", 2))), "--album A", ""),
    (tag(3, f3("COMM", b"\0deud\0a"), f3("USLT", b"\0lat\0b")), "--comment c",
     'drops the language "lat" of the lyrics. --lossless keeps them.'),
    (tag(3, f3("COMM", b"\0engd\0x"), f3("COMM", b"\0engkeep\0new")), "--comment new",
     'drops the description "keep" of a comment. --lossless keeps them.'),
    (tag(4, f4("PRIV", b"\x81a\0?", 4), f4("PRIV", b"Gb\0?", 0x40), f4("PRIV", b"Gc\0?", 0x40),
         f4("PRIV", b"d\0?", 0x4000)), "--album A",  # flags that v2.3 has elsewhere
     "drops the encryption flag of a PRIV frame, 2 group flags of PRIV frames. --lossless keeps them."),
    (tag(4, f4("TDRC", text("1966")), f4("TIT2", text("T"))), "--year 1999",
     "the old date 1966 (TDRC) stays beside the new year 1999; --lossless replaces it."))


def check_edits(folder):
    path = folder / "track.mp3"
    (folder / "new.png").write_bytes(PNG + b"new")
    for data, options, status, outcome, note, expected in EDITS:
        words = ["set", "--lossless", *options.split(), path.name]
        path.write_bytes(data + AUDIO)
        result = quillmark([*words, "--notes", "--diff"], folder)
        frames = expected and [any(new in one for new in (b"new", b"n\0e\0w", b"1/5\0" b"2/9"))
                               for one in split(path.read_bytes())[1] if one[:4] in (b"COMM", b"APIC", b"TRCK")]
        check(f"{data[:50]} {options}", (result[0], outcome in result[1], note in result[2] if note else result[2], frames),
              (status, True, True if note else "", expected))
        check(f"{data[:50]} {options} again", quillmark(words, folder)[1].startswith("unchanged"), status == 0)
    for data, options, note in NOTES:
        path.write_bytes(data + AUDIO)
        check(f"notes: {data[:50]}", quillmark(["set", "--notes", *options.split(), path.name], folder)[2],
              note and f"quillmark: note: {path.name}: {note}\n")
    path.write_bytes(BEFORE + AUDIO)
    check("data before the tag", CANNOT in quillmark(["read", "--lossless", path.name], folder)[2], True)


def check_values_that_fit_no_field(folder):
    """Checks that `copy` accepts values that no field can hold, and that `paste` rejects them."""
    path = folder / "track.mp3"
    path.write_bytes(tag(4, f4("TBPM", text("127.98")), f4("TALB", text("A"))) + AUDIO)
    message = 'quillmark: The clipboard cannot carry the bpm "127.98" of the copied file. Leave it out with --fields.\n'
    for words, status, error in (("copy --lossless --no-desktop", 0, ""), ("paste --all", 1, message),
                                 ("paste --fields album", 0, "")):
        result = quillmark([*words.split(), path.name], folder, env={**proof.ENVIRONMENT, "HOME": str(folder)})
        check(f"a BPM that is no number: {words}", result[::2], (status, error))


def check_tags(folder):
    audio = audio_of(min(proof.SAMPLES.glob("*.mp3"), key=os.path.getsize).read_bytes())
    for name, data in HAND_MADE.items():
        check_tag(TaggedFile(folder, name, data + audio + after_audio(name), "refused" in name))
    for name, make in PROGRAMS.items():
        path = folder / "made.mp3"
        path.write_bytes(audio)
        make(path)
        check_tag(TaggedFile(folder, name, path.read_bytes()))


if __name__ == "__main__":
    proof.main("With --lossless nothing is lost; without it, every loss is reported.", check_tags, check_tables, check_edits,
               check_values_that_fit_no_field)
