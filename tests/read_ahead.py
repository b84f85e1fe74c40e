#!/usr/bin/env python3
"""Runs the program with slow files (slow_files.c), and checks which of them its threads open and read, and when.

Usage: read_ahead.py PROGRAM
"""
import os
import pathlib
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time

import proof
from proof import ENVIRONMENT, check
from tagbytes import f3, tag, text

COUNT, SLOW, THREADS, WINDOW, PIPE = 240, 40, 8, 32, 30
NAMES = [f"{number:03}.mp3" for number in range(COUNT)]
# Too few descriptors for threads, and just enough.
FEW, SOME = 24, 32
# A stuck open takes a minute. A run that does not wait for it takes about a second.
PATIENCE = 30
APPLY = ["apply", "--dry-run", "--from", "source.mp3"]


def song(name, picture_size):
    picture = b"\xff\xd8\xff\xe0" + bytes(picture_size)
    return tag(3, f3("TIT2", text(name)), f3("TALB", text("album")), f3("APIC", b"\0image/jpeg\0\3\0" + picture))


class Stage:
    def __init__(self, program, folder):
        self.program, self.folder, self.log = program, folder, folder / "calls"
        # The tags of the slow files are larger than one request of the system.
        self.tags = [song(name, 0x28000 if number < SLOW else 100) for number, name in enumerate(NAMES)]
        for name, start in zip(NAMES, self.tags):
            (folder / name).write_bytes(start + b"\xff\xfb\x90\x64" + bytes(100))
        (folder / "source.mp3").write_bytes(proof.identity("another album"))
        source, library = pathlib.Path(__file__).with_name("slow_files.c"), folder / "slow_files.so"
        subprocess.run(["cc", "-shared", "-fPIC", "-o", library, source], check=True)
        self.environment = {**ENVIRONMENT, "LD_PRELOAD": str(library), "CALLS": str(self.log)}
        self.environment["ASAN_OPTIONS"] += ":verify_asan_link_order=0"

    def start(self, words, slow=SLOW, stuck=-1, descriptors=1024):
        self.log.write_text("")
        return subprocess.Popen(
            [self.program, *words, *NAMES], cwd=self.folder, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
            env={**self.environment, "SLOW": str(slow), "STUCK": str(stuck)},
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (descriptors, descriptors)))

    def finish(self, process):
        """Returns (status, standard output, standard error). Kills a run that takes much too long."""
        try:
            output = process.communicate(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            output = process.communicate()
        return process.returncode, *output

    def run(self, words, **settings):
        return self.finish(self.start(words, **settings))

    def calls(self, caller, *names):
        """Returns the calls of these names as (name, file, count)."""
        lines = (line.split() for line in self.log.read_text().splitlines())
        return [(name, int(file), int(count)) for who, name, file, count in lines if who == caller and name in names]


def check_files(stage, words):
    in_turn = stage.run(words, descriptors=FEW)
    check(f"{words}: status and errors", in_turn[::2], (0, ""))
    check(f"{words}: threads with few descriptors", stage.calls("thread", "open"), [])
    check(f"{words}: result", stage.run(words), in_turn)
    opened = [file for _, file, _ in stage.calls("thread", "open")]
    check(f"{words}: each file is opened once by the threads", len(set(opened)), len(opened))
    check(f"{words}: order", [file for at, file in enumerate(opened) if file < max(opened[:at + 1]) - WINDOW], [])
    check(f"{words}: threads end after many fast files", max(opened) < COUNT - 1, True)
    check(f"{words}: slow files read by the run itself", len(stage.calls("run", "read")) < SLOW / 2, True)
    open_now = [0]
    for name, _, _ in stage.calls("thread", "open", "close"):
        open_now.append(open_now[-1] + (1 if name == "open" else -1))
    check(f"{words}: files open at once", max(open_now), THREADS)
    hints = {file: 0 for file in opened}
    for _, file, count in stage.calls("thread", "hint"):
        hints[file] += count
    check(f"{words}: bytes asked for", hints, {file: len(stage.tags[file]) for file in opened})


def check_stuck_open(stage):
    """Nothing waits for a thread that cannot open its file: neither the end of a run nor a signal."""
    expected = stage.run(["read"])
    check("stuck open: result", stage.run(["read"], stuck=SLOW), expected)
    check("stuck open: by a thread", ("open", SLOW, 0) in stage.calls("thread", "open"), True)
    for words, printed in ((APPLY, r"(would .*\n)+\nwould change .*\nquillmark: \d+ files were not reached\.\n"),
                           (["read"], "")):
        process = stage.start(words, stuck=5)
        while process.poll() is None and ("open", 5, 0) not in stage.calls("thread", "open"):
            time.sleep(0.001)
        process.send_signal(signal.SIGINT)
        status, *output = stage.finish(process)
        check(f"{words}, interrupted", (status, bool(re.fullmatch(printed, "".join(output)))), (-signal.SIGINT, True))


def main():
    with tempfile.TemporaryDirectory() as folder:
        stage = Stage(os.path.abspath(sys.argv[1]), pathlib.Path(folder))
        for words in (["read"], ["read", "--json"], APPLY):
            check_files(stage, words)
        check("just enough descriptors", (stage.run(["read"], descriptors=SOME)[0], bool(stage.calls("thread", "open"))),
              (0, True))
        stage.run(["read"], slow=0)
        check("threads for files in memory", stage.calls("thread", "open"), [])
        check_stuck_open(stage)
        (stage.folder / NAMES[PIPE]).unlink()
        os.mkfifo(stage.folder / NAMES[PIPE])
        error = f"quillmark: {NAMES[PIPE]} could not be read: it is not a regular file.\n"
        check("pipe", stage.run(["read", "--keep-going"])[::2], (2, error))
        check("opens of the pipe by threads", ("open", PIPE, 0) in stage.calls("thread", "open"), False)
    proof.finish("Reading ahead changes the time of a run only.")


if __name__ == "__main__":
    main()
