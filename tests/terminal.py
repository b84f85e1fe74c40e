"""Checks that neither names nor tags of files can control a terminal, that tables fit it, and that runs show progress.

Usage: terminal.py PROGRAM
"""
import concurrent.futures
import fcntl
import os
import pty
import re
import shutil
import struct
import subprocess
import termios
import time

import proof
from proof import ENVIRONMENT, SAMPLES, check, quillmark

GLORIA = SAMPLES / "02 Gloria.mp3"
EVIL = "\x1b]52;c;aGk=\x07\n\u202e\x85\x7f"
SHOWN = r"\x1b]52;c;aGk=\x07\x0a\u202e\u0085\x7f"
FURTHER_HELP = (
    "quillmark: note: 'quillmark COMMAND --help' lists all options; see also 'man quillmark'.\n"
    "quillmark: note: --lossless keeps everything that other programs wrote.\n")


def read_all(ours):
    received = b""
    try:
        while piece := os.read(ours, 0x10000):
            received += piece
    except OSError:  # the other side is closed
        pass
    return received.decode()


def start(words, folder, stream, columns=30, other=subprocess.DEVNULL):
    """Starts the program with one stream at a new pseudo-terminal that passes line ends on unchanged.

    Returns the process and our side of the terminal.
    """
    ours, theirs = pty.openpty()
    fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
    attributes = termios.tcgetattr(theirs)
    attributes[1] &= ~termios.OPOST
    termios.tcsetattr(theirs, termios.TCSANOW, attributes)
    streams = {"stdout": other, "stderr": other, stream: theirs}
    process = subprocess.Popen([proof.PROGRAM, *words], cwd=folder, stdin=subprocess.DEVNULL, **streams,
                               env={**ENVIRONMENT, "HOME": str(folder)})
    os.close(theirs)
    return process, ours


def seen(*words):
    """Returns the output of one stream at a terminal; the other stream goes to /dev/null."""
    process, ours = start(*words)
    received = read_all(ours)
    process.wait()
    return received


def check_safety(folder):
    name, shown = EVIL + ".mp3", SHOWN + ".mp3"
    shutil.copy(GLORIA, folder / name)
    missing = f"no{shown} could not be read.\n"

    def title(indentation):
        return "x" + SHOWN.replace(r"\x0a", "\n" + " " * indentation) + "y"

    for words, stream, expected in (
            (["set", "--title", f"x{EVIL}y", name], "stdout",
             f"updated   {shown}\n\nchanged 1, unchanged 0, failed 0\n"),
            (["read", name], "stdout", f"  Title         {title(16)}\n  Track Number  2\n"),
            (["copy", "--no-desktop", name], "stdout",
             f"Copied tags from {shown}.\n  Title: {title(9)}\n  Track Number: 2\n"),
            (["read", "no" + name], "stderr", f"quillmark: {missing}"),
            (["set", "--title", "x", "no" + name], "stderr", f"quillmark: failed    no{shown}: {missing}"),
            (["x" + EVIL], "stderr", f"quillmark: Unknown command 'x{SHOWN}'.\n\n" + FURTHER_HELP),
            (["copy", "--x" + EVIL], "stderr", f"quillmark: note: --x{SHOWN} is no option of copy and is ignored.\n"
                                               "quillmark: No files given.\n")):
        check(words, seen(words, folder, stream), expected)
    document = seen(["read", "--json", name], folder, "stdout")
    check("JSON at a terminal", (r"\u202e" in document, re.findall(r"[^\n -~]", document)), (True, []))


def check_progress(folder):
    shutil.copy(GLORIA, folder / "01.mp3")
    count = 9000
    words = ["set", "--year", "1", "--dry-run", *["01.mp3"] * count]
    process, ours = start(words, folder, "stderr", other=subprocess.PIPE)
    with concurrent.futures.ThreadPoolExecutor() as reader:
        shown = reader.submit(read_all, ours)
        time.sleep(3)  # the report fills the pipe meanwhile
        report = process.stdout.read().decode()
    line = r"([1-9],\d{3}|[1-9]\d{0,2}) of 9,000  01.mp3\r\x1b\[K"
    check("progress", bool(re.fullmatch(f"({line})+", shown.result())), True)
    check("report", report.count("would     01.mp3\n"), count)
    process.wait()


def check_table(folder):
    """Checks that the columns of a table are aligned for all contents, and that no line is wider than the window."""
    tracks = (("09 cafe\u0301.mp3", "Credo 🎵🎶", "Väskelund", "1977"), ("a 日本語.mp3", "春の海" * 30, "宮城道雄", "1929"),
              ("b \u05e9\u05dc\u05d5\u05dd.mp3", "\u0634\u0645\u0633", "x" + EVIL + "y", ""))
    for name, title, artist, year in tracks:
        shutil.copy(GLORIA, folder / name)
        quillmark(["set", "--title", title, "--artist", artist, *(["--year", year] if year else []), name], folder)
    names = [track[0] for track in tracks]
    for columns, fields, expected in (
            (80, "all", ["File          Track  Title                  Artist                 Album  Year",
                         f"{names[0]}       2  Credo 🎵🎶             Väskelund                     1977",
                         f"{names[1]}      2  春の海春の海春の海春…  宮城道雄                      1929",
                         f"{names[2]}        2  {tracks[2][1]}                    x" r"\x1b]52;c;aGk=\x07" "\\…"]),
            (60, "title,bpm", ["File          Title                                     BPM", f"{names[0]}   Credo 🎵🎶",
                               f"{names[1]}  {'春の海' * 6}春…", f"{names[2]}    {tracks[2][1]}"]),
            (20, "title,bpm", ["File    Title   BPM", "09 ca…  Credo…", "a 日…   春の…", f"{names[2][:5]}…  {tracks[2][1]}"]),
            (5, "title,bpm", ["…  …  …", "…  …", "…  …", "…  …"])):
        words = ["read", "--table", *(["--fields", fields] if fields != "all" else []), *names]
        check(f"table in {columns} columns", seen(words, folder, "stdout", columns).splitlines(), expected)
    refused = seen(["read", "--save-artwork", "-", names[0]], folder, "stdout")
    check("a picture at a terminal", (refused, (folder / "-").exists()), ("", False))


proof.require_terminals()
proof.main("No file can control a terminal, tables fit it, and long runs show progress.", check_safety, check_table, check_progress)
