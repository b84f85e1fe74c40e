#!/usr/bin/env python3
"""Stops runs at chosen system calls, lets somebody else put a hand on the folder there, and looks at what comes of it.

Usage: attacks.py PROGRAM SAMPLES_FOLDER [SYSTEM]
"""
import os
import pathlib
import re
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time

import proof
from proof import ENVIRONMENT, attributes, audio_of, check, frame, run, tag, text

USER, OTHER = 64501, 64502
SONG = "song.mp3"
BACKUP = SONG + ".orig"
CHANGED, MOVED = f"{SONG} was changed by another program meanwhile.", f"{SONG} was moved or deleted meanwhile."
AUDIO = b"\xff\xfb\x90\x64" + bytes(range(256)) * 400
OLD = tag(text("TALB", "Old"), frame("PRIV", b"kept\0" * 9)) + AUDIO
EVERYBODY = 0xFFFFFFFF


def as_user(user, *words, groups="--clear-groups"):
    return ["setpriv", f"--reuid={user}", f"--regid={user}", groups, *map(str, words)]


def acl(*entries):
    """An access-control list of (tag, permissions, id) as the system keeps it."""
    return struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry) for entry in entries)


class Stage:
    """A folder that everybody may write to, with a song of the user's."""

    def __init__(self, program, folder):
        self.program, self.folder, self.log = program, folder / "shared", folder / "log"
        self.song, self.kept = self.folder / SONG, folder / "kept"

    def reset(self, content=OLD):
        for place in (self.folder, self.kept):
            shutil.rmtree(place, ignore_errors=True)
            place.mkdir()
            os.chown(place, USER, USER)
        os.chmod(self.folder, 0o777)
        self.song.write_bytes(content)
        precious = self.kept / "precious.mp3"
        precious.write_bytes(b"ID3 precious")
        for path in (self.song, precious):
            os.chown(path, USER, USER)

    def hidden(self):
        return [path for path in self.folder.iterdir() if path.name.startswith(proof.LEFT_OVER)]

    def run(self, *words, user=USER, groups="--clear-groups", inject=(), **options):
        traced = [f"inject={one}" for one in inject]
        strace = ["strace", "-f", "-qq", "-y", "-o", self.log, *(part for one in traced for part in ("-e", one))]
        return run("env", as_user(user, *strace, self.program, *words, groups=groups), self.folder, **options)

    def run_stopping(self, call, act, words=("set", "--album", "New", SONG), which=":when=1", user=USER, inject=()):
        """Calls `act` after the run has made the call for the first time, or each time that `which` names.

        Reads count for the song only: between the first look at it and the lock. Lookups count for the backup only:
        just before it is made.
        """
        self.log.unlink(missing_ok=True)
        counted = {"pread64": ["-P", self.song], "newfstatat": ["-P", BACKUP]}.get(call, [])
        words = ["strace", "-f", "-qq", "-y", "-o", self.log, *counted,
                 "-e", "trace=" + ",".join([call, *(one.split(":")[0] for one in inject)]), "-e", f"inject={call}:signal=SIGSTOP{which}",
                 *(part for one in inject for part in ("-e", f"inject={one}")), self.program, *words]
        process = subprocess.Popen(as_user(user, *words), cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   env=ENVIRONMENT, text=True)
        seen = 0
        while process.poll() is None:
            stops = re.findall(r"^(\d+) +--- stopped by SIGSTOP", self.read_log(), re.M)
            if len(stops) > seen:
                seen = len(stops)
                act()
                os.kill(int(stops[-1]), signal.SIGCONT)
            time.sleep(0.002)
        output, errors = process.communicate()
        check(f"stopped at {call}", seen > 0, True)
        return process.returncode, output, errors

    def read_log(self):
        return self.log.read_text(errors="replace") if self.log.exists() else ""

    def other(self, command, *words):
        """What the other user does: a shell command in the folder, with these words as $1 and so on."""
        subprocess.run(as_user(OTHER, "sh", "-ec", command, "sh", *words), cwd=self.folder, check=True)

    def check_kept(self, what):
        """Nothing that is the user's was touched."""
        check(f"{what}: kept", {path.name: path.read_bytes() for path in self.kept.iterdir() if path.is_file()},
              {"precious.mp3": b"ID3 precious"})


def failed(reason):
    return 2, "\nchanged 0, unchanged 0, failed 1\n", f"quillmark: failed    {SONG}: {reason}\n"


