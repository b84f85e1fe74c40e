#!/usr/bin/env python3
"""Checks on XFS and Btrfs that a file written with --lossless shares its audio with its backup.

Needs root and loop devices.

Usage: sharing.py PROGRAM [SYSTEM]
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

import proof
from proof import check, run
from tagbytes import f3, tag, text

SIZE = 40_000_000
MAKERS = {"xfs": ["mkfs.xfs", "-q", "-m", "reflink=1"], "btrfs": ["mkfs.btrfs", "-q"]}


def system(*words):
    return subprocess.run([str(word) for word in words], capture_output=True, text=True, check=False)


def check_sharing(program, folder, name):
    """Checks writes into tags with little, some and much padding: most of the audio's blocks are shared afterwards."""
    song, backup = folder / "song.mp3", folder / "song.mp3.orig"
    for room in (0, 3000, 9000):
        backup.unlink(missing_ok=True)
        song.write_bytes(tag(3, f3("TIT2", text("Kyrie")), padding=room) + b"\xff\xfb\x90\x64" + os.urandom(SIZE))
        album = "An album " * (200 if room == 9000 else 20)
        words = ["set", "--lossless", "--backup", "--album", album, song.name]
        check(f"{name}, {room}", run(program, words, folder)[0], 0)
        os.sync()
        listed = system("filefrag", "-v", "-b4096", song).stdout
        extents = re.findall(r"^ *\d+:.*?:.*?: +(\d+):(.*)$", listed, re.MULTILINE)
        shared = 4096 * sum(int(length) for length, flags in extents if "shared" in flags)
        check(f"{name}, room for {room}: {shared} bytes shared", shared >= 0.95 * SIZE, True)


def main():
    if proof.is_linux_only("sharing blocks of files"):
        sys.exit(proof.SKIPPED)
    tried = []
    with tempfile.TemporaryDirectory() as folder:
        for name, maker in MAKERS.items():
            image, mount = pathlib.Path(folder) / f"{name}.img", pathlib.Path(folder) / name
            mount.mkdir()
            image.touch()
            os.truncate(image, 600_000_000)
            try:
                if system(*maker, image).returncode or system("mount", "-o", "loop", image, mount).returncode:
                    continue
            except FileNotFoundError:
                continue
            try:
                check_sharing(os.path.abspath(sys.argv[1]), mount, name)
                tried.append(name)
            finally:
                system("umount", mount)
    proof.finish(f"Audio is shared on {' and '.join(tried)}." if tried
                 else "Skipped: no XFS or Btrfs can be mounted here.")


if __name__ == "__main__":
    main()
