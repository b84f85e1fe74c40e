#!/usr/bin/env python3
"""Makes each system call of a write fail in turn, by strace, and checks the files after each failure.

Usage: faults.py PROGRAM SAMPLES_FOLDER [SYSTEM]
"""
import collections
import concurrent.futures
import errno
import os
import pathlib
import queue
import re
import resource
import shutil
import subprocess
import sys
import tempfile

import proof
from proof import SOURCE, Album, check, run

# The errors with which each call can fail. CUT is not an error: the call finds the end of the file, as if another
# program had truncated it.
CUT = "cut short"
FULL = "EIO ENOSPC EDQUOT"
ERRORS = {
    "openat": "EACCES EIO EMFILE EINTR", "newfstatat": "EACCES EIO", "pread64": ["EIO", "EINTR", CUT],
    "flock": "ENOLCK EINTR", "faccessat2": "EACCES EROFS", "write": FULL + " EINTR",
    "copy_file_range": [*FULL.split(), "EINTR", "EXDEV", CUT], "ioctl": "EOPNOTSUPP EINVAL EIO",
    "mkdirat": FULL + " EACCES EEXIST", "close": FULL + " EINTR", "utimensat": "EACCES EIO",
    "fchown": FULL + " EPERM", "fchmod": "EIO EPERM", "fremovexattr": "EIO EOPNOTSUPP ENODATA",
    "flistxattr": "EACCES EIO ERANGE", "fgetxattr": "EACCES EIO ERANGE", "fsetxattr": FULL + " EACCES",
    "fsync": FULL + " EINTR", "renameat": FULL + " EACCES",
    "unlinkat": "EACCES EIO", "getdents64": "EACCES EIO",
}
ERRORS = {call: errors.split() if isinstance(errors, str) else errors for call, errors in ERRORS.items()}

# After an error of one of these calls, the new file may not be on the disk, so it must not be reported as updated.
UNSAFE = re.compile(r'(fsync|renameat)\(|(write|close)\(\d+<[^>]*/\.quillmark-\w+/')
# The attributes of the rich file that may differ after an error: the date if it cannot be set, and the owner if it
# cannot be set. In the latter case, entries of the access-control list preserve the owner's access.
MAY_DIFFER = (
    (re.compile(r'utimensat\('), "EACCES EIO", "date"),
    (re.compile(r'fchown\('), "EPERM", "owner mode system.posix_acl_access"),
)

# Code paths to try faults on. Some are only taken after a first fault: `beside` injects it, and `status` is the exit
# status if it is the only one. Faults are tried in the calls from `first` to `last`, which are patterns.
Way = collections.namedtuple("Way", "name beside status first last")
WITHOUT_RANGE_COPY = ["copy_file_range:error=EXDEV"]
WAYS = (
    Way("", [], 0, r'^openat\(.*\.mp3"', r'^write\(1<.*"\\nchanged'),
    Way("without a range copy, ", WITHOUT_RANGE_COPY, 0, r"^copy_file_range", r"^utimensat"),
    Way("after a failed rename, ", ["renameat:error=EIO:when=1"], 2, r"^renameat", r"^unlinkat"),
)
Fault = collections.namedtuple("Fault", "way call when error line is_source is_tidying")


def strace(program, words, folder, injections, log):
    options = [option for injection in injections for option in ("-e", "inject=" + injection)]
    return run("strace", ["-f", "-y", "--seccomp-bpf", "-qq", "-s", "20", "-o", log, "-e", "trace=" + ",".join(ERRORS),
                          *options, "--", program, *words], folder)


def calls_in(log):
    """Returns the calls of a trace, each without the number of the process."""
    return [line.split(maxsplit=1)[1] for line in pathlib.Path(log).read_text(errors="replace").splitlines()]


def subject(line):
    """Returns the call and its object, without the parts that differ from run to run."""
    words = re.split(r", |\) +=", line)[:2 if "AT_FDCWD" in line else 1]
    return re.sub(r"\.quillmark-\w{6}|\d+", "", ", ".join(words))


