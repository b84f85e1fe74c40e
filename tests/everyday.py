"""Checks folders, whole tags, strict runs, default options, notes and hints as the manual describes them.

Usage: everyday.py PROGRAM
"""
import os
import shutil

import mutagen.id3

import proof
from proof import ENVIRONMENT, SAMPLES, check, quillmark
from tagbytes import audio_of, f3, tag, text
from tagcases import APE

NOTHING_DONE = "\nchanged 0, unchanged 0, failed 1\n"
FOLDER_HINT = "quillmark: note: --recursive takes the MP3 files in and below a folder.\n"
NAMES = FIRST, SECOND, _, LAST = "01 Kyrie.mp3", "02 Gloria.mp3", "03 Credo.mp3", "04 Sanctus.mp3"
SET = ("set", "--title", "T")
WHOLE = ("apply", "--whole-tag", "--from", FIRST)


class Stage:
    """A folder with a copy of the album."""

    def __init__(self, folder):
        self.folder = shutil.copytree(SAMPLES, folder / "album")

    def run(self, *words, options=""):
        environment = {**ENVIRONMENT, "HOME": str(self.folder.parent), "QUILLMARK_OPTIONS": options}
        return quillmark(words, self.folder, env=environment)

    def check(self, words, *expected, **how):
        check(words, self.run(*words, **how), expected)

    def contents(self):
        """Returns the bytes of all files in and below the folder."""
        return {path: path.read_bytes() for path in sorted(self.folder.rglob("*")) if path.is_file()}


def check_folders(folder):
    stage = Stage(folder)
    folder = stage.folder
    for name in ("b/z.mp3", "b/A.MP3", "b a/x.mp3", "b/deep/er/1.mp3", ".hidden/2.mp3", "b/.3.mp3", "b/4.mp3.orig",
                 "elsewhere/5.mp3", "empty/x"):
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(folder / FIRST, folder / name)
    for name, target in (("loop", ".."), ("linked.mp3", "../elsewhere/5.mp3"), ("nowhere.mp3", "nothing")):
        (folder / "b" / name).symlink_to(target)
    os.mkfifo(folder / "b/pipe.mp3")
    (folder / "list").write_bytes(b"b a\0")
    for words, found in ((["b"], ["b/A.MP3", "b/deep/er/1.mp3", "b/linked.mp3", "b/z.mp3"]),
                         ([SECOND, "b a/", "elsewhere"], [SECOND, "b a/x.mp3", "elsewhere/5.mp3"]),
                         (["--files0-from", "list"], ["b a/x.mp3"])):
        shown = stage.run(*SET, "--recursive", "--paths", "--dry-run", *words)[1].split("\n")[:-3]
        check(f"the files of {words}", shown, [f"would     {name}" for name in found])
    stage.check((*SET, "--recursive", "empty"), 1, "", "quillmark: No file that ends in .mp3 is in empty.\n")
    message = "b could not be read: it is a folder.\n"
    stage.check(("copy", "--recursive", "b"), 1, "", f"quillmark: {message}")
    stage.check((*SET, "--notes", "b"), 2, NOTHING_DONE, f"quillmark: failed    b: {message}{FOLDER_HINT}")
    stage.check(("read", "--notes", "b"), 1, "", f"quillmark: {message}{FOLDER_HINT}")
    stage.check(("read", "b"), 1, "", f"quillmark: {message}")


