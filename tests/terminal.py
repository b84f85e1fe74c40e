"""No name and no text of a file can command a terminal, and a long run shows there how far it is.

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

import proof
from proof import ENVIRONMENT, check

EVIL = "\x1b]52;c;aGk=\x07\n\u202e\x85\x7f"
SHOWN = r"\x1b]52;c;aGk=\x07\x0a\u202e\u0085\x7f"
COLUMNS = 30
FURTHER_HELP = ("quillmark: note: 'quillmark COMMAND --help' lists all options of a command; 'man quillmark' explains them.\n"
                "quillmark: note: --lossless keeps everything that other programs wrote into a tag.\n")


def terminal():
    ours, theirs = pty.openpty()
    fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, COLUMNS, 0, 0))
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


def seen(program, words, folder, stream):
    """What a terminal gets that one of the streams goes to; the other goes nowhere."""
    ours, theirs = terminal()
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
            (["set", "--title", f"x{EVIL}y", name], "stdout", f"updated   {shown}\n\nchanged 1, unchanged 0, failed 0\n"),
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


def main():
    program, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    sample = samples / "02 Gloria.mp3"
    proof.require_terminals()
    with tempfile.TemporaryDirectory() as folder:
        check_safety(program, pathlib.Path(folder), sample)
        check_progress(program, pathlib.Path(folder), sample)


if __name__ == "__main__":
    main()
    proof.finish("No file commands a terminal, and a long run shows how far it is.")
