"""Checks that other projects can use the installed libraries.

The installation can be moved to a folder with a space in its name, every header compiles alone, and the examples work
when built by find_package and by pkg-config.

Usage: development.py CMAKE BUILD_FOLDER COMPILER [FLAG...]
"""
import concurrent.futures
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile

import proof
from proof import ENVIRONMENT, ROOT, SOURCE, audio_of, check, frame, run, tag, text

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wshadow", "-Wconversion", "-Werror"]
LIBRARIES = {"ListTags.cpp": "QuillmarkKit", "SetField.cpp": "QuillmarkKit", "ChangeTitle.cpp": "ID3TagEditor",
             "ShowFrames.cpp": "ID3v2"}
UNKNOWN = frame("TXXX", b"\0key\0value") + frame("PRIV", b"owner\0\1\2\3")


def quietly(what, *command, **options):
    """Runs a command that must succeed; its output appears only if it fails."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, **options)
    check(what, (done.returncode, "" if done.returncode == 0 else done.stdout), (0, ""))


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
    alone = [[header] for header in headers if not (ROOT / header).with_suffix(".cpp").exists()]

    def compile_headers(together):
        includes = "".join(f"#include <{header}>\n" for header in together)
        quietly(f"compiling {includes}", *compile_command, "-fsyntax-only", "-x", "c++", "-", input=includes)

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as threads:
        list(threads.map(compile_headers, [headers, *alone]))


def build_by_find_package(cmake, installed, compiler, flags, folder):
    quietly("configuring the examples", cmake, "-S", ROOT / "examples", "-B", folder, "-G", "Ninja",
            f"-DCMAKE_PREFIX_PATH={installed}", f"-DCMAKE_CXX_COMPILER={compiler}",
            f"-DCMAKE_CXX_FLAGS={' '.join(flags)}")
    quietly("building the examples by find_package", cmake, "--build", folder)


def build_by_pkg_config(package_flags, compiler, flags, folder):
    folder.mkdir()
    for source, library in LIBRARIES.items():
        # The build of the examples names programs the same way: ListTags.cpp becomes list-tags.
        name = "".join(f"-{c.lower()}" if c.isupper() else c for c in pathlib.Path(source).stem).lstrip("-")
        quietly(f"building {source} by pkg-config", compiler, *flags, ROOT / "examples" / source, "-o", folder / name,
                *package_flags("--cflags", "--libs", library))


def check_examples(programs, album):
    def example(name, *words):
        return run(programs / name, words, album)

    album.mkdir()
    for name in ("02 Gloria.mp3", SOURCE):
        (album / name).write_bytes((ROOT / "samples" / name).read_bytes())
    audio = audio_of((album / SOURCE).read_bytes())
    rich = tag(text("TIT2", "Ave"), text("TALB", "Evening"), text("TRCK", "3"), UNKNOWN)
    (album / "rich.mp3").write_bytes(rich + audio)

    check("fields", example("list-tags", "none.mp3", "rich.mp3"),
          (1, "rich.mp3\n  Title: Ave\n  Album: Evening\n  Track Number: 3\n", "none.mp3 could not be read.\n"))
    shown = "TIT2  Ave\nTALB  Evening\nTRCK  3\nTXXX  key: value\nPRIV  9 bytes\n"
    check("frames", example("show-frames", "rich.mp3"), (0, f"ID3v2.3, {len(rich)} bytes\n{shown}", ""))

    check("setting a field", example("set-field", "album", "Morning", "rich.mp3", "none.mp3", "02 Gloria.mp3"),
          (2, "updated rich.mp3\nnone.mp3 could not be read.\nupdated 02 Gloria.mp3\n", ""))
    check("setting it again", example("set-field", "album", "Morning", "rich.mp3"), (0, "unchanged rich.mp3\n", ""))
    check("a field that is not a text", example("set-field", "year", "1977", "rich.mp3")[0], 1)
    check("frames after a change of one field", example("show-frames", "rich.mp3")[1].splitlines()[1:],
          shown.replace("Evening", "Morning").splitlines())

    check("changing the title", example("change-title", "Salve", SOURCE), (0, "", ""))
    changed = (album / SOURCE).read_bytes()
    check("the title alone differs", example("list-tags", SOURCE)[1],
          run(programs / "list-tags", [SOURCE], ROOT / "samples")[1].replace("Kyrie\n", "Salve\n"))
    check("the audio stays", audio_of(changed) == audio, True)
    check("no MP3", example("change-title", "Salve", "cover.png"), (1, "", "cover.png: invalidFileFormat\n"))


def main():
    cmake, build, compiler, *flags = sys.argv[1:]
    with tempfile.TemporaryDirectory() as name:
        scratch = pathlib.Path(name).resolve()
        installed = install(cmake, pathlib.Path(build).resolve(), scratch)
        environment = {**ENVIRONMENT, "PKG_CONFIG_PATH": str(next(installed.rglob("pkgconfig")))}

        def package_flags(*words):
            *options, library = words
            asked = ["pkg-config", *options, f"quillmark-{library}"]
            answer = subprocess.run(asked, env=environment, check=True, stdout=subprocess.PIPE, text=True)
            return shlex.split(answer.stdout)

        strict = ["-std=c++20", *WARNINGS, *flags]
        check_headers(installed, [compiler, *strict, *package_flags("--cflags", "QuillmarkKit")])
        build_by_find_package(cmake, installed, compiler, [*WARNINGS, *flags], scratch / "find_package")
        build_by_pkg_config(package_flags, compiler, strict, scratch / "pkg-config")
        for way in ("find_package", "pkg-config"):
            check_examples(scratch / way, scratch / f"album {way}")


if __name__ == "__main__":
    main()
    proof.finish("The examples work with the installed libraries.")
