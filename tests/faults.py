#!/usr/bin/env python3
"""Makes each system call of a write fail in turn, by strace, and checks the files after each failure.

Usage: faults.py PROGRAM [SYSTEM]
"""
import collections
import errno
import os
import pathlib
import re
import resource
import shutil
import subprocess

import proof
from proof import ENVIRONMENT, SAMPLES, SOURCE, Album, check, quillmark, report, run

# The errors with which each call can fail. CUT is not an error: the call finds the end of the file, as if another
# program had truncated it.
CUT = "CUT"
FULL = "EIO ENOSPC"
ERRORS = {call: errors.split() for call, errors in {
    "openat": "EACCES EMFILE EINTR", "newfstatat": "EIO", "pread64": "EIO EINTR CUT", "flock": "ENOLCK EINTR",
    "faccessat2": "EACCES EROFS", "write": FULL + " EINTR", "copy_file_range": FULL + " EINTR EXDEV CUT",
    "ioctl": "EOPNOTSUPP EIO", "mkdirat": FULL + " EEXIST", "close": FULL + " EINTR", "utimensat": "EIO",
    "fchown": "EIO EPERM", "fchmod": "EIO", "fremovexattr": "EIO EOPNOTSUPP ENODATA", "flistxattr": "EIO ERANGE",
    "fgetxattr": "EIO ERANGE", "fsetxattr": FULL, "fsync": FULL + " EINTR", "renameat": FULL, "unlinkat": "EACCES",
    "getdents64": "EIO"}.items()}

# After an error of one of these calls, the new file may not be on the disk, so it must not be reported as updated.
UNSAFE = re.compile(r'(fsync|renameat)\(|(write|close)\(\d+<[^>]*/\.quillmark-\w+/')
# The attributes of the rich file that may differ after an error: the date if it cannot be set, and the owner if it
# cannot be set. In the latter case, entries of the access-control list preserve the owner's access.
MAY_DIFFER = {("utimensat", "EIO"): ["date"], ("fchown", "EPERM"): ["owner", "mode", "system.posix_acl_access"]}

# Code paths to try faults on. Some are only taken after a first fault: `beside` injects it, and `status` is the exit
# status if it is the only one. Faults are tried in the calls from `first` to `last`, which are patterns.
Way = collections.namedtuple("Way", "name beside status first last")
WAYS = [Way("", [], 0, r'^openat\(.*\.mp3"', r'^write\(1<.*"\\nchanged'),
        Way("after a failed rename, ", ["renameat:error=EIO:when=1"], 2, r"^renameat", r"^unlinkat")]
if not proof.is_linux_only("copying inside the kernel"):
    WAYS += [Way("without a range copy, ", ["copy_file_range:error=EXDEV"], 0, r"^copy_file_range", r"^utimensat")]
Fault = collections.namedtuple("Fault", "way call when error line is_source is_tidying")


class Stage(Album):
    """An album with a log of traces."""

    def __init__(self, folder):
        super().__init__(folder / "album")
        self.log = folder / "log"

    def strace(self, injections):
        """Applies the source to the other files; returns the result, and the calls without the number of the process."""
        self.reset()
        options = [option for injection in injections for option in ("-e", "inject=" + injection)]
        result = run(["strace", "-f", "-y", "--seccomp-bpf", "-qq", "-s", "20", "-o", self.log, "-e",
                      "trace=" + ",".join(ERRORS), *options, "--", proof.PROGRAM, *self.words], self.folder)
        return result, [line.split(maxsplit=1)[1] for line in self.log.read_text(errors="replace").splitlines()]

    def faults_of(self, way):
        """Returns the faults to try: those of each call on the source and the first file, and of the report."""
        (status, _, error), calls = self.strace(way.beside)
        check(f"status of a run {way.name or 'under strace'} {error}", status, way.status)

        def position(pattern, start=0):
            return next(n for n, line in enumerate(calls) if n >= start and re.search(pattern, line))

        first = position(way.first)
        last = position(way.last, first)
        target, second_file, renamed = position(self.rich), position(self.names[1]), position("^renameat")
        seen, faults = collections.Counter(), []
        for n, line in enumerate(calls):
            call = line.split("(")[0]
            seen[call] += 1
            is_report = line.startswith("write(1<")
            is_sanitizers = "<pipe:" in line and not is_report  # they write from memory to find out whether it is readable
            if first <= n <= last and (n < second_file or is_report) and not is_sanitizers and "(INJECTED)" not in line:
                faults += [Fault(way, call, seen[call], error, line, n < target, n > renamed and not is_report)
                           for error in ERRORS[call]]
        return faults

    def attempt(self, fault):
        effect = "retval=0" if fault.error == CUT else "error=" + fault.error
        result, calls = self.strace([*fault.way.beside, f"{fault.call}:{effect}:when={fault.when}"])
        what = f"{fault.way.name}{fault.error} of {fault.line}"
        check(f"{what}: was injected", subject(fault.line) in [subject(one) for one in calls if "(INJECTED)" in one], True)
        self.judge(what, fault, *result)
        self.check_attributes(what, MAY_DIFFER.get((fault.call, fault.error), ()))
        if not fault.is_tidying:
            self.check_folder(what)
            return
        # Its error leaves the hidden folder, which must not hinder the next run.
        left = [name for name in os.listdir(self.folder) if name not in self.old and not name.startswith(proof.LEFT_OVER)]
        again = quillmark(self.words, self.folder)[0]
        check(f"{what}: left over, and the next run", (left, again, self.contents()), ([], 0, ["new"] * 3))

    def judge(self, what, fault, status, output, errors):
        reason = "" if fault.error == CUT else os.strerror(getattr(errno, fault.error))
        contents = self.contents()
        if status == 0:
            check(what, (contents, output, errors), (["new"] * 3, self.output, ""))
            check(f"{what}: must not end in success", fault.error != "EINTR" and bool(UNSAFE.match(fault.line)), False)
        elif fault.line.startswith("write(1<"):
            expected = (1, ["new"] * 3, f"quillmark: The output could not be written: {reason}.\n")
            check(what, (status, contents, errors), expected)
        elif fault.is_source:
            check(what, (status, contents, output, SOURCE in errors), (1, ["old"] * 3, "", True))
        else:
            check(what, (status, contents, output), (2, ["old", "new", "new"], report(self.names[1:], 1)))
            reasons = (os.strerror(errno.EIO) if fault.way.status else reason, "could not be read",
                       "it is write-protected" if fault.call == "faccessat2" else reason)
            named = errors.startswith(f"quillmark: failed    {self.rich}: {self.rich}") and errors.count("\n") == 1
            check(f"{what}: {errors!r} names the file and the reason",
                  named and (fault.error == CUT or errors.removesuffix(".\n").endswith(reasons)), True)
        if fault.error == "EINTR":
            check(f"{what}: status", status, fault.way.status)