def faults_of(way, program, album, log):
    """Returns the faults to try: those of each call on the source and the first file, and of the report."""
    album.reset()
    status, _, error = strace(program, album.words, album.folder, way.beside, log)
    if "ptrace" in error.lower() or not os.path.getsize(log):
        sys.exit(f"faults.py: strace cannot trace here, so nothing is proven: {error.strip()}")
    check(f"status of a run {way.name or 'under strace'}", status, way.status)
    calls, seen, faults = calls_in(log), collections.Counter(), []

    def position(pattern, start=0):
        for n, line in enumerate(calls):
            if n >= start and re.search(pattern, line):
                return n
        sys.exit(f"faults.py: a run {way.name}made no call like {pattern}, so nothing is proven")

    first = position(way.first)
    last = position(way.last, first)
    target, second_file, renamed = position(album.rich), position(album.names[1]), position("^renameat")
    for n, line in enumerate(calls):
        call = line.split("(")[0]
        seen[call] += 1
        is_report = line.startswith("write(1<")
        is_sanitizers = "<pipe:" in line and not is_report  # they write from memory to find out whether it is readable
        if first <= n <= last and (n < second_file or is_report) and not is_sanitizers and "(INJECTED)" not in line:
            faults += [Fault(way, call, seen[call], error, line, n < target, n > renamed and not is_report)
                       for error in ERRORS[call]]
    return faults


def judge(fault, album, result):
    what = f"{fault.way.name}{fault.error} of {fault.line}"
    status, output, errors = result
    reason = "" if fault.error == CUT else os.strerror(getattr(errno, fault.error))
    contents = album.contents()
    error_line = rf"quillmark: (failed    {re.escape(album.rich)}: )?(.*)\n"
    message = re.fullmatch(error_line, errors)
    if status == 0:
        check(what, (contents, output, errors), (["new"] * 3, album.output, ""))
        check(f"{what}: must not end in success", fault.error != "EINTR" and bool(UNSAFE.match(fault.line)), False)
    elif status == 1 and fault.line.startswith("write(1<"):
        check(what, (contents, errors), (["new"] * 3, f"quillmark: The output could not be written: {reason}.\n"))
    elif status == 1 and fault.is_source:
        check(what, (contents, output, bool(message and SOURCE in message[2])), (["old"] * 3, "", True))
    elif status == 2:
        lines = "".join(f"updated   {name}\n" for name in album.names[1:])
        check(what, (contents, output), (["old", "new", "new"], album.report(lines, 2, 1)))
        reasons = (reason if not fault.way.status else os.strerror(errno.EIO), "could not be read",
                   "it is write-protected" if fault.call == "faccessat2" else reason)
        check(f"{what}: {errors!r} names the file and the reason",
              bool(message and message[1] and message[2].startswith(album.rich)) and
              (fault.error == CUT or message[2].removesuffix(".").endswith(reasons)), True)
    else:
        check(what, (status, output, errors), "a status of 0 or 2")
    if fault.error == "EINTR":
        check(f"{what}: status", status, fault.way.status)
    differing = [key for line, errors, key in MAY_DIFFER if line.match(fault.line) and fault.error in errors.split()]
    album.check_attributes(what, differing[0].split() if differing else ())
    if fault.is_tidying:  # its error leaves the hidden folder, which must not hinder the next run
        album.learn_again(what)
    else:
        album.check_folder(what)


class Stage(Album):
    """An album with a log of traces; each worker has its own."""

    def __init__(self, folder, samples, program):
        super().__init__(folder / "album", samples)
        self.program, self.log = program, folder / "log"
        self.learn(program)

    def learn_again(self, what):
        left = set(os.listdir(self.folder)) - set(self.old)
        check(f"{what}: left over", [name for name in left if not name.startswith(proof.LEFT_OVER)], [])
        check(f"{what}: the next run", run(self.program, self.words, self.folder)[0], 0)
        check(f"{what}: after the next run", self.contents(), ["new"] * 3)

    def attempt(self, fault):
        self.reset()
        effect = "retval=0" if fault.error == CUT else "error=" + fault.error
        injections = [*fault.way.beside, f"{fault.call}:{effect}:when={fault.when}"]
        result = strace(self.program, self.words, self.folder, injections, self.log)
        hit = [subject(line) for line in calls_in(self.log) if "(INJECTED)" in line]
        check(f"{fault.way.name}{fault.error} of {fault.line}: was injected", subject(fault.line) in hit, True)
        judge(fault, self, result)


