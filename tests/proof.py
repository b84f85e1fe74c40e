"""Shared by the proofs: files with known tags, the attributes that a write must keep, and the count of failures."""
import os
import pathlib
import pty
import shutil
import struct
import subprocess
import sys
import tempfile

from tagbytes import audio_of, f3, tag, text

ROOT = pathlib.Path(__file__).resolve().parent.parent
SAMPLES = ROOT / "samples"
PROGRAM = pathlib.Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else None
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


def check(what, actual, expected):
    global failures
    if actual != expected:
        failures += 1
        print(f"FAILED: {what}\n  expected: {str(expected)[:1500]}\n  actual:   {str(actual)[:1500]}", flush=True)


def main(summary, *parts):
    """Ends the proof after it has run the parts, each with an empty folder of its own that every user can enter."""
    for part in parts:
        with tempfile.TemporaryDirectory() as folder:
            os.chmod(folder, 0o755)
            part(pathlib.Path(folder).resolve())
    finish(summary)


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
    """Builds the release program, which the proof then runs. `packages` are further packages that the proof needs."""
    global PROGRAM
    subprocess.run([ROOT / "scripts/setup-packages", *packages], check=True)
    for step in (["--preset", "release"], ["--build", "--preset", "release"]):
        subprocess.run([ROOT / "scripts/quietly", "cmake", *step], cwd=ROOT, check=True)
    PROGRAM = ROOT / "build/release/bin/quillmark"


def identity(album, picture_size=3000):
    """Returns a tag for the source of an apply. Its texts and picture depend on the name of the album."""
    picture = b"\xff\xd8\xff\xe0" + album.encode() * (picture_size // len(album))
    return tag(3, f3("TIT2", text("source")), f3("TALB", text(album)), f3("TPE1", text(album + " choir")),
               f3("APIC", b"\0image/jpeg\0\3\0" + picture))


def run(command, folder, **options):
    """Returns (status, standard output, standard error) as text; a negative status is the signal that ended the run."""
    options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "env": ENVIRONMENT,
               **options}
    done = subprocess.run(command, cwd=folder, **options)
    return done.returncode, *(("" if stream is None else stream.decode()) for stream in (done.stdout, done.stderr))


def quillmark(words, folder, **options):
    return run([PROGRAM, *words], folder, **options)


def report(names, failed=0):
    """Returns the standard output of a run that changed the files."""
    lines = "".join(f"updated   {name}\n" for name in names)
    return f"{lines}\nchanged {len(names)}, unchanged 0, failed {failed}\n"


def attributes(path):
    """Returns the attributes that a write must keep: mode, owner, group, date and extended attributes."""
    status = os.stat(path)
    return {"mode": oct(status.st_mode), "owner": (status.st_uid, status.st_gid), "date": status.st_mtime_ns,
            **{name: os.getxattr(path, name) for name in os.listxattr(path)}}


def acl(*entries):
    """Returns an access-control list as the system stores it; an entry is (tag, permissions) or (tag, permissions, id)."""
    return struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry, *[0xFFFFFFFF][len(entry) - 2:]) for entry in entries)


class Album:
    """A folder with a source and three files to which it is applied, and the contents before and after that.

    The first of the three, the rich one, has frames that no field covers, an extended attribute, an access-control
    list, another owner if the proof runs as root, and audio that takes several chunks to copy.
    """
    PRIVATE = f3("TXXX", b"\0key\0value") + f3("PRIV", b"owner\0\xff\xe0\xff\0\0\xff\xff\xfb")
    MODES = (0o640, 0o604, 0o600)

    def __init__(self, folder):
        """Stores the contents that each file has after an undisturbed run."""
        self.folder = pathlib.Path(folder)
        self.old = {path.name: path.read_bytes() for path in sorted(SAMPLES.glob("*.mp3"))}
        self.names = [name for name in self.old if name != SOURCE]
        self.rich = self.names[0]
        audio = audio_of(self.old[self.rich]) * 30
        self.old[self.rich] = tag(3, f3("TIT2", text("Gloria")), f3("TRCK", text("2/4")), self.PRIVATE) + audio
        self.words, self.output = ["apply", "--from", SOURCE, *self.names], report(self.names)
        self.reset()
        check("an undisturbed run", quillmark(self.words, self.folder), (0, self.output, ""))
        self.new = {name: (self.folder / name).read_bytes() for name in self.names}
        for name in self.names:
            check(f"{name} has changed, but not its audio",
                  (self.new[name] != self.old[name], audio_of(self.new[name]) == audio_of(self.old[name])), (True, True))
        check("frames that no field covers", self.PRIVATE in self.new[self.rich], True)
        self.check_attributes("an undisturbed run")

    def reset(self):
        """Deletes the folder and makes it as it was before any run. It then has the current device and owner, too."""
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        for name, data in self.old.items():
            (self.folder / name).write_bytes(data)
        rich = self.folder / self.rich
        for name, mode in zip(self.names, self.MODES):
            os.chmod(self.folder / name, mode)
        os.setxattr(rich, "user.note", b"kept" * 100)
        os.setxattr(rich, "system.posix_acl_access", acl((1, 6), (2, 4, 65534), (4, 4), (16, 4), (32, 0)))
        if os.geteuid() == 0:
            os.chown(rich, 1234, 5678)
        for name in self.names:
            os.utime(self.folder / name, ns=(DATE, DATE))
        self.attributes = {name: attributes(self.folder / name) for name in self.names}

    def contents(self):
        """Returns for each of the three files whether its contents are "old", "new", or neither."""
        def kind(name):
            data = (self.folder / name).read_bytes()
            return {self.old[name]: "old", self.new[name]: "new"}.get(data, f"neither, {len(data)} bytes")
        return [kind(name) for name in self.names]

    def check_attributes(self, what, may_differ=()):
        """Checks that all three files have kept their attributes, except for those of the rich one in `may_differ`."""
        for name in self.names:
            expected, actual = dict(self.attributes[name]), attributes(self.folder / name)
            if name == self.rich:
                expected.update({key: actual.get(key) for key in may_differ})
            check(f"{what}: attributes of {name}", actual, expected)

    def check_folder(self, what):
        check(f"{what}: files in the folder", sorted(os.listdir(self.folder)), sorted(self.old))
