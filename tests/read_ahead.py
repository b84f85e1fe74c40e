#!/usr/bin/env python3
"""Reads files from a file system that delays each open and each read, and compares with a run without reading ahead.

Usage: read_ahead.py PROGRAM [LEAST_GAIN]

LEAST_GAIN is how many times faster reading ahead must be, 4 if it is not given.
"""
import contextlib
import ctypes
import errno
import heapq
import os
import pathlib
import re
import resource
import select
import signal
import stat
import struct
import subprocess
import sys
import tempfile
import time

import proof
from proof import ENVIRONMENT, check, frame, run, tag, text

WAIT = 0.005
COUNT, REQUEST = 48, 0x8000
# So little that the kernel has nothing to read after the tag, which it would do while the run waits.
AUDIO = b"\xff\xfb\x90\x64" + bytes(100)
NAMES = [f"{number:02}.mp3" for number in range(COUNT)]
PICTURE = 4 * REQUEST // len(NAMES[0])
# One is a pipe, and one is gone when it is looked up for the second time.
PIPE, GONE = "30.mp3", "40.mp3"
# Too few for reading ahead, enough for everything else.
FEW, SOME = 16, 32


def song(name):
    """Its tag takes several reads: the run itself waits for each open, whatever was read before it."""
    picture = b"\xff\xd8\xff\xe0" + name.encode() * PICTURE
    return tag(text("TIT2", name), text("TALB", "album"), frame("APIC", b"\0image/jpeg\0\3\0" + picture)) + AUDIO


class SlowFiles:
    """Serves a folder of songs through /dev/fuse. Pages that were read stay in the page cache."""
    ROOT, DAY = 1, 86400
    LOOKUP, FORGET, GETATTR, OPEN, READ, RELEASE = 1, 2, 3, 14, 15, 18
    INIT, INTERRUPT, DESTROY, FORGET_MANY = 26, 36, 38, 42
    KEEP_CACHE, PARALLEL_LOOKUPS = 2, 1 << 18

    def __init__(self, device, odd):
        self.device, self.songs, self.odd, self.lookups = device, [song(name) for name in NAMES], odd, {}

    def attributes(self, node):
        if node == self.ROOT:
            mode, size = stat.S_IFDIR | 0o755, 0
        else:
            is_pipe = self.odd and NAMES[node - 2] == PIPE
            mode, size = (stat.S_IFIFO if is_pipe else stat.S_IFREG) | 0o644, len(self.songs[node - 2])
        return struct.pack("<6Q10I", node, size, size // 512, 1, 1, 1, 0, 0, 0, mode, 1, 0, 0, 0, 4096, 0)

    def lookup(self, name):
        self.lookups[name] = self.lookups.get(name, 0) + 1
        is_gone = self.odd and name == GONE
        if name not in NAMES or is_gone and self.lookups[name] > 1:
            return errno.ENOENT
        node = 2 + NAMES.index(name)
        return struct.pack("<4Q2I", node, 0, 0 if is_gone else self.DAY, self.DAY, 0, 0) + self.attributes(node)

    def reply(self, operation, node, body):
        """Gives what to answer: bytes, an error number, or None."""
        if operation == self.INIT:
            return struct.pack("<4I2H2I36x", 7, 31, REQUEST, self.PARALLEL_LOOKUPS, 64, 64, 4096, 1)
        if operation == self.LOOKUP:
            return self.lookup(body.rstrip(b"\0").decode())
        if operation == self.GETATTR:
            return struct.pack("<Q2I", self.DAY, 0, 0) + self.attributes(node)
        if operation == self.OPEN:
            return struct.pack("<Q2I", 0, self.KEEP_CACHE, 0)
        if operation == self.READ:
            offset, size = struct.unpack_from("<8xQI", body)
            return self.songs[node - 2][offset:offset + size]
        if operation == self.RELEASE:
            return b""
        return None if operation in (self.FORGET, self.FORGET_MANY, self.INTERRUPT) else errno.ENOSYS

    def serve(self):
        due = []
        while True:
            pause = max(0, due[0][0] - time.monotonic()) if due else None
            if not select.select([self.device], [], [], pause)[0]:
                self.answer(*heapq.heappop(due)[1:])
                continue
            request = os.read(self.device, 0x21000)
            operation, number, node = struct.unpack_from("<4xIQQ", request)
            if operation == self.DESTROY:
                return
            answer = self.reply(operation, node, request[40:])
            if operation in (self.OPEN, self.READ):
                heapq.heappush(due, (time.monotonic() + WAIT, number, answer))
            elif answer is not None:
                self.answer(number, answer)

    def answer(self, number, answer):
        error, data = (-answer, b"") if isinstance(answer, int) else (0, answer)
        with contextlib.suppress(FileNotFoundError):  # the reader was interrupted
            os.write(self.device, struct.pack("<IiQ", 16 + len(data), error, number) + data)


@contextlib.contextmanager
def slow_folder(folder, odd=False):
    """Mounts such a folder, with nothing of it in the page cache yet."""
    libc = ctypes.CDLL(None, use_errno=True)
    place = folder / "slow"
    place.mkdir(exist_ok=True)
    device = os.open("/dev/fuse", os.O_RDWR)
    options = f"fd={device},rootmode=40000,user_id=0,group_id=0,allow_other,max_read={REQUEST}".encode()
    if libc.mount(b"slow", bytes(place), b"fuse", 0, options) == -1:
        raise OSError(ctypes.get_errno(), "mount")
    server = os.fork()
    if server == 0:
        with contextlib.suppress(OSError):  # unmounted
            SlowFiles(device, odd).serve()
        os._exit(0)
    os.close(device)
    try:
        yield place
    finally:
        libc.umount2(bytes(place), 2)
        os.kill(server, signal.SIGKILL)
        os.waitpid(server, 0)


def limited(count):
    return {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (count, count))}


