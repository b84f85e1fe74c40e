"""Checks that neither names nor tags of files can control a terminal, that tables fit it, and that runs show progress.

Usage: terminal.py PROGRAM SAMPLES
"""
import concurrent.futures
import fcntl
import os
import pathlib
import pty
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unicodedata

import proof
from proof import ENVIRONMENT, check, run

EVIL = "\x1b]52;c;aGk=\x07\n\u202e\x85\x7f"
SHOWN = r"\x1b]52;c;aGk=\x07\x0a\u202e\u0085\x7f"
COLUMNS = 30
FURTHER_HELP = (
    "quillmark: note: 'quillmark COMMAND --help' lists all options; see also 'man quillmark'.\n"
    "quillmark: note: --lossless keeps everything that other programs wrote.\n")


def terminal(columns=COLUMNS):
    """Returns both ends of a new pseudo-terminal that passes line ends on unchanged."""
    ours, theirs = pty.openpty()
    fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
    attributes = termios.tcgetattr(theirs)
    attributes[1] &= ~termios.OPOST
    termios.tcsetattr(theirs, termios.TCSANOW, attributes)
    return ours, theirs


def read_all(ours):
    received = b""
    try:
        while piece := os.read(ours, 0x10000):
            received += piece
    except OSError:  # the other side is closed
        pass
    return received.decode()


def seen(program, words, folder, stream, columns=COLUMNS):
    """Returns the output of one stream at a terminal; the other stream goes to /dev/null."""
    ours, theirs = terminal(columns)
    streams = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL, stream: theirs}
    process = subprocess.Popen([program, *words], cwd=folder, stdin=subprocess.DEVNULL, **streams,
                               env={**ENVIRONMENT, "HOME": str(folder)})
    os.close(theirs)
    received = read_all(ours)
    process.wait()
    return received


def check_safety(program, folder, sample):
    name, shown = EVIL + ".mp3", SHOWN + ".mp3"
    shutil.copy(sample, folder / name)
    missing = f"quillmark: no{shown} could not be read.\n"
    def title(indentation):
        return "x" + SHOWN.replace(r"\x0a", "\n" + " " * indentation) + "y"

    for words, stream, expected in (
            (["set", "--title", f"x{EVIL}y", name], "stdout",
             f"updated   {shown}\n\nchanged 1, unchanged 0, failed 0\n"),
            (["read", name], "stdout", f"  Title         {title(16)}\n  Track Number  2\n"),
            (["copy", "--no-desktop", name], "stdout",
             f"Copied tags from {shown}.\n  Title: {title(9)}\n  Track Number: 2\n"),
            (["read", "no" + name], "stderr", missing),
            (["set", "--title", "x", "no" + name], "stderr",
             missing.replace("no", f"failed    no{shown}: no", 1)),
            (["x" + EVIL], "stderr", f"quillmark: Unknown command 'x{SHOWN}'.\n\n" + FURTHER_HELP),
            (["copy", "--x" + EVIL], "stderr", f"quillmark: note: --x{SHOWN} is no option of copy and is ignored.\n"
                                               "quillmark: No files given.\n")):
        check(words, seen(program, words, folder, stream), expected)
    document = seen(program, ["read", "--json", name], folder, "stdout")
    check("JSON at a terminal", (r"\u202e" in document, re.findall(r"[^\n -~]", document)), (True, []))


def check_progress(program, folder, sample):
    shutil.copy(sample, folder / "01.mp3")
    count = 9000
    ours, theirs = terminal()
    process = subprocess.Popen([program, "set", "--year", "1", "--dry-run", *["01.mp3"] * count], cwd=folder,
                               stdout=subprocess.PIPE, stderr=theirs, env=ENVIRONMENT)
    os.close(theirs)
    with concurrent.futures.ThreadPoolExecutor() as reader:
        shown = reader.submit(read_all, ours)
        time.sleep(3)  # the report fills the pipe meanwhile
        report = process.stdout.read().decode()
    line = r"([1-9],\d{3}|[1-9]\d{0,2}) of 9,000  01.mp3\r\x1b\[K"
    check("progress", bool(re.fullmatch(f"({line})+", shown.result())), True)
    check("report", report.count("would     01.mp3\n"), count)
    process.wait()


def width(text):
    """Returns the columns of a text by the character tables of Python, which the program does not use."""
    return sum(0 if unicodedata.combining(one) else 2 if unicodedata.east_asian_width(one) in "WF" else 1
               for one in text)


def check_table(program, folder, sample):
    """Checks that the columns of a table are aligned for all contents, and that no line is wider than the window."""
    tracks = (("09 cafe\u0301.mp3", "Credo \U0001f3b5\U0001f3b6", "V\u00e4skelund", "1977"),
              ("a \u65e5\u672c\u8a9e.mp3", "\u6625\u306e\u6d77" * 30, "\u5bae\u57ce\u9053\u96c4", "1929"),
              ("b \u05e9\u05dc\u05d5\u05dd.mp3", "\u0634\u0645\u0633", "x" + EVIL + "y", ""))
    for name, title, artist, year in tracks:
        shutil.copy(sample, folder / name)
        run(program, ["set", "--title", title, "--artist", artist, "--year", year or "1", name], folder)
    run(program, ["set", "--clear", "year", tracks[2][0]], folder)
    names = [track[0] for track in tracks]
    expected = [["File", "Track", "Title", "Artist", "Album", "Year"], [names[0], "2", *tracks[0][1:3], "", "1977"],
                [names[1], "2", "\u6625\u306e\u6d77" * 3 + "\u6625\u2026", tracks[1][2], "", "1929"],
                [names[2], "2", "\u0634\u0645\u0633", r"x\x1b]52;c;aGk=\x07" + "\\\u2026", "", ""]]
    shown = seen(program, ["read", "--table", *names], folder, "stdout", 80).splitlines()
    widths = [max(width(row[column]) for row in expected) for column in range(6)]
    def aligned(row):
        blanks = [" " * (total - width(cell)) for total, cell in zip(widths, row)]
        return "  ".join(pad + cell if column in (1, 5) else cell + pad
                         for column, (pad, cell) in enumerate(zip(blanks, row))).rstrip()
    check("table", shown, [aligned(row) for row in expected])
    check("table: widest line", max(map(width, shown)), 78)
    for columns in (5, 20, 60):
        words = ["read", "--table", "--fields", "title,bpm", *names]
        lines = seen(program, words, folder, "stdout", columns).splitlines()
        check(f"table in {columns} columns", (len(lines), max(map(width, lines)) <= max(columns - 1, 7)), (4, True))
    refused = seen(program, ["read", "--save-artwork", "-", "01.mp3"], folder, "stdout") + str((folder / "-").exists())
    check("a picture at a terminal", refused, "False")


def main():
    program, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    sample = samples / "02 Gloria.mp3"
    proof.require_terminals()
    with tempfile.TemporaryDirectory() as folder:
        check_safety(program, pathlib.Path(folder), sample)
        check_table(program, pathlib.Path(folder), sample)
        check_progress(program, pathlib.Path(folder), sample)


if __name__ == "__main__":
    main()
    proof.finish("No file can control a terminal, tables fit it, and long runs show progress.")
