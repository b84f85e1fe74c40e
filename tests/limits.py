#!/usr/bin/env python3
"""Runs writes against size limits, missing rights, closed outputs and signals, and checks the files afterwards.

Usage: limits.py PROGRAM SAMPLES_FOLDER
"""
import array
import errno
import fcntl
import os
import pathlib
import random
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import termios
import time
import zlib

import proof
from proof import DATE, ENVIRONMENT, SOURCE, Album, attributes, check, run
from tagbytes import f3, f4, size4, tag
from tagcases import AUDIO

AS_OTHER_USER = ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"] if os.geteuid() == 0 else ["env"]


def check_files(what, album, result, reason):
    """Checks that each file is new and reported as updated, or old and reported as failed for the reason.

    Returns the contents of the files as `Album.contents` does.
    """
    status, output, errors = result
    contents = album.contents()
    done = [name for name, content in zip(album.names, contents) if content == "new"]
    failed = [name for name, content in zip(album.names, contents) if content == "old"]
    check(f"{what}: files that are old or new", len(done) + len(failed), 3)
    lines = "".join(f"updated   {name}\n" for name in done)
    check(f"{what}: report", output, album.report(lines, len(done), len(failed)))
    check(f"{what}: errors", errors, "".join(
        f"quillmark: failed    {name}: {name} could not be written: {reason}.\n" for name in failed))
    check(f"{what}: status", status, 2 if failed else 0)
    album.check_attributes(what)
    album.check_folder(what)
    return contents


def check_file_size_limit(program, album):
    size = len(album.new[album.rich])
    for limit in (0, 1, 100, 5000, size - 1, size):
        album.reset()
        result = run(program, album.words, album.folder,
                     preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        fits = ["new" if len(album.new[name]) <= limit else "old" for name in album.names]
        contents = check_files(f"file size limit {limit}", album, result, os.strerror(errno.EFBIG))
        check(f"file size limit {limit}", contents, fits)


def check_saved_artwork(program, folder):
    """Checks that a picture that cannot be written leaves the existing file, and no temporary one."""
    folder.mkdir()
    (folder / "01.mp3").write_bytes(proof.identity("Songs") + AUDIO)
    (folder / "cover").write_bytes(b"old")

    def save(name, limit):
        return run(program, ["read", "--save-artwork", name, "01.mp3"], folder,
                   preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))

    for name in ("cover", "new"):
        failure = f"quillmark: {name} could not be written: {os.strerror(errno.EFBIG)}.\n"
        check(f"a picture beyond the limit, saved as {name}", save(name, 2000), (1, "", failure))
    check("a picture beyond the limit: the folder", (sorted(os.listdir(folder)), (folder / "cover").read_bytes()),
          (["01.mp3", "cover"], b"old"))
    check("a picture within the limit", (save("cover", 3005)[0], (folder / "cover").stat().st_size), (0, 3004))


def check_rights(program, album):
    """Checks that a user without rights to the folder or a file changes nothing there."""
    def attempt(what, reason, mode):
        for name in album.names:
            os.chmod(album.folder / name, mode)
        album.attributes = {name: attributes(album.folder / name) for name in album.names}
        result = run(AS_OTHER_USER[0], [*AS_OTHER_USER[1:], program, *album.words], album.folder)
        check(what, check_files(what, album, result, reason), ["old"] * 3)

    album.reset()
    os.removexattr(album.folder / album.rich, "system.posix_acl_access")
    os.chmod(album.folder, 0o555)
    attempt("a folder without write permission", os.strerror(errno.EACCES), 0o666)
    os.chmod(album.folder, 0o777)
    attempt("write-protected files", "it is write-protected", 0o444)
    if os.geteuid() != 0:
        print("skipped: files of other users, which only root can make")
        return
    os.chmod(album.folder, 0o1777)
    attempt("files of another user in a sticky folder", os.strerror(errno.EPERM), 0o666)


