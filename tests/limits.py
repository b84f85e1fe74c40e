#!/usr/bin/env python3
"""Runs writes with long names, closed outputs, signals and hostile tags, and checks the files afterwards.

Usage: limits.py PROGRAM
"""
import array
import fcntl
import os
import random
import resource
import shutil
import signal
import subprocess
import termios
import time
import zlib

import proof
from proof import DATE, ENVIRONMENT, SOURCE, Album, check, quillmark, report
from tagbytes import f3, f4, size4, tag
from tagcases import AUDIO


def check_names(folder):
    """Checks files with the longest names and paths that are possible."""
    album, deep = Album(folder / "album"), folder / "names"
    deep.mkdir()
    while len(os.fsencode(deep)) < 3900:
        deep /= "d" * 100
    os.makedirs(deep)
    for place, length in [(folder / "names", 251), *((deep, length - len(os.fsencode(deep)) - 5) for length in range(4060, 4096))]:
        here, name = os.open(place, os.O_RDONLY), "n" * length + ".mp3"
        with open(name, "wb", opener=lambda path, flags: os.open(path, flags, dir_fd=here)) as file:
            file.write(album.old[album.rich])
        result = quillmark(["apply", "--from", album.folder / SOURCE, name], None, preexec_fn=lambda: os.fchdir(here))
        check(f"a name of {length} bytes", result, (0, report([name]), ""))
        with open(name, "rb", opener=lambda path, flags: os.open(path, flags, dir_fd=here)) as file:
            check(f"a name of {length} bytes: contents", file.read() == album.new[album.rich], True)
        os.unlink(name, dir_fd=here)
        check(f"a name of {length} bytes: folder", [name for name in os.listdir(here) if name != "d" * 100], [])
        os.close(here)


class Run:
    """A run over so many files that its report fills a pipe: it waits in the middle until the report is read."""
    COUNT = 30

    def __init__(self, folder):
        self.folder, self.album = folder / "run", Album(folder / "album")
        self.names = [f"{number:02}" + "n" * 200 + ".mp3" for number in range(self.COUNT)]
        self.old, self.new = (self.album.old[self.album.rich], self.album.new[self.album.rich])
        self.words = ["apply", "--from", SOURCE, *self.names]
        started = time.monotonic()
        check("an undisturbed run", self.end("undisturbed", self.start(), [0]), self.COUNT)
        self.duration = time.monotonic() - started

    def start(self, **options):
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        shutil.copy(self.album.folder / SOURCE, self.folder)
        for name in self.names:
            (self.folder / name).write_bytes(self.old)
            os.utime(self.folder / name, ns=(DATE, DATE))
        options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "env": ENVIRONMENT, **options}
        return subprocess.Popen([proof.PROGRAM, *self.words], cwd=self.folder, **options)

    def wait_until_stuck(self, process):
        fcntl.fcntl(process.stdout, fcntl.F_SETPIPE_SZ, 4096)
        waiting, before = array.array("i", [0]), -1
        while waiting[0] != before or before < 2000:
            before = waiting[0]
            time.sleep(0.3)
            fcntl.ioctl(process.stdout, termios.FIONREAD, waiting)

    def end(self, what, process, statuses):
        """Checks that all files are complete and that the report lists the new ones. Returns the number of these."""
        output, errors = (stream.decode() for stream in process.communicate())
        count = self.count_new(what)
        left = self.COUNT - count
        notice = f"quillmark: {left} file{' was' if left == 1 else 's were'} not reached.\n" if left else ""
        # A signal before the first file can end the program before it reports anything.
        expected = [(report(self.names[:count]), notice), ("", "")][:1 if count else 2]
        check(f"{what}: report and status {process.returncode}",
              ((output, errors) in expected, process.returncode in statuses), (True, True))
        return count

    def count_new(self, what):
        contents = [(self.folder / name).read_bytes() for name in self.names]
        count = contents.count(self.new)
        check(f"{what}: new files, then old ones", contents == [self.new] * count + [self.old] * (self.COUNT - count), True)
        check(f"{what}: dates", {os.stat(self.folder / name).st_mtime_ns for name in self.names}, {DATE})
        is_killed = what.startswith("SIGKILL")
        names = {name for name in os.listdir(self.folder) if not (is_killed and name.startswith(proof.LEFT_OVER))}
        check(f"{what}: files in the folder", names, {SOURCE, *self.names})
        return count

    def send(self, number, chance):
        """Sends the signal at a random moment. Returns the number of new files, and whether the signal ended the run."""
        process = self.start()
        time.sleep(chance.uniform(0, self.duration))
        process.send_signal(number)
        what = f"{number.name} at a random moment"
        if number != signal.SIGKILL:
            count = self.end(what, process, [-number, 0])
            check(f"{what}: status 0 only if all files are done", process.returncode != 0 or count == self.COUNT, True)
            return count, process.returncode != 0
        process.communicate()
        count, left = self.count_new(what), len(os.listdir(self.folder))
        check(f"{what}: the next run", (quillmark(self.words, self.folder)[::2], self.count_new(what)),
              ((0, ""), self.COUNT))
        return count, process.returncode != 0, left > self.COUNT + 1