def timed(program, words, folder, **options):
    with slow_folder(folder) as place:
        started = time.monotonic()
        result = run(program, [*words, *(place / name for name in NAMES)], folder, **options)
        return result, time.monotonic() - started


def check_gain(program, folder, least):
    (folder / "source.mp3").write_bytes(proof.identity("another album") + AUDIO)
    for words, *others in ((["read"],), (["read", "--json"], ["--keep-going"]),
                           (["apply", "--dry-run", "--from", "source.mp3"],)):
        in_turn, slow = timed(program, words, folder, **limited(FEW))
        check(f"{words}: status and errors", in_turn[::2], (0, ""))
        for more in ([], *others):
            what = " ".join([*words, *more])
            ahead, fast = timed(program, [*words, *more], folder)
            check(f"{what}: result", ahead, in_turn)
            for _ in range(2):  # other programs can have kept this one waiting
                if slow < least * fast:
                    fast = min(fast, timed(program, [*words, *more], folder)[1])
            print(f"{what}: {slow:.2f} s in turn, {fast:.2f} s with reading ahead")
            check(f"{what}: is at least {least} times faster", slow >= least * fast, True)
    check("32 descriptors", timed(program, ["read"], folder, **limited(SOME))[0], timed(program, ["read"], folder)[0])


def check_odd_files(program, folder):
    """Only the run itself opens names that are not regular files, and it reports names that vanish."""
    log = folder / "log"
    with slow_folder(folder, odd=True) as place:
        words = ["-f", "-qq", "-o", log, "-e", "trace=openat,clone,clone3", program, "read", "--keep-going"]
        status, output, errors = run("strace", [*words, *(place / name for name in NAMES)], folder)
    shown = "{0}:\n  Title    {0}\n  Album    album\n  Artwork  JPEG, {1} bytes\n\n"
    expected = "".join(shown.format(name, 4 + PICTURE * len(name)) for name in NAMES if name not in (PIPE, GONE))
    check("odd files", (status, output + "\n"), (2, expected))
    check("odd files: errors", errors, f"quillmark: {PIPE} could not be read: it is not a regular file.\n"
                                       f"quillmark: {GONE} could not be read.\n")
    calls = log.read_text()
    opened = [line for line in calls.splitlines() if f'/{PIPE}"' in line and "O_PATH" not in line]
    check("opens of a pipe", len(opened), 1)
    # A sanitizer can have a thread of its own.
    check("threads that read ahead", len(re.findall(r"CLONE_THREAD", calls)) in (8, 9), True)


def check_signals(program, folder):
    """A run that writes ends after the file in hand, with all threads; others end at once."""
    (folder / "source.mp3").write_bytes(proof.identity("another album") + AUDIO)
    summary = r"(would     .*\n)+\nwould change \d+, .*\nquillmark: \d+ files were not reached\.\n"
    for words, expected in ((["apply", "--dry-run", "--from", "source.mp3"], summary), (["read"], "")):
        with slow_folder(folder) as place:
            command = [program, *words, *(place / name for name in NAMES)]
            process = subprocess.Popen(command, cwd=folder, env=ENVIRONMENT,
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
            threads = pathlib.Path(f"/proc/{process.pid}/task")
            while process.poll() is None and len(list(threads.iterdir())) < 9:
                time.sleep(0.001)
            process.send_signal(signal.SIGINT)
            output, errors = process.communicate()
        check(f"{words[0]}: interrupted", process.returncode, -signal.SIGINT)
        printed = output + errors
        check(f"{words[0]}, interrupted, prints {printed!r}", re.fullmatch(expected, printed) is not None, True)


def main():
    program, least = os.path.abspath(sys.argv[1]), float(sys.argv[2]) if len(sys.argv) > 2 else 4
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        try:
            with slow_folder(folder):
                pass
        except OSError as error:
            print(f"skipped: a slow file system cannot be mounted here, so nothing is proven: {error}")
            return
        check_gain(program, folder, least)
        check_odd_files(program, folder)
        check_signals(program, folder)
    proof.finish("Reading ahead changes the time of a run only.")


if __name__ == "__main__":
    main()
