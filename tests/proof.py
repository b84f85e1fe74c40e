"""Shared by the proofs: files with known tags, the attributes that a write must keep, and the count of failures."""
import os
import pathlib
import pty
import shutil
import struct
import subprocess
import sys
import threading

ROOT = pathlib.Path(__file__).resolve().parent.parent
DATE = 981173106_123456789  # all digits of the nanoseconds differ, so that a lost one shows
SOURCE = "01 Kyrie.mp3"
# Leak checking does not work under ptrace, and may fail under the limits on files that proofs set.
ENVIRONMENT = {**os.environ, "ASAN_OPTIONS": "detect_leaks=0"}
for variable in ("WAYLAND_DISPLAY", "DISPLAY", "QUILLMARK_OPTIONS"):  # must not affect the proofs
    ENVIRONMENT.pop(variable, None)
SKIPPED = 77  # the exit status of a proof that this system cannot run
LEFT_OVER = ".quillmark-"
# True if the program was built without the calls that only Linux has. It then copies audio by reading and writing it.
IS_PLAIN = "posix" in sys.argv[2:]
COPYING = "write" if IS_PLAIN else "copy_file_range"

failures = 0
lock = threading.Lock()


def check(what, actual, expected):
    global failures
    if actual == expected:
        return
    with lock:
        failures += 1
        print(f"FAILED: {what}\n  expected: {str(expected)[:1500]}\n  actual:   {str(actual)[:1500]}", flush=True)


def finish(summary):
    print(f"{failures} checks failed" if failures else summary)
    sys.exit(1 if failures else 0)


def is_linux_only(what):
    """Returns whether the program was built without the calls that only Linux has; if so, prints what is skipped."""
    if IS_PLAIN:
        print(f"skipped: {what}, which needs a call that only Linux has")
    return IS_PLAIN


def require_terminals():
    """Ends the proof as skipped if the system has no pseudo-terminals, for example in a chroot without /dev/pts."""
    try:
        for descriptor in pty.openpty():
            os.close(descriptor)
    except OSError as error:
        print(f"skipped: {error}")
        sys.exit(1 if failures else SKIPPED)


def build_release(*packages):
    """Builds the release program and returns its path. `packages` are further packages that the proof needs."""
    subprocess.run([ROOT / "scripts/setup-packages", *packages], check=True)
    for step in (["--preset", "release"], ["--build", "--preset", "release"]):
        subprocess.run([ROOT / "scripts/quietly", "cmake", *step], cwd=ROOT, check=True)
    return ROOT / "build/release/bin/quillmark"


def frame(name, payload):
    return name.encode() + struct.pack(">IH", len(payload), 0) + payload


def tag(*frames, padding=64):
    size = sum(map(len, frames)) + padding
    return b"".join([b"ID3\3\0\0", bytes(size >> shift & 0x7F for shift in (21, 14, 7, 0)), *frames, bytes(padding)])


def text(name, value):
    return frame(name, b"\0" + value.encode("latin-1"))


def audio_of(mp3):
    return mp3[10 + sum((mp3[6 + n] & 0x7F) << (21 - 7 * n) for n in range(4)):]


def identity(album, picture_size=3000):
    """Returns a tag for the source of an apply. Its texts and picture depend on the name of the album."""
    picture = b"\xff\xd8\xff\xe0" + album.encode() * (picture_size // len(album))
    return tag(text("TIT2", "source"), text("TALB", album), text("TPE1", album + " choir"),
               frame("APIC", b"\0image/jpeg\0\3\0" + picture))


def run(program, words, folder, **options):
    """Returns (status, standard output, standard error) as text; a negative status is the signal that ended the run."""
    options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "env": ENVIRONMENT,
               **options}
    done = subprocess.run([program, *words], cwd=folder, **options)
    return done.returncode, *(("" if stream is None else stream.decode()) for stream in (done.stdout, done.stderr))