def check_signals(folder):
    long_run, chance, in_the_middle = Run(folder), random.Random(4), 0
    for _ in range(30):
        number = chance.choice((signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT, signal.SIGKILL))
        in_the_middle += 0 < long_run.send(number, chance)[0] < long_run.COUNT
    check("some signals at random moments arrived in the middle of a run", in_the_middle > 0, True)
    process = long_run.start(preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
    long_run.wait_until_stuck(process)
    process.send_signal(signal.SIGHUP)
    check("ignored SIGHUP: files done", long_run.end("ignored SIGHUP", process, [0]), long_run.COUNT)


def check_outputs(folder):
    """Checks that all files are written even if the report cannot be."""
    long_run = Run(folder)

    def finish(what, process, status, message):
        errors = process.communicate()[1]
        check(what, (process.returncode, (errors or b"").decode(), long_run.count_new(what)),
              (status, message, long_run.COUNT))

    process = long_run.start()
    long_run.wait_until_stuck(process)
    process.stdout.close()
    process.stdout = None
    finish("a pipe closed in the middle", process, -signal.SIGPIPE, "")
    with open("/dev/full", "wb") as full:
        finish("full devices", long_run.start(stdout=full, stderr=full), 1, "")

    # A file that the program opens must not take the descriptor of an input or an output that is closed.
    check("a list on an input that is closed", quillmark(
        ["set", "--year", "1", "--files0-from", "-"], folder, preexec_fn=lambda: os.close(0)), (1, "", "quillmark: No files given.\n"))
    message = "quillmark: The output could not be written: Bad file descriptor.\n"
    for closed, expected in (((1,), message), ((0, 1), message), ((0, 1, 2), "")):
        process = long_run.start(stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                 preexec_fn=lambda: [os.close(descriptor) for descriptor in closed])
        finish(f"descriptors {closed} closed", process, 1, expected)


def check_hostile_tags(folder):
    """Checks that tags made to cause quadratic time or endless inflation take seconds, far less than the limit here."""
    count, path = 16000, folder / "hostile.mp3"
    first = f3("TPE1", b"")
    texts = [f3("TXXX", b"\0k\0%d" % number) for number in range(2 * count)]
    owners = [f3("PRIV", b"a" * 100 + b"%d" % number) for number in range(2 * count)]
    chapters = [f4("CHAP", b"c\0" + bytes(16) + f4("TIT2", b"\0%d" % number)) for number in range(count // 2)]
    broken = zlib.compress(bytes(60000))[:-4] + b"?sum"
    for what, frames, make in (
            ("texts of one description", texts[:count] + [first] + texts[count:], 3),
            ("owners with one beginning", [first, *owners], 3), ("chapters", chapters, 4),
            ("identifiers", [first, *(f3("X%03X" % number, b"\0v") for number in range(4096))], 3),
            ("damaged streams", [f4("TXXX", size4(60000) + broken, 9) for _ in range(count)], 4)):
        for option in ("--lossless", "--notes"):
            path.write_bytes(tag(make, *frames) + AUDIO)
            status = quillmark(["set", option, "--notes", "--album", "A", path.name], folder, preexec_fn=lambda: (
                resource.setrlimit(resource.RLIMIT_CPU, (20, 20))))[0]
            check(f"{what} {option}", status in (0, 2), True)


if __name__ == "__main__":
    proof.main("Long names, closed outputs, signals and hostile tags cost no file a byte.", check_names, check_signals,
               check_outputs, check_hostile_tags)