def check_names(program, folder, album):
    """Checks files with the longest names and paths that are possible."""
    folder.mkdir()
    shutil.copy(album.folder / SOURCE, folder)
    name = "n" * 251 + ".mp3"
    (folder / name).write_bytes(album.old[album.rich])
    result = run(program, ["apply", "--from", SOURCE, name], folder)
    check("a name of 255 bytes", result, (0, album.report(f"updated   {name}\n", 1, 0), ""))
    check("a name of 255 bytes: bytes", (folder / name).read_bytes() == album.new[album.rich], True)
    check("a name of 255 bytes: folder", sorted(os.listdir(folder)), sorted([SOURCE, name]))

    deep, here = folder, os.getcwd()
    while len(os.fsencode(deep)) < 3900:
        deep /= "d" * 100
    os.makedirs(deep)
    for length in range(4060, 4096):
        os.chdir(deep)
        name = "n" * (length - len(os.fsencode(deep)) - 5) + ".mp3"
        pathlib.Path(name).write_bytes(album.old[album.rich])
        result = run(program, ["apply", "--from", folder / SOURCE, name], None)
        check(f"path of {length} bytes", result, (0, album.report(f"updated   {name}\n", 1, 0), ""))
        check(f"path of {length} bytes: bytes", pathlib.Path(name).read_bytes() == album.new[album.rich], True)
        check(f"path of {length} bytes: folder", os.listdir(), [name])
        os.unlink(name)
        os.chdir(here)


class Run:
    """A run over so many files that its report fills a pipe: it waits in the middle until the report is read."""
    COUNT = 30

    def __init__(self, folder, album):
        self.folder, self.album = folder, album
        self.names = [f"{number:02}" + "n" * 200 + ".mp3" for number in range(self.COUNT)]
        self.old, self.new = album.old[album.rich], album.new[album.rich]
        self.words = ["apply", "--from", SOURCE, *self.names]

    def start(self, program, **options):
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        shutil.copy(self.album.folder / SOURCE, self.folder)
        for name in self.names:
            (self.folder / name).write_bytes(self.old)
            os.utime(self.folder / name, ns=(DATE, DATE))
        options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "env": ENVIRONMENT, **options}
        return subprocess.Popen([program, *self.words], cwd=self.folder, **options)

    def duration(self, program):
        started = time.monotonic()
        self.check_end("undisturbed", self.start(program), [0])
        return time.monotonic() - started

    def wait_until_stuck(self, process):
        fcntl.fcntl(process.stdout, fcntl.F_SETPIPE_SZ, 4096)
        waiting, before = array.array("i", [0]), -1
        while waiting[0] != before or before < 2000:
            before = waiting[0]
            time.sleep(0.3)
            fcntl.ioctl(process.stdout, termios.FIONREAD, waiting)

    def check_end(self, what, process, statuses):
        """Checks that all files are complete and that the report lists the new ones. Returns the number of these."""
        output, errors = (stream.decode() for stream in process.communicate())
        count = self.check_files(what)
        report = Album.report("".join(f"updated   {name}\n" for name in self.names[:count]), count, 0)
        left = self.COUNT - count
        notice = f"quillmark: {left} file{' was' if left == 1 else 's were'} not reached.\n" if left else ""
        # A signal before the first file can end the program before it reports anything.
        check(f"{what}: report", (output, errors) in [(report, notice), ("", "")][:2 if count == 0 else 1], True)
        check(f"{what}: status {process.returncode}", process.returncode in statuses, True)
        return count

    def check_files(self, what, left_over=()):
        contents = [(self.folder / name).read_bytes() for name in self.names]
        count = contents.count(self.new)
        expected = [self.new] * count + [self.old] * (self.COUNT - count)
        check(f"{what}: new files, then old ones", contents == expected, True)
        check(f"{what}: dates", {os.stat(self.folder / name).st_mtime_ns for name in self.names}, {DATE})
        names = sorted([SOURCE, *self.names, *left_over])
        check(f"{what}: files in the folder", sorted(os.listdir(self.folder)), names)
        return count

    def left_over(self):
        return [name for name in os.listdir(self.folder) if name.startswith(proof.LEFT_OVER)]