UPDATED = (0, f"updated   {SONG}\n\nchanged 1, unchanged 0, failed 0\n", "")
ANOTHER = f"{SONG} could not be written: another program has replaced the hidden folder for its new version."


def check_planted_links(stage):
    precious = str(stage.kept / "precious.mp3")
    swap = f'mv {SONG} taken; ln -s "$1" {SONG}'
    for call in ("mkdirat", proof.COPYING, "fsync"):
        what = f"the song swapped for a link after {call}"
        stage.reset()
        status, _, errors = stage.run_stopping(call, lambda: stage.other(swap, precious))
        check(what, (status, os.readlink(stage.song), stage.hidden()), (2, precious, []))
        check(f"{what}: the song", (stage.folder / "taken").read_bytes() == OLD, True)
        check(f"{what}: is told", SONG in errors, True)
        stage.check_kept(what)

    # Between the first look and the lock of root's run: what only root may read must not appear anywhere.
    stage.reset()
    secret = stage.kept / "secret.mp3"
    secret.write_bytes(OLD + b"secret")
    os.chmod(secret, 0o600)
    os.chown(secret, 0, 0)
    stage.run_stopping("pread64", lambda: stage.other(swap, str(secret)), user=0)
    leaked = [path for path in stage.folder.iterdir() if path.is_file() and not path.is_symlink() and b"secret" in path.read_bytes()]
    check("root's file by a link", (leaked, oct(os.stat(secret).st_mode), os.stat(secret).st_uid), ([], "0o100600", 0))


def check_swapped_folders(stage):
    """What somebody puts in the place of the hidden folder is found out and stays as it is."""
    precious = str(stage.kept / "precious.mp3")
    def swap_for(make):
        def act():
            hidden = stage.hidden()[0]
            hidden.rename(stage.folder / "away")
            make(hidden)
        return act

    def of_others(hidden):
        stage.other('mkdir -m 777 "$1"; ln -s "$2" "$1/new"', hidden, precious)

    def of_users(hidden):
        hidden.mkdir(mode=0o700)
        (hidden / "letter").write_text("dear")
        os.chown(hidden, USER, USER)

    def of_users_open(hidden):
        hidden.mkdir()
        os.chown(hidden, USER, USER)
        os.chmod(hidden, 0o777)

    for make in (of_others, of_users, of_users_open):
        what = f"a folder {make.__name__} in place of the hidden one"
        stage.reset()
        check(what, stage.run_stopping("mkdirat", swap_for(make)), failed(ANOTHER))
        check(f"{what}: left", [path.name.startswith(proof.LEFT_OVER) for path in stage.hidden()], [True])
        check(f"{what}: the song", stage.song.read_bytes() == OLD, True)
        check(f"{what}: its files", [path.name for path in stage.hidden()[0].iterdir()],
              {"of_others": ["new"], "of_users": ["letter"]}.get(make.__name__, []))
        stage.check_kept(what)

    stage.reset()
    check("swapped before the tidying", stage.run_stopping("renameat", swap_for(of_users)), UPDATED)
    check("swapped before the tidying: its files", (stage.hidden()[0] / "letter").read_text(), "dear")


def check_meanwhile(stage):
    """Another program's change is neither overwritten nor undone."""
    def append():
        with open(stage.song, "ab") as song:
            song.write(b"more")

    def replace():
        (stage.folder / "its").write_bytes(tag(text("TIT2", "Its")) + AUDIO + b"its")
        os.rename(stage.folder / "its", stage.song)

    for act, title, end in ((append, None, b"more"), (replace, b"Its", b"its")):
        for call in ("pread64", "flock", proof.COPYING, "fsync"):
            what = f"{act.__name__} after {call}"
            stage.reset()
            check(what, stage.run_stopping(call, act, user=0), UPDATED)
            song = stage.song.read_bytes()
            check(f"{what}: both are there", (song.endswith(AUDIO + end), b"N\0e\0w\0" in song), (True, True))
            if title:
                check(f"{what}: its title", "I\0t\0s\0".encode() in song, True)
    stage.reset()
    check("changed time and again", stage.run_stopping("utimensat", append, which=""), failed(CHANGED))
    check("changed time and again: the song", stage.song.read_bytes().removeprefix(OLD).replace(b"more", b""), b"")
    for call in ("flock", proof.COPYING, "fsync"):
        stage.reset()
        os.chmod(stage.song, 0o600)
        check(f"moved after {call}", stage.run_stopping(call, lambda: stage.song.rename(stage.folder / "moved")), failed(MOVED))
        check(f"moved after {call}: files", sorted(os.listdir(stage.folder)), ["moved"])
        stage.reset()
        check(f"deleted after {call}", stage.run_stopping(call, stage.song.unlink), failed(MOVED))
        check(f"deleted after {call}: files", os.listdir(stage.folder), [])