def check_short_counts(stage, library):
    source = pathlib.Path(__file__).with_name("short_counts.c")
    subprocess.run(["cc", "-shared", "-fPIC", "-o", library, source], check=True)
    stage.reset()
    environment = {**proof.ENVIRONMENT, "LD_PRELOAD": str(library)}
    environment["ASAN_OPTIONS"] += ":verify_asan_link_order=0"
    result = run(stage.program, stage.words, stage.folder, env=environment)
    check("short counts", (result, stage.contents()), ((0, stage.output, ""), ["new"] * 3))


def check_clipboard(program, samples, home):
    """Checks that `copy` reports each failure, and that the old content is gone or reported to be still there."""
    store, own = home / ".local/state/quillmark", {"env": {**proof.ENVIRONMENT, "HOME": str(home)}}
    there = " What was copied before is still there."
    empty = "No Quillmark tags on the clipboard. Run 'quillmark copy <file>' first."
    for injected, reason in (("fdatasync,fsync:error=EIO", "could not be written: Input/output error."),
                             ("renameat:error=ENOSPC", "could not be written: No space left on device."),
                             ("write:retval=0:when=1", "could not be written: the system took nothing of it."),
                             ("unlinkat:error=EACCES", "could not be written: Permission denied." + there),
                             ("", "cannot be used: Too many open files." + there),
                             ("unlinkat:retval=0", "cannot be used: File exists." + there)):
        shutil.rmtree(home, ignore_errors=True)
        home.mkdir()
        for name in (SOURCE, "02 Gloria.mp3"):
            shutil.copy(samples / name, home)
        check("copy", run(program, ["copy", SOURCE], home, **own)[::2], (0, ""))
        shutil.copy(home / SOURCE, home / "planted")
        os.link(home / "planted", store / "pasteboard.unfinished")
        words = ["strace", "-qq", "-o", home / "log", "-e", "inject=" + injected, "--"] if injected else []
        words += [program, "copy", "02 Gloria.mp3"]
        limit = {} if injected else {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (4, 4))}
        result = run(words[0], words[1:], home, **own, **limit)
        check(f"copy with {injected}", result, (1, "", f"quillmark: The clipboard {reason}\n"))
        planted = (home / "planted").read_bytes()
        check(f"copy with {injected}: the planted file", planted == (home / SOURCE).read_bytes(), True)
        pasted = run(program, ["paste", "--dry-run", SOURCE], home, **own)
        check(f"paste after {injected}", pasted[2] == (f"quillmark: {empty}\n" if there not in reason else ""), True)


def main():
    program, samples = os.path.abspath(sys.argv[1]), pathlib.Path(sys.argv[2])
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        stages = queue.Queue()
        for number in range(2):
            (folder / str(number)).mkdir()
            stages.put(Stage(folder / str(number), samples, program))
        stage = stages.queue[0]
        check_short_counts(stage, folder / "short_counts.so")
        check_clipboard(program, samples, folder / "home")
        ways = [way for way in WAYS
                if not (way.beside == WITHOUT_RANGE_COPY and proof.is_linux_only("copying inside the kernel"))]
        faults = [fault for way in ways for fault in faults_of(way, program, stage, stage.log)]

        def attempt(fault):
            stage = stages.get()
            try:
                stage.attempt(fault)
            finally:
                stages.put(stage)

        with concurrent.futures.ThreadPoolExecutor(2) as workers:
            list(workers.map(attempt, faults))
    calls = len({(fault.way.name, fault.call, fault.when) for fault in faults})
    proof.finish(f"{len(faults)} faults in {calls} system calls cost no file a byte.")


if __name__ == "__main__":
    main()