def check_signals(program, folder, album):
    long_run = Run(folder, album)
    chance, whole, in_the_middle = random.Random(4), long_run.duration(program), 0
    for _ in range(24):
        number = chance.choice((signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT))
        process = long_run.start(program)
        time.sleep(chance.uniform(0, whole))
        process.send_signal(number)
        what = f"{number.name} at a random moment"
        count = long_run.check_end(what, process, [-number, 0])
        check(f"{what}: status 0 only if all files are done", process.returncode != 0 or count == long_run.COUNT, True)
        in_the_middle += 0 < count < long_run.COUNT
    check("some signals at random moments arrived in the middle of a run", in_the_middle > 0, True)

    process = long_run.start(program, preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
    long_run.wait_until_stuck(process)
    process.send_signal(signal.SIGHUP)
    check("ignored SIGHUP: files done", long_run.check_end("ignored SIGHUP", process, [0]), long_run.COUNT)


def check_outputs(program, folder, album):
    """Checks that all files are written even if the report cannot be."""
    long_run = Run(folder, album)

    def finish(what, process, status, message):
        errors = process.communicate()[1]
        check(what, (process.returncode, (errors or b"").decode()), (status, message))
        check(f"{what}: files done", long_run.check_files(what), long_run.COUNT)

    process = long_run.start(program)
    long_run.wait_until_stuck(process)
    process.stdout.close()
    process.stdout = None
    finish("a pipe closed in the middle", process, -signal.SIGPIPE, "")
    with open("/dev/full", "wb") as full:
        finish("full devices", long_run.start(program, stdout=full, stderr=full), 1, "")

    # A file that the program opens must not take the descriptor of an input or an output that is closed.
    check("a list on an input that is closed",
          run(program, ["set", "--year", "1", "--files0-from", "-"], folder, preexec_fn=lambda: os.close(0)),
          (1, "", "quillmark: No files given.\n"))
    message = "quillmark: The output could not be written: Bad file descriptor.\n"
    for closed, expected in (((1,), message), ((0, 1), message), ((0, 1, 2), "")):
        process = long_run.start(program, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                 preexec_fn=lambda: [os.close(descriptor) for descriptor in closed])
        finish(f"descriptors {closed} closed", process, 1, expected)


def check_hostile_tags(program, folder):
    """Checks that tags made to cause quadratic time or endless inflation take seconds, far less than the limit here."""
    count, path = 16000, folder / "hostile.mp3"
    first = f3("TPE1", b"")
    texts = [f3("TXXX", b"\0k\0%d" % number) for number in range(2 * count)]
    owners = [f3("PRIV", b"a" * 100 + b"%d" % number) for number in range(2 * count)]
    chapters = [f4("CHAP", b"c\0" + bytes(16) + f4("TIT2", b"\0%d" % number)) for number in range(count // 2)]
    broken = zlib.compress(bytes(60000))[:-4] + b"?sum"
    for what, frames, make in (
            ("texts of one description", texts[:count] + [first] + texts[count:], 3),
            ("owners with one beginning", [first, *owners], 3),
            ("chapters", chapters, 4),
            ("identifiers", [first, *(f3("X%03X" % number, b"\0v") for number in range(4096))], 3),
            ("damaged streams", [f4("TXXX", size4(60000) + broken, 9) for _ in range(count)], 4)):
        for option in ("--lossless", "--notes"):
            path.write_bytes(tag(make, *frames) + AUDIO)
            status = run(program, ["set", option, "--notes", "--album", "A", path.name], folder, preexec_fn=lambda: (
                resource.setrlimit(resource.RLIMIT_CPU, (20, 20))))[0]
            check(f"{what} {option}", status in (0, 2), True)


def main():
    program, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2]).resolve()
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        os.chmod(folder, 0o755)
        shutil.copy(program, folder / "program")  # where every user can run it
        program = folder / "program"
        (folder / "disk").mkdir()
        album = Album(folder / "disk/album", samples)
        album.learn(program)
        check_file_size_limit(program, album)
        check_rights(program, album)
        check_saved_artwork(program, folder / "artwork")
        check_names(program, folder / "names", album)
        check_signals(program, folder / "run", album)
        check_outputs(program, folder / "run", album)
        check_hostile_tags(program, folder)
    proof.finish("Size limits, missing rights, closed outputs and signals cost no file a byte.")


if __name__ == "__main__":
    main()
