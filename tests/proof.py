"""What the proofs of the writing commands share: files with known tags, all that a write must keep, and a tally."""
import os
import pathlib
import pty
import shutil
import struct
import subprocess
import sys
import threading

ROOT = pathlib.Path(__file__).resolve().parent.parent
DATE = 981173106_123456789  # every digit of the nanoseconds tells whether it came back
SOURCE = "01 Kyrie.mp3"
# Leak checking does not work under ptrace, and a small limit on files must not stop the sanitizers.
ENVIRONMENT = {**os.environ, "ASAN_OPTIONS": "detect_leaks=0"}
for variable in ("WAYLAND_DISPLAY", "DISPLAY", "QUILLMARK_OPTIONS"):  # the user's desktop and settings do not count
    ENVIRONMENT.pop(variable, None)
SKIPPED = 77  # the exit status of a proof that the system has no means for
LEFT_OVER = ".quillmark-"
# Whether the program was built without the calls that only Linux has. Such a build reads and writes audio to copy it.
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
    """Says that a row is skipped if the program was built without the calls that only Linux has."""
    if IS_PLAIN:
        print(f"skipped: {what}, which takes a call that only Linux has")
    return IS_PLAIN


def require_terminals():
    """Ends the proof as skipped if the system has no pseudo-terminals, as in a chroot without /dev/pts."""
    try:
        for descriptor in pty.openpty():
            os.close(descriptor)
    except OSError as error:
        print(f"skipped: {error}")
        sys.exit(1 if failures else SKIPPED)


def build_release(*packages):
    """Gives the release program; the named packages are those that the proof itself needs."""
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
    """A tag that apply can give to other files: its album and picture tell it from any other."""
    picture = b"\xff\xd8\xff\xe0" + album.encode() * (picture_size // len(album))
    return tag(text("TIT2", "source"), text("TALB", album), text("TPE1", album + " choir"),
               frame("APIC", b"\0image/jpeg\0\3\0" + picture))


def run(program, words, folder, **options):
    """Gives (status, standard output, standard error) as text; a negative status is the signal that ended it."""
    options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "env": ENVIRONMENT,
               **options}
    done = subprocess.run([program, *words], cwd=folder, **options)
    return done.returncode, *(("" if stream is None else stream.decode()) for stream in (done.stdout, done.stderr))


def attributes(path):
    """What a write keeps besides the audio and the frames: mode, owner, group, date, extended attributes."""
    status = os.stat(path)
    return {"mode": oct(status.st_mode), "owner": (status.st_uid, status.st_gid), "date": status.st_mtime_ns,
            **{name: os.getxattr(path, name) for name in os.listxattr(path)}}


class Album:
    """A folder with the source and three files that an apply changes, and what they are before and after it.

    The first of the three is the rich one: frames that no field covers, an extended attribute, an access-control
    list, another owner where that can be had, and audio that takes several chunks to copy.
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
        """Makes the folder anew as it was before any run, so that it is also of a new device or owner."""
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        for name, data in self.old.items():
            (self.folder / name).write_bytes(data)
        for name, mode in zip(self.names, self.MODES):
            os.chmod(self.folder / name, mode)
        rich = self.folder / self.rich
        os.setxattr(rich, "user.note", b"kept" * 100)
        everybody = 0xFFFFFFFF
        entries = ((1, 6, everybody), (2, 4, 65534), (4, 4, everybody), (16, 4, everybody), (32, 0, everybody))
        os.setxattr(rich, "system.posix_acl_access",
                    struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry) for entry in entries))
        if os.geteuid() == 0:
            os.chown(rich, 1234, 5678)
        for name in self.names:
            os.utime(self.folder / name, ns=(DATE, DATE))
        self.attributes = {name: attributes(self.folder / name) for name in self.names}

    def learn(self, program):
        """Sees from an undisturbed run what each file becomes."""
        self.reset()
        self.output = self.report("".join(f"updated   {name}\n" for name in self.names), len(self.names), 0)
        check("an undisturbed run", run(program, self.words, self.folder), (0, self.output, ""))
        self.new = {name: (self.folder / name).read_bytes() for name in self.names}
        for name in self.names:
            check(f"{name} is another file", self.new[name] != self.old[name], True)
            check(f"audio of {name}", audio_of(self.new[name]) == audio_of(self.old[name]), True)
        check("frames that no field covers", self.PRIVATE in self.new[self.rich], True)
        self.check_attributes("an undisturbed run")

    @staticmethod
    def report(lines, changed, failed):
        return f"{lines}\nchanged {changed}, unchanged 0, failed {failed}\n"

    def contents(self):
        """What each of the three files is now: "old", "new", or neither."""
        def kind(name):
            data = (self.folder / name).read_bytes()
            known = {self.old[name]: "old", self.new[name]: "new"}
            return known.get(data, f"neither, {len(data)} bytes")
        return [kind(name) for name in self.names]

    def check_attributes(self, what, may_differ=()):
        """All three files have the attributes they had; the rich one may differ in those that may_differ names."""
        for name in self.names:
            expected, actual = self.attributes[name], attributes(self.folder / name)
            if name == self.rich and may_differ:
                expected = {**actual, **{key: value for key, value in expected.items() if key not in may_differ}}
            check(f"{what}: attributes of {name}", actual, expected)

    def check_folder(self, what):
        check(f"{what}: files in the folder", sorted(os.listdir(self.folder)), sorted(self.old))