def check_runs_at_once(stage):
    for number in range(20):
        stage.reset()
        runs = [subprocess.Popen([stage.program, "set", option, "New", SONG], cwd=stage.folder, env=ENVIRONMENT,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
                for option in ("--album", "--artist", "--composer", "--genre", "--comment", "--lyrics", "--copyright", "--publisher")]
        outputs = [process.communicate()[0] for process in runs]
        read = run(stage.program, ["read", SONG], stage.folder)[1]
        check(f"eight runs, round {number}", (outputs, read.count("New")), ([UPDATED[1]] * 8, 8))


def check_order(stage):
    stage.reset()
    os.setxattr(stage.song, "user.note", b"kept")
    check("in order", stage.run("set", "--album", "New", SONG, user=0), UPDATED)
    calls = [re.sub(r"^\d+ +", "", line) for line in stage.read_log().splitlines()]
    places = {}
    for name, pattern in (("written", r"(write|copy_file_range|fchmod|fsetxattr|utimensat|fremovexattr|fchown)\(.*/\.quillmark-"),
                          ("file synchronised", r"fsync\(.*/\.quillmark-\w+/new>\) += 0"),
                          ("renamed", r"renameat"), ("folder synchronised", r"fsync\(\d+<[^>]*/shared>\) += 0")):
        places[name] = max((n for n, line in enumerate(calls) if re.match(pattern, line)), default=-1)
    check("written, synchronised, renamed, folder synchronised", sorted(places, key=places.get), list(places))
    check("each of these", min(places.values()) >= 0, True)
    opened = [line for line in calls if line.startswith("openat(") and f'/{SONG}"' in line]
    check("opens", len(opened), 1)
    read = [int(line.split("= ")[-1]) for line in calls if re.match(rf"(pread64|read)\(\d+<[^>]*/{SONG}>", line)]
    check("bytes read: those of the tag, once", sum(read), len(OLD) - (0 if proof.IS_PLAIN else len(AUDIO)))
    first, last = calls.index(opened[0]), next(n for n, line in enumerate(calls) if "updated" in line)
    # The sanitizers' own calls are about no file.
    count = sum(str(stage.folder) in line and "/proc/" not in line for line in calls[first:last])
    most = 35 if proof.IS_PLAIN else 30
    check(f"{count} calls for a changed file are at most {most}", 20 < count <= most, True)


def entries(path):
    """The access-control list as (tag, permissions, id), without the mask's."""
    data = os.getxattr(path, "system.posix_acl_access")[4:]
    return sorted(entry for entry in struct.iter_unpack("<HHI", data) if entry[0] != 0x10)


def check_rights(stage):
    def reset(owner, group, mode=0o644):
        stage.reset()
        os.chown(stage.song, owner, group)
        os.chmod(stage.song, mode)

    reset(USER, OTHER, 0o604)
    check("a group that nothing is granted to", stage.run("set", "--album", "New", SONG), UPDATED)
    check("a group that nothing is granted to: its member", run("env", as_user(OTHER, "cat", str(stage.song)), stage.folder)[0], 1)
    reset(USER, USER, 0o666)
    namespace = ["-U", "--map-root-user"]
    if proof.is_linux_only("user namespaces"):
        pass
    elif run("unshare", [*namespace, "true"], stage.folder)[0] == 0:
        check("an ID without a counterpart", run("unshare", [*namespace, stage.program, "set", "--album", "New", SONG], stage.folder),
              failed(f"{SONG} could not be written: its owner cannot be kept, nor its owner's access."))
    else:
        print("skipped: user namespaces, which this system refuses, as Linux does in a chroot")

    what = "a song of another's that the user may write to"
    shared = acl((1, 6, EVERYBODY), (2, 6, USER), (4, 6, EVERYBODY), (16, 6, EVERYBODY), (32, 0, EVERYBODY))
    reset(OTHER, OTHER)
    os.setxattr(stage.song, "system.posix_acl_access", shared)
    check(what, stage.run("set", "--album", "New", SONG), UPDATED)
    check(f"{what}: owner", (os.stat(stage.song).st_uid, os.stat(stage.song).st_gid), (USER, USER))
    check(f"{what}: list", entries(stage.song),
          [(1, 6, EVERYBODY), (2, 6, OTHER), (4, 0, EVERYBODY), (8, 6, OTHER), (32, 0, EVERYBODY)])
    check(f"{what}: its owner", run("env", as_user(OTHER, stage.program, "read", SONG), stage.folder)[0], 0)
    reset(OTHER, OTHER)
    os.setxattr(stage.song, "system.posix_acl_access", shared)
    grouped = f"{what}, whose group the user is in"
    check(grouped, stage.run("set", "--album", "New", SONG, groups=f"--groups={OTHER}"), UPDATED)
    check(f"{grouped}: owner", (os.stat(stage.song).st_uid, os.stat(stage.song).st_gid), (USER, OTHER))
    check(f"{grouped}: list", entries(stage.song), [(1, 6, EVERYBODY), (2, 6, OTHER), (4, 6, EVERYBODY), (32, 0, EVERYBODY)])
    reset(OTHER, OTHER)
    os.setxattr(stage.song, "system.posix_acl_access", shared)
    before = attributes(stage.song)
    refusal = f"{SONG} could not be written: its owner cannot be kept, nor its owner's access."
    check(f"{what}, without lists", stage.run("set", "--album", "New", SONG, inject=["fsetxattr:error=EOPNOTSUPP"]), failed(refusal))
    check(f"{what}, without lists: attributes", attributes(stage.song), before)

    for mode, group_list in ((0o640, [(1, 6, EVERYBODY), (4, 0, EVERYBODY), (8, 4, OTHER), (32, 0, EVERYBODY)]), (0o644, None)):
        what = f"a song {mode:o} of the user's and another group"
        reset(USER, OTHER, mode | 0o2000)
        check(what, stage.run("set", "--album", "New", SONG), UPDATED)
        status = os.stat(stage.song)
        check(f"{what}: owner", (status.st_uid, status.st_gid, status.st_mode & 0o7000), (USER, USER, 0))
        check(f"{what}: list", entries(stage.song) if group_list else os.listxattr(stage.song), group_list or [])
    everything = acl((1, 7, EVERYBODY), (2, 7, OTHER), (4, 7, EVERYBODY), (16, 7, EVERYBODY), (32, 7, EVERYBODY))
    for owner, group in ((USER, USER), (0, OTHER)):
        what = f"a folder with a default list, a song of {owner}:{group}"
        reset(owner, group, 0o2640)
        os.setxattr(stage.folder, "system.posix_acl_default", everything)
        before = attributes(stage.song)
        check(what, stage.run("set", "--album", "New", SONG, user=owner), UPDATED)
        check(f"{what}: attributes", attributes(stage.song), before)


def check_backups(stage):
    """What stays beside a new file: a second name for the old one, or a copy with all that belongs to it; once."""
    backup = stage.folder / BACKUP
    words = ("set", "--album", "New", "--backup", SONG)
    for inject in ((), ("linkat:error=EPERM",)):
        what = f"a backup {inject or 'by a second name'}"
        stage.reset()
        os.setxattr(stage.song, "user.note", b"kept")
        os.chmod(stage.song, 0o604)
        os.utime(stage.song, ns=(proof.DATE, proof.DATE))
        before, inode = attributes(stage.song), os.stat(stage.song).st_ino
        check(what, stage.run(*words, inject=inject), UPDATED)
        check(f"{what}: file", (backup.read_bytes() == OLD, attributes(backup), os.stat(backup).st_ino == inode),
              (True, before, not inject))
        check(f"{what}: folder", sorted(os.listdir(stage.folder)), [SONG, BACKUP])
        check(f"{what}: again", (stage.run("set", "--album", "Newer", "--backup", SONG), backup.read_bytes() == OLD), (UPDATED, True))

        told = stage.run("set", "--album", "Newest", "--notes", "--backup", SONG)[2]
        check(f"{what}: an earlier one", told, f"quillmark: note: {SONG}: {BACKUP} already exists and is kept as the backup.\n")

        stage.reset()
        failure = f"{SONG} could not be written: Input/output error."
        check(f"{what}, then a failure", stage.run(*words, inject=[*inject, f"renameat{'2' if inject and not proof.IS_PLAIN else ''}:error=EIO"]), failed(failure))
        check(f"{what}, then a failure: folder", (os.listdir(stage.folder), stage.song.read_bytes() == OLD), ([SONG], True))
    for make in (backup.mkdir, lambda: backup.symlink_to("nothing"), lambda: os.mkfifo(backup), backup.touch):
        stage.reset()
        make()
        failure = f"{SONG} could not be backed up: something else has the name {BACKUP}."
        check("something else in place of a backup", (stage.run(*words, user=0), stage.song.read_bytes() == OLD), (failed(failure), True))
    stage.reset()
    os.chmod(stage.folder, 0o1777)
    os.chown(stage.folder, 0, 0)
    os.chown(stage.song, OTHER, OTHER)
    os.chmod(stage.song, 0o666)
    check("a backup in a sticky folder", (stage.run(*words)[0], os.listdir(stage.folder)), (2, [SONG]))
    stage.reset()
    os.chmod(stage.folder, 0o777)
    for code in ("EXDEV", "EACCES", "EINVAL", "ENOSYS"):
        stage.reset()
        check(f"a backup after {code}", stage.run(*words, inject=[f"linkat:error={code}", "renameat2:error=EPERM"]), UPDATED)
        check(f"a backup after {code}: it", backup.read_bytes() == OLD, True)
    for code in () if proof.is_linux_only("a kernel without faccessat2") else ("ENOSYS", "EPERM"):
        stage.reset()
        check(f"faccessat2: {code}", stage.run("set", "--album", "New", SONG, inject=[f"faccessat2:error={code}"]), UPDATED)
    stage.reset()
    failure = f"{SONG} could not be backed up: Input/output error."
    check("no backup", (stage.run(*words, inject=["linkat:error=EIO"]), stage.song.read_bytes() == OLD), (failed(failure), True))
    check("a change between backup and rename", stage.run_stopping("linkat", lambda: os.truncate(stage.song, 9), words)[0], 2)
    check("a change between backup and rename: folder", (os.listdir(stage.folder), os.stat(stage.song).st_size), ([SONG], 9))

    def replace():
        stage.song.unlink()
        stage.song.symlink_to(stage.kept / "precious.mp3")
    stage.reset()
    check("a link in place of what is backed up", stage.run_stopping("newfstatat", replace, words, user=0)[0], 2)
    check("a link in place of what is backed up: folder", os.listdir(stage.folder), [SONG])
    stage.check_kept("a link in place of what is backed up")
    stage.reset()
    check("a backup that comes meanwhile", stage.run_stopping("newfstatat", lambda: backup.write_text("dear"), words,
                                                              inject=["linkat:error=EPERM", "renameat2:error=EINVAL"]), UPDATED)
    check("a backup that comes meanwhile: it", backup.read_bytes(), b"dear")


def check_small_ones(stage):
    stage.reset()
    nothing = f"{SONG} could not be written: the system took nothing of it."
    check("a write that takes nothing", stage.run("set", "--album", "New", SONG, inject=["write:retval=0:when=1"]), failed(nothing))
    check("a write that takes nothing: folder", os.listdir(stage.folder), [SONG])
    stage.reset()
    check("umask 0777", stage.run("set", "--album", "New", SONG, preexec_fn=lambda: os.umask(0o777)), UPDATED)
    stage.reset()
    linked = stage.folder / "linked" / SONG
    linked.parent.mkdir()
    os.link(stage.song, linked)
    shutil.copy(stage.song, stage.folder / "first.mp3")
    check("a second name in the folder before", stage.run("set", "--album", "New", "first.mp3", f"linked/{SONG}", user=0)[0], 0)
    check("a second name in the folder before: both", (stage.song.read_bytes() == OLD, linked.read_bytes() == OLD), (True, False))
    folder_sync = f"quillmark: {SONG} was written, but its folder could not be synchronised: Input/output error.\n"
    stage.reset()
    check("a folder that cannot be synchronised", stage.run("set", "--album", "New", SONG, inject=["fsync:error=EIO:when=2"]),
          (2, f"updated   {SONG}\n\nchanged 1, unchanged 0, failed 0\n", folder_sync))
    if not proof.is_linux_only("a folder that may not be read"):
        stage.reset()
        os.chmod(stage.folder, 0o333)
        check("a folder that may not be read", stage.run("set", "--album", "New", SONG), UPDATED)
        os.chmod(stage.folder, 0o777)


def main():
    if os.geteuid() != 0:
        proof.finish("Skipped: only root can play two users.")
    program = pathlib.Path(sys.argv[1])
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        os.chmod(folder, 0o777)
        shutil.copy(program, folder / "program")  # where every user can run it
        stage = Stage(folder / "program", folder)
        for part in (check_planted_links, check_swapped_folders, check_meanwhile, check_runs_at_once, check_order, check_rights, check_backups,
                     check_small_ones):
            part(stage)
    proof.finish("Nobody else in the folder costs the user a byte, and nobody loses a change.")


if __name__ == "__main__":
    main()