def subject(line):
    """Returns the call and its object, without the parts that differ from run to run."""
    words = re.split(r", |\) +=", line)[:2 if "AT_FDCWD" in line else 1]
    return re.sub(r"\.quillmark-\w{6}|\d+", "", ", ".join(words))


def check_short_counts(folder):
    stage, library = Stage(folder), folder / "short_counts.so"
    source = pathlib.Path(__file__).with_name("short_counts.c")
    subprocess.run(["cc", "-shared", "-fPIC", "-o", library, source], check=True)
    stage.reset()
    environment = {**ENVIRONMENT, "LD_PRELOAD": str(library)}
    environment["ASAN_OPTIONS"] += ":verify_asan_link_order=0"
    result = quillmark(stage.words, stage.folder, env=environment)
    check("short counts", (result, stage.contents()), ((0, stage.output, ""), ["new"] * 3))


def check_file_size_limit(folder):
    stage = Stage(folder)
    size = len(stage.new[stage.rich])
    for limit in (100, size - 1, size):
        stage.reset()
        status, output, errors = quillmark(stage.words, stage.folder, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit)))
        fits = {name: len(stage.new[name]) <= limit for name in stage.names}
        updated = [name for name in stage.names if fits[name]]
        lost = "".join(f"quillmark: failed    {name}: {name} could not be written: {os.strerror(errno.EFBIG)}.\n"
                       for name in stage.names if not fits[name])
        check(f"file size limit {limit}", (stage.contents(), status, output, errors), (
            ["new" if fits[name] else "old" for name in stage.names], 2 if lost else 0,
            report(updated, len(fits) - len(updated)), lost))
        stage.check_attributes("a limit")
        stage.check_folder("a limit")
    cover = stage.folder / "cover"
    cover.write_bytes(b"old")
    result = quillmark(["read", "--save-artwork", "cover", SOURCE], stage.folder,
                       preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (2000, 2000)))
    check("a picture beyond the limit", (result, cover.read_bytes(), len(os.listdir(stage.folder))),
          ((1, "", f"quillmark: cover could not be written: {os.strerror(errno.EFBIG)}.\n"), b"old", 5))


def check_clipboard(folder):
    """Checks that `copy` reports each failure, and that the old content is gone or reported to be still there."""
    home = folder / "home"
    store, own = home / ".local/state/quillmark", {"env": {**ENVIRONMENT, "HOME": str(home)}}
    there = " What was copied before is still there."
    empty = "quillmark: No Quillmark tags on the clipboard. Run 'quillmark copy <file>' first.\n"
    for injected, reason in (("fdatasync,fsync:error=EIO", "could not be written: Input/output error."),
                             ("renameat:error=ENOSPC", "could not be written: No space left on device."),
                             ("write:retval=0:when=1", "could not be written: the system took nothing of it."),
                             ("unlinkat:error=EACCES", "could not be written: Permission denied." + there),
                             ("", "cannot be used: Too many open files." + there),
                             ("unlinkat:retval=0", "cannot be used: File exists." + there)):
        shutil.rmtree(home, ignore_errors=True)
        shutil.copytree(SAMPLES, home)
        check("copy", quillmark(["copy", SOURCE], home, **own)[::2], (0, ""))
        os.link(home / SOURCE, store / "pasteboard.unfinished")
        traced = ["strace", "-qq", "-o", home / "log", "-e", "inject=" + injected, "--"] if injected else []
        limit = {} if injected else {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (4, 4))}
        result = run([*traced, proof.PROGRAM, "copy", "02 Gloria.mp3"], home, **own, **limit)
        check(f"copy with {injected}", result, (1, "", f"quillmark: The clipboard {reason}\n"))
        check(f"copy with {injected}: a planted file",
              (home / SOURCE).read_bytes() == (SAMPLES / SOURCE).read_bytes(), True)
        pasted = quillmark(["paste", "--dry-run", SOURCE], home, **own)
        check(f"paste after {injected}", pasted[2], "" if there in reason else empty)


def check_faults(folder):
    stage = Stage(folder)
    faults = [fault for way in WAYS for fault in stage.faults_of(way)]
    for fault in faults:
        stage.attempt(fault)
    print(f"{len(faults)} faults in {len({(fault.way.name, fault.call, fault.when) for fault in faults})} system calls")


proof.main("No fault costs a file a byte.", check_short_counts, check_file_size_limit, check_clipboard, check_faults)
