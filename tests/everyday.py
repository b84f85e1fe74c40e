"""Checks folders, whole tags, strict runs, default options, notes and hints as the manual describes them.

Usage: everyday.py PROGRAM SAMPLES
"""
import os
import pathlib
import shutil
import sys
import tempfile

import mutagen.id3

import proof
from proof import ENVIRONMENT, check, frame, run, tag, text

NOTHING_DONE = "\nchanged 0, unchanged 0, failed 1\n"
FOLDER_HINT = "quillmark: note: --recursive takes the MP3 files in and below a folder.\n"
NAMES = ("01 Kyrie.mp3", "02 Gloria.mp3", "03 Credo.mp3", "04 Sanctus.mp3")


def contents(folder):
    """Returns the bytes of all files in and below a folder."""
    return {path: path.read_bytes() for path in sorted(folder.rglob("*")) if path.is_file()}


class Stage:
    """A folder with a copy of the album; `reset` makes a new copy."""

    def __init__(self, program, samples, scratch):
        self.program, self.samples, self.folder = program, samples, scratch / "album"

    def reset(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        shutil.copytree(self.samples, self.folder)
        return self.folder

    def run(self, *words, options=None):
        environment = {**ENVIRONMENT, "HOME": str(self.folder.parent), "QUILLMARK_OPTIONS": options or ""}
        return run(self.program, words, self.folder, env=environment)


def check_folders(stage):
    folder = stage.reset()
    for name in ("b/z.mp3", "b/A.MP3", "b a/x.mp3", "b/deep/er/1.mp3", ".hidden/2.mp3", "b/.3.mp3", "b/4.mp3.orig"):
        (folder / name).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(folder / NAMES[0], folder / name)
    (folder / "elsewhere").mkdir()
    shutil.copy(folder / NAMES[0], folder / "elsewhere/5.mp3")
    (folder / "b/loop").symlink_to("..")
    (folder / "b/linked.mp3").symlink_to("../elsewhere/5.mp3")
    (folder / "b/nowhere.mp3").symlink_to("nothing")
    os.mkfifo(folder / "b/pipe.mp3")
    found = ["b/A.MP3", "b/deep/er/1.mp3", "b/linked.mp3", "b/z.mp3"]
    words = ("set", "--title", "T", "--recursive", "--paths")
    dry = (*words, "--dry-run")
    check("the files of a folder", stage.run(*dry, "b")[1].split("\n")[:-3], [f"would     {name}" for name in found])
    check("folders and files in their order", stage.run(*dry, NAMES[1], "b a/", "elsewhere")[1].split("\n")[:3],
          [f"would     {name}" for name in (NAMES[1], "b a/x.mp3", "elsewhere/5.mp3")])
    (folder / "list").write_bytes(b"b a\0")
    check("a folder in a list", stage.run(*dry, "--files0-from", "list")[1].split("\n")[0], "would     b a/x.mp3")
    (folder / "empty").mkdir()
    check("a folder without MP3s", stage.run(*words, "empty"),
          (1, "", "quillmark: No file that ends in .mp3 is in empty.\n"))
    message = "b could not be read: it is a folder.\n"
    check("an option of other commands", stage.run("copy", "--recursive", "b"), (1, "", f"quillmark: {message}"))
    check("a folder to write", stage.run("set", "--title", "T", "--notes", "b"),
          (2, NOTHING_DONE, f"quillmark: failed    b: {message}{FOLDER_HINT}"))
    check("a folder to read", stage.run("read", "--notes", "b"), (1, "", f"quillmark: {message}{FOLDER_HINT}"))
    check("a folder without notes", stage.run("read", "b"), (1, "", f"quillmark: {message}"))


def check_whole_tags(stage):
    folder = stage.reset()
    rich = mutagen.id3.ID3()
    for kind, values in (("TIT2", {"text": ["a", "b"]}), ("TRCK", {"text": "9/9"}),
                         ("TXXX", {"desc": "replaygain_track_gain", "text": "-7 dB"})):
        rich.add(getattr(mutagen.id3, kind)(encoding=3, **values))
    rich.add(mutagen.id3.POPM(email="a@b", rating=200, count=3))
    rich.add(mutagen.id3.APIC(encoding=0, mime="image/webp", type=4, desc="back", data=b"RIFF0000WEBP"))
    rich.save(folder / NAMES[0], v2_version=4)
    source = (folder / NAMES[0]).read_bytes()
    whole = source[:len(source) - len(proof.audio_of(source))]
    old = contents(folder)
    words = ("apply", "--whole-tag", "--from", NAMES[0])
    check("whole tags", stage.run(*words, *NAMES)[1].split("\n")[-2], "changed 3, unchanged 1, failed 0")
    for name in NAMES:
        check(f"whole tag of {name}", (folder / name).read_bytes(), whole + proof.audio_of(old[folder / name]))
        check(f"whole tag of {name} as it is read", mutagen.id3.ID3(folder / name), mutagen.id3.ID3(folder / NAMES[0]))
    check("a whole tag that the files already have", stage.run(*words, *NAMES)[1].split("\n")[-2],
          "changed 0, unchanged 4, failed 0")
    audio = proof.audio_of(source)
    damaged = "damaged.mp3: --whole-tag needs an undamaged ID3v2 tag, but "
    for what, data in (("no tag", audio), ("a tag that is cut", source[:40]),
                       ("data without frames", tag(b"\1\2\3\4") + audio)):
        (folder / "damaged.mp3").write_bytes(data)
        before = contents(folder)
        status, output, error = stage.run("apply", "--whole-tag", "--from", "damaged.mp3", *NAMES)
        check(f"whole tag from {what}", (status, output, damaged in error, contents(folder) == before),
              (1, "", True, True))
    for what, size in (("the end of the file", 0x7F), ("the start of the audio", whole[7] + 8)):
        target = bytearray(old[folder / NAMES[1]])
        target[7] = size
        (folder / "damaged.mp3").write_bytes(target)
        status, output, error = stage.run(*words, "damaged.mp3")
        refusal = "failed    damaged.mp3: damaged.mp3: --whole-tag does not replace a damaged tag"
        check(f"a target whose tag claims to go beyond {what}",
              (status, output, refusal in error, (folder / "damaged.mp3").read_bytes() == target),
              (2, NOTHING_DONE, True, True))
    (folder / "old.mp3").write_bytes(audio + b"TAG" + b"Title".ljust(125, b"\0"))
    check("a note about the ID3v1 tag", stage.run(*words, "--notes", "old.mp3")[2],
          "quillmark: note: old.mp3: hides its ID3v1 tag.\n")
    check("--whole-tag and --fields", stage.run(*words, "--fields", "title", *NAMES),
          (1, "", "quillmark: --whole-tag takes the whole tag, without --all and --fields.\n"))
    ape = b"APETAGEX" + (2000).to_bytes(4, "little") + (32).to_bytes(4, "little") + bytes(16)
    (folder / "ape.mp3").write_bytes(audio + ape)
    check("a whole tag is not written to a file with an APE tag",
          stage.run(*words, "--lossless", "ape.mp3")[1], NOTHING_DONE)
    check("a note about the APE tag", stage.run(*words, "--notes", "ape.mp3")[2],
          "quillmark: note: ape.mp3: hides its APE tag.\n")


def check_strict(stage):
    folder = stage.reset()
    (folder / "text.mp3").write_text("not music")
    before = contents(folder)
    last = NAMES[-1]
    for words, error in (
            (("--titel", "x", last), "--titel is no option of set; did you mean --title?"),
            (("--title", "x", "-n", last), "-n is neither an option nor the name of a file."),
            (("--title", "x", "–lossless", last), "–lossless is neither an option nor the name of a file."),
            (("--title", "x", last, "gone.mp3"), "gone.mp3 could not be read."),
            (("--title", "x", last, "text.mp3"), "text.mp3 is not an MP3 file.")):
        check(f"set --strict {words}", stage.run("set", "--strict", *words), (1, "", f"quillmark: {error}\n"))
    check("read --strict", stage.run("read", "--strict", last, "gone.mp3"),
          (1, "", "quillmark: gone.mp3 could not be read.\n"))
    check("a strict run that is refused writes nothing", contents(folder) == before, True)
    shutil.copy(folder / last, folder / "-n")
    os.rename(folder / "-n", folder / "-n.mp3")
    check("a strict run", stage.run("set", "--strict", "--title", "x", "-n.mp3", last)[0], 0)


def check_default_options(stage):
    stage.reset()
    unchanged = ("set", "--title", "Gloria", NAMES[1])
    check("default options", stage.run(*unchanged, "--x", options="--quiet\t--notes --json"),
          (0, "\nchanged 0, unchanged 1, failed 0\n", "quillmark: note: --x is no option of set and is ignored.\n"))
    unknown = "is no option of any command; did you mean --lossless?"
    valued = "takes a value and cannot be a default."
    for word, reason in (("--losless", unknown), ("lossless", unknown), ("--from", valued), ("--title", valued)):
        check(f"default option {word}", stage.run(*unchanged, options=f"--quiet {word}"),
              (1, "", f"quillmark: QUILLMARK_OPTIONS: {word} {reason}\n"))
    check("the version", stage.run("--version"), (0, "quillmark 1.1.0\n", ""))


def check_notes(stage):
    folder = stage.reset()
    note = "quillmark: note: "
    removed = ("quillmark: note: {} has no album and no artwork: they {} removed from the other files. "
               "--fields leaves them alone.\n")
    fields = ("--fields", "album,artwork,composer", "--notes")
    words = ("apply", "--from", NAMES[1], *fields)
    check("fields that would be removed", stage.run(*words, "--dry-run", *NAMES)[2],
          removed.format(NAMES[1], "would be"))
    stage.run("copy", "--no-desktop", NAMES[1])
    check("fields that the clipboard does not have", stage.run("paste", *fields, "--dry-run", NAMES[0])[2],
          removed.format("The clipboard", "would be"))
    check("fields that are removed", stage.run(*words, *NAMES)[2], removed.format(NAMES[1], "are"))
    check("fields that no file has", stage.run(*words, *NAMES)[2], "")
    check("without --notes", stage.run("apply", "--from", NAMES[1], NAMES[0])[2], "")
    picture = frame("APIC", b"\0image/jpeg\0\3\0\xff\xd8\xff\xe0") + frame("APIC", b"\0image/png\0\4\0\x89PNG")
    rich = tag(frame("TXXX", b"\0a\0b"), frame("TXXX", b"\0c\0d"), frame("POPM", b"x\0\1"), text("TYER", "1977"),
               text("TDAT", "0506"), picture)
    (folder / NAMES[0]).write_bytes(rich + b"\xff\xfb")
    words = ("apply", "--all", "--notes", "--dry-run", "--from", NAMES[0], NAMES[0])
    check("frames that belong to no field", stage.run(*words)[2].split(note)[-1],
          f"{NAMES[0]}: not carried, as no field holds them: 2 TXXX, POPM, a picture (back cover), "
          "the day and month of its date. --whole-tag takes them.\n")
    (folder / NAMES[0]).write_bytes(tag(text("TPOS", "A"), frame("TIT2", b"\3one\0two")) + b"\xff\xfb")
    check("read --lossless --notes", stage.run("read", "--lossless", "--notes", NAMES[0]),
          (0, "  Title  one / two\n", f'{note}{NAMES[0]}: its disc number "A" is not read.\n'))
    check("read --lossless --json", '"one\\u0000two"' in stage.run("read", "--lossless", "--json", NAMES[0])[1], True)


def check_hints(stage):
    folder = stage.reset()
    (folder / "cover.webp").write_bytes(b"RIFF\0\0\0\0WEBPVP8 ")
    (folder / "empty").write_bytes(b"")
    for words, hint in (
            (("set", "--track", "3"), "--track is no option of set and is ignored; did you mean --track-number?"),
            (("set", "--TITLE", "x"), "--TITLE is no option of set and is ignored; did you mean --title?"),
            (("set", "--cover", "x"), "--cover is no option of set and is ignored; did you mean --artwork?"),
            (("read", "--cover"), "--cover is no option of read and is ignored."),
            (("set", "--clear", "band"), "did you mean album-artist?"),
            (("apply", "--from", NAMES[0], "--fields", "titel"), "did you mean title?"),
            (("set", "--disc-number", "1/2"), "write --disc-number 1 --disc-total 2."),
            (("set", "--artwork", "cover.webp"), "cover.webp is in the format WebP; convert it to JPEG or PNG."),
            (("set", "--artwork", "empty"), "empty is empty."),
            (("set", "--artwork", "gone.jpg"), "gone.jpg could not be read: No such file or directory.")):
        error = stage.run(*words, "--notes", NAMES[1])[2]
        notes = [line for line in error.split("\n") if "note:" in line]
        check(f"the hint for {words}", notes, [f"quillmark: note: {hint}"])
        check(f"no hint for {words}", "note:" in stage.run(*words, NAMES[1])[2], False)


def main():
    program, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    with tempfile.TemporaryDirectory() as scratch:
        stage = Stage(program, samples, pathlib.Path(scratch))
        for part in (check_folders, check_whole_tags, check_strict, check_default_options, check_notes, check_hints):
            part(stage)


if __name__ == "__main__":
    main()
    proof.finish("Folders, whole tags, strict runs, default options, notes and hints work as described.")
