#!/usr/bin/env python3
"""Checks on XFS and Btrfs that a file written with --lossless shares its audio with its backup.

Needs root and loop devices.

Usage: sharing.py PROGRAM [SYSTEM]
"""
import os
import re
import subprocess
import sys

import proof
from proof import check, quillmark, run
from tagbytes import f3, tag, text

SIZE = 40_000_000
MAKERS = {"xfs": ["mkfs.xfs", "-q", "-m", "reflink=1"], "btrfs": ["mkfs.btrfs", "-q"]}


def check_sharing(folder, name):
    """Checks writes into tags with little, some and much padding: most of the audio's blocks are shared afterwards."""
    song, backup = folder / "song.mp3", folder / "song.mp3.orig"
    for room in (0, 3000, 9000):
        backup.unlink(missing_ok=True)
        song.write_bytes(tag(3, f3("TIT2", text("Kyrie")), padding=room) + b"\xff\xfb\x90\x64" + os.urandom(SIZE))
        album = "An album " * (200 if room == 9000 else 20)
        words = ["set", "--lossless", "--backup", "--album", album, song.name]
        check(f"{name}, {room}", quillmark(words, folder)[0], 0)
        os.sync()
        listed = run(["filefrag", "-v", "-b4096", song], folder)[1]
        extents = re.findall(r"^ *\d+:.*?:.*?: +(\d+):.*shared", listed, re.MULTILINE)
        shared = 4096 * sum(map(int, extents))
        check(f"{name}, room for {room}: {shared} bytes shared", shared >= 0.95 * SIZE, True)


def check_disks(folder):
    for name, maker in MAKERS.items():
        mount = folder / name
        mount.mkdir()
        with open(f"{mount}.img", "wb") as image:
            image.truncate(600_000_000)
        try:
            for command in ([*maker, image.name], ["mount", "-o", "loop", image.name, mount]):
                subprocess.run(command, check=True, capture_output=True)
        except (FileNotFoundError, subprocess.CalledProcessError):
            print(f"skipped: {name}, which cannot be mounted here")
            continue
        try:
            check_sharing(mount, name)
        finally:
            subprocess.run(["umount", mount])


if proof.is_linux_only("sharing blocks of files"):
    sys.exit(proof.SKIPPED)
proof.main("The audio of a file is shared with its backup.", check_disks)