def check_whole_tags(folder):
    stage = Stage(folder)
    folder, old = stage.folder, stage.contents()
    rich = mutagen.id3.ID3()
    for frame in (mutagen.id3.TIT2(3, ["a", "b"]), mutagen.id3.TXXX(3, "replaygain_track_gain", "-7 dB"),
                  mutagen.id3.POPM("a@b", 200, 3), mutagen.id3.APIC(0, "image/webp", 4, "back", b"RIFF0000WEBP")):
        rich.add(frame)
    rich.save(folder / FIRST, v2_version=4)
    source = (folder / FIRST).read_bytes()
    audio = audio_of(source)
    whole = source[:-len(audio)]
    for outcome in ("changed 3, unchanged 1, failed 0", "changed 0, unchanged 4, failed 0"):
        check(f"whole tags: {outcome}", stage.run(*WHOLE, *NAMES)[1].split("\n")[-2], outcome)
    check("whole tags", [(folder / name).read_bytes() for name in NAMES],
          [whole + audio_of(old[folder / name]) for name in NAMES])
    bad = folder / "bad.mp3"
    for what, data in (("no tag", audio), ("a tag that is cut", source[:40]),
                       ("data without frames", tag(3, b"\1\2\3\4") + audio)):
        bad.write_bytes(data)
        before = stage.contents()
        status, output, error = stage.run("apply", "--whole-tag", "--from", "bad.mp3", *NAMES)
        check(f"whole tag from {what}", (status, output, stage.contents() == before,
                                         "bad.mp3: --whole-tag needs an undamaged ID3v2 tag, but " in error), (1, "", True, True))
    refusal = "failed    bad.mp3: bad.mp3: --whole-tag does not replace a damaged tag"
    for size in (0x7F, whole[7] + 8):  # beyond the end of the file, and beyond the start of the audio
        damaged = source[:7] + bytes([size]) + source[8:]
        bad.write_bytes(damaged)
        status, output, error = stage.run(*WHOLE, "bad.mp3")
        check(f"a damaged target of size {size}", (status, output, refusal in error, bad.read_bytes() == damaged),
              (2, NOTHING_DONE, True, True))
    bad.write_bytes(audio + APE)
    check("a whole tag for a file with an APE tag", stage.run(*WHOLE, "--lossless", "bad.mp3")[1], NOTHING_DONE)
    for name, end in (("ID3v1", b"TAG" + b"Title".ljust(125, b"\0")), ("APE", APE)):
        bad.write_bytes(audio + end)
        note = f"quillmark: note: bad.mp3: hides its {name} tag.\n"
        check(f"a hidden {name} tag", stage.run(*WHOLE, "--notes", "bad.mp3")[2], note)
    stage.check((*WHOLE, "--fields", "title", LAST), 1, "",
                "quillmark: --whole-tag takes the whole tag, without --all and --fields.\n")


def check_options(folder):
    """Checks that a strict run that is refused writes nothing, and the options of QUILLMARK_OPTIONS."""
    stage = Stage(folder)
    (stage.folder / "text.mp3").write_text("not music")
    shutil.copy(stage.folder / LAST, stage.folder / "-n.mp3")
    before = stage.contents()
    strict = ("set", "--strict", "--title", "x")
    for words, error in (
            (("set", "--strict", "--titel", "x", LAST), "--titel is no option of set; did you mean --title?"),
            ((*strict, "-n", LAST), "-n is neither an option nor the name of a file."),
            ((*strict, "–lossless", LAST), "–lossless is neither an option nor the name of a file."),
            ((*strict, LAST, "gone.mp3"), "gone.mp3 could not be read."),
            ((*strict, LAST, "text.mp3"), "text.mp3 is not an MP3 file."),
            (("read", "--strict", LAST, "gone.mp3"), "gone.mp3 could not be read.")):
        stage.check(words, 1, "", f"quillmark: {error}\n")
    check("a strict run that is refused writes nothing", stage.contents() == before, True)
    check("a strict run", stage.run(*strict, "-n.mp3", LAST)[0], 0)
    unchanged = ("set", "--title", "Gloria", SECOND)
    stage.check((*unchanged, "--x"), 0, "\nchanged 0, unchanged 1, failed 0\n",
                "quillmark: note: --x is no option of set and is ignored.\n", options="--quiet\t--notes --json")
    unknown = "is no option of any command; did you mean --lossless?"
    valued = "takes a value and cannot be a default."
    for word, reason in (("--losless", unknown), ("lossless", unknown), ("--from", valued), ("--title", valued)):
        stage.check(unchanged, 1, "", f"quillmark: QUILLMARK_OPTIONS: {word} {reason}\n", options=f"--quiet {word}")
    stage.check(("--version",), 0, "quillmark 1.1.0\n", "")


