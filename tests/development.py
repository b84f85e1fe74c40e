"""Checks that other projects can use the installed libraries.

The installation can be moved to a folder with a space in its name, every header compiles alone, and the examples work
when built by find_package and by pkg-config.

Usage: development.py CMAKE BUILD_FOLDER COMPILER [FLAG...]
"""
import os
import pathlib
import shlex
import subprocess
import sys

import proof
from proof import ENVIRONMENT, ROOT, SOURCE, check, run
from tagbytes import audio_of, f3, tag, text

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Werror"]
# The examples, their sources and their libraries.
EXAMPLES = {"list-tags": ("ListTags.cpp", "QuillmarkKit"), "set-field": ("SetField.cpp", "QuillmarkKit"),
            "change-title": ("ChangeTitle.cpp", "ID3TagEditor"), "show-frames": ("ShowFrames.cpp", "ID3v2")}
GLORIA = "02 Gloria.mp3"


def quietly(what, *command, **options):
    """Runs a command that must succeed; its output appears only if it fails. Returns the output."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    check(what, (done.returncode, "" if done.returncode == 0 else done.stdout), (0, ""))
    return done.stdout


def install(cmake, build, scratch):
    """Installs the development component, moves it, and returns the new folder."""
    first, moved = scratch / "first", scratch / "a folder"
    quietly("the installation", cmake, "--install", build, "--prefix", first, "--component", "development")
    first.rename(moved)
    for path in moved.rglob("*"):
        if path.is_file() and path.suffix != ".a":
            named = [str(folder) for folder in (scratch, build, ROOT) if str(folder) in path.read_text()]
            check(f"folders of this machine in {path.name}", named, [])
    return moved


def check_headers(installed, compile_command):
    headers = sorted(path.relative_to(installed / "include/quillmark") for path in installed.rglob("*.h"))
    check("the installation contains the headers", pathlib.Path("QuillmarkKit/transfer/TagApplier.h") in headers, True)
    # A header with a source of the same name is already compiled alone: the source includes it first.
    for together in (headers, *([one] for one in headers if not (ROOT / one).with_suffix(".cpp").exists())):
        includes = "".join(f"#include <{header}>\n" for header in together)
        quietly(f"compiling {includes}", *compile_command, "-fsyntax-only", "-x", "c++", "-", input=includes)


def check_examples(programs, album):
    album.mkdir()
    for name in (GLORIA, SOURCE):
        (album / name).write_bytes((ROOT / "samples" / name).read_bytes())
    audio = audio_of((album / SOURCE).read_bytes())
    rich = tag(3, f3("TIT2", text("Ave")), f3("TALB", text("Evening")), f3("TRCK", text("3")),
               f3("TXXX", b"\0key\0value"), f3("PRIV", b"owner\0\1\2\3"))
    (album / "rich.mp3").write_bytes(rich + audio)
    head, shown = f"ID3v2.3, {len(rich)} bytes\n", "TIT2  Ave\nTALB  {}\nTRCK  3\nTXXX  key: value\nPRIV  9 bytes\n"
    missing = "none.mp3 could not be read.\n"
    set_album = ("set-field", "album", "Morning")
    for words, *expected in (
            (("list-tags", "none.mp3", "rich.mp3"), 1, "rich.mp3\n  Title: Ave\n  Album: Evening\n  Track Number: 3\n", missing),
            (("show-frames", "rich.mp3"), 0, head + shown.format("Evening"), ""),
            ((*set_album, "rich.mp3", "none.mp3", GLORIA), 2, f"updated rich.mp3\n{missing}updated {GLORIA}\n", ""),
            ((*set_album, "rich.mp3"), 0, "unchanged rich.mp3\n", ""),
            (("change-title", "Salve", SOURCE), 0, "", ""),
            (("change-title", "Salve", "cover.png"), 1, "", "cover.png: invalidFileFormat\n")):
        check(words, run([programs / words[0], *words[1:]], album), tuple(expected))
    check("a field that is not a text", run([programs / "set-field", "year", "1977", "rich.mp3"], album)[0], 1)
    check("frames after a change of one field", run([programs / "show-frames", "rich.mp3"], album)[1].split("\n", 1)[1],
          shown.format("Morning"))
    old, new = (run([programs / "list-tags", SOURCE], folder)[1] for folder in (ROOT / "samples", album))
    check("only the title has changed", (new, audio_of((album / SOURCE).read_bytes()) == audio),
          (old.replace("Kyrie\n", "Salve\n"), True))


def check_libraries(scratch):
    cmake, build, compiler, *flags = sys.argv[1:]
    installed = install(cmake, pathlib.Path(build).resolve(), scratch)
    environment = {**ENVIRONMENT, "PKG_CONFIG_PATH": str(next(installed.rglob("pkgconfig")))}

    def package_flags(library, *options):
        answer = quietly(f"flags of {library}", "pkg-config", *options, f"quillmark-{library}", env=environment)
        return shlex.split(answer)

    strict = ["-std=c++20", *WARNINGS, *flags]
    check_headers(installed, [compiler, *strict, *package_flags("QuillmarkKit", "--cflags")])
    by_package, by_flags = scratch / "find_package", scratch / "pkg-config"
    quietly("configuring the examples", cmake, "-S", ROOT / "examples", "-B", by_package, "-G", "Ninja",
            f"-DCMAKE_PREFIX_PATH={installed}", f"-DCMAKE_CXX_COMPILER={compiler}",
            f"-DCMAKE_CXX_FLAGS={' '.join([*WARNINGS, *flags])}")
    quietly("building the examples by find_package", cmake, "--build", by_package)
    by_flags.mkdir()
    for example, (source, library) in EXAMPLES.items():
        quietly(f"building {source} by pkg-config", compiler, *strict, ROOT / "examples" / source, "-o",
                by_flags / example, *package_flags(library, "--cflags", "--libs"))
    for programs in (by_package, by_flags):
        check_examples(programs, programs / "album")


proof.main("The examples work with the installed libraries.", check_libraries)