def attributes(path):
    """Returns the attributes that a write must keep: mode, owner, group, date and extended attributes."""
    status = os.stat(path)
    return {"mode": oct(status.st_mode), "owner": (status.st_uid, status.st_gid), "date": status.st_mtime_ns,
            **{name: os.getxattr(path, name) for name in os.listxattr(path)}}


class Album:
    """A folder with a source and three files to which it is applied, and the contents before and after that.

    The first of the three, the rich one, has frames that no field covers, an extended attribute, an access-control
    list, another owner if the proof runs as root, and audio that takes several chunks to copy.
    """
    PRIVATE = frame("TXXX", b"\0key\0value") + frame("PRIV", b"owner\0\xff\xe0\xff\0\0\xff\xff\xfb")
    MODES = (0o640, 0o604, 0o600)

    def __init__(self, folder, samples):
        self.folder = pathlib.Path(folder)
        self.old = {path.name: path.read_bytes() for path in sorted(samples.glob("*.mp3"))}
        self.names = [name for name in self.old if name != SOURCE]
        self.rich = self.names[0]
        audio = audio_of(self.old[self.rich]) * 30
        self.old[self.rich] = tag(text("TIT2", "Gloria"), text("TRCK", "2/4"), self.PRIVATE) + audio
        self.words = ["apply", "--from", SOURCE, *self.names]
        self.new = {}

    def reset(self):
        """Deletes the folder and makes it as it was before any run. It then has the current device and owner, too."""
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        for name, data in self.old.items():
            (self.folder / name).write_bytes(data)
        for name, mode in zip(self.names, self.MODES):
            os.chmod(self.folder / name, mode)
        rich = self.folder / self.rich
        os.setxattr(rich, "user.note", b"kept" * 100)
        no_id = 0xFFFFFFFF
        entries = ((1, 6, no_id), (2, 4, 65534), (4, 4, no_id), (16, 4, no_id), (32, 0, no_id))
        os.setxattr(rich, "system.posix_acl_access",
                    struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry) for entry in entries))
        if os.geteuid() == 0:
            os.chown(rich, 1234, 5678)
        for name in self.names:
            os.utime(self.folder / name, ns=(DATE, DATE))
        self.attributes = {name: attributes(self.folder / name) for name in self.names}

    def learn(self, program):
        """Stores the contents that each file has after an undisturbed run."""
        self.reset()
        self.output = self.report("".join(f"updated   {name}\n" for name in self.names), len(self.names), 0)
        check("an undisturbed run", run(program, self.words, self.folder), (0, self.output, ""))
        self.new = {name: (self.folder / name).read_bytes() for name in self.names}
        for name in self.names:
            check(f"{name} has changed", self.new[name] != self.old[name], True)
            check(f"audio of {name}", audio_of(self.new[name]) == audio_of(self.old[name]), True)
        check("frames that no field covers", self.PRIVATE in self.new[self.rich], True)
        self.check_attributes("an undisturbed run")

    @staticmethod
    def report(lines, changed, failed):
        return f"{lines}\nchanged {changed}, unchanged 0, failed {failed}\n"

    def contents(self):
        """Returns for each of the three files whether its contents are "old", "new", or neither."""
        def kind(name):
            data = (self.folder / name).read_bytes()
            known = {self.old[name]: "old", self.new[name]: "new"}
            return known.get(data, f"neither, {len(data)} bytes")
        return [kind(name) for name in self.names]

    def check_attributes(self, what, may_differ=()):
        """Checks that all three files have kept their attributes, except for those of the rich one in `may_differ`."""
        for name in self.names:
            expected, actual = self.attributes[name], attributes(self.folder / name)
            if name == self.rich and may_differ:
                expected = {**actual, **{key: value for key, value in expected.items() if key not in may_differ}}
            check(f"{what}: attributes of {name}", actual, expected)

    def check_folder(self, what):
        check(f"{what}: files in the folder", sorted(os.listdir(self.folder)), sorted(self.old))