def check_notes(folder):
    stage = Stage(folder)
    removed = ("quillmark: note: {} has no album and no artwork: they {} removed from the other files. "
               "--fields leaves them alone.\n")
    fields = ("--fields", "album,artwork,composer", "--notes")
    apply = ("apply", "--from", SECOND, *fields)
    stage.run("copy", "--no-desktop", SECOND)
    for words, note in (((*apply, "--dry-run", *NAMES), removed.format(SECOND, "would be")),
                        (("paste", *fields, "--dry-run", FIRST), removed.format("The clipboard", "would be")),
                        ((*apply, *NAMES), removed.format(SECOND, "are")), ((*apply, *NAMES), ""),
                        (("apply", "--from", SECOND, FIRST), "")):
        check(words, stage.run(*words)[2], note)
    first = stage.folder / FIRST
    first.write_bytes(tag(3, f3("TXXX", b"\0a\0b"), f3("TXXX", b"\0c\0d"), f3("POPM", b"x\0\1"), f3("TYER", text("1977")),
                          f3("TDAT", text("0506")), f3("APIC", b"\0image/jpeg\0\3\0\xff\xd8\xff\xe0"),
                          f3("APIC", b"\0image/png\0\4\0\x89PNG")) + b"\xff\xfb")
    check("frames that belong to no field",
          stage.run("apply", "--all", "--notes", "--dry-run", "--from", FIRST, FIRST)[2].split("note: ")[-1],
          f"{FIRST}: not carried, as no field holds them: 2 TXXX, POPM, a picture (back cover), "
          "the day and month of its date. --whole-tag takes them.\n")
    first.write_bytes(tag(3, f3("TPOS", text("A")), f3("TIT2", b"\3one\0two")) + b"\xff\xfb")
    stage.check(("read", "--lossless", "--notes", FIRST), 0, "  Title  one / two\n",
                f'quillmark: note: {FIRST}: its disc number "A" is not read.\n')
    check("read --lossless --json", '"one\\u0000two"' in stage.run("read", "--lossless", "--json", FIRST)[1], True)


def check_hints(folder):
    stage = Stage(folder)
    (stage.folder / "cover.webp").write_bytes(b"RIFF\0\0\0\0WEBPVP8 ")
    (stage.folder / "empty").write_bytes(b"")
    ignored = "is no option of set and is ignored; did you mean"
    for words, hint in (
            (("set", "--track", "3"), f"--track {ignored} --track-number?"),
            (("set", "--TITLE", "x"), f"--TITLE {ignored} --title?"), (("set", "--cover", "x"), f"--cover {ignored} --artwork?"),
            (("read", "--cover"), "--cover is no option of read and is ignored."),
            (("set", "--clear", "band"), "did you mean album-artist?"),
            (("apply", "--from", FIRST, "--fields", "titel"), "did you mean title?"),
            (("set", "--disc-number", "1/2"), "write --disc-number 1 --disc-total 2."),
            (("set", "--artwork", "cover.webp"), "cover.webp is in the format WebP; convert it to JPEG or PNG."),
            (("set", "--artwork", "empty"), "empty is empty."),
            (("set", "--artwork", "gone.jpg"), "gone.jpg could not be read: No such file or directory.")):
        for notes, expected in (["--notes"], [f"quillmark: note: {hint}"]), ([], []):
            error = stage.run(*words, *notes, SECOND)[2]
            check(f"the hint for {words} {notes}", [line for line in error.split("\n") if "note:" in line], expected)


proof.main("Folders, whole tags, strict runs, default options, notes and hints work as described.", check_folders,
           check_whole_tags, check_options, check_notes, check_hints)
