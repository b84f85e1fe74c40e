#!/usr/bin/env python3
"""Stops runs at chosen system calls, changes the folder as other users or programs could, and checks the results.

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
NO_ID = 0xFFFFFFFF  # in entries that are not about a named user or group


def as_user(user, *words, groups="--clear-groups"):
    return ["setpriv", f"--reuid={user}", f"--regid={user}", groups, *map(str, words)]


def acl(*entries):
    """Returns an access-control list of (tag, permissions, id) as the system stores it."""
    return struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry) for entry in entries)


class Stage:
    """A folder that all users may write to, with a song that belongs to the user."""

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

    def reset_owned(self, owner, group, mode=0o644):
        self.reset()
        os.chown(self.song, owner, group)
        os.chmod(self.song, mode)

    def hidden(self):
        return [path for path in self.folder.iterdir() if path.name.startswith(proof.LEFT_OVER)]

    def run(self, *words, user=USER, groups="--clear-groups", inject=(), **options):
        traced = [f"inject={one}" for one in inject]
        strace = ["strace", "-f", "-qq", "-y", "-o", self.log, *(part for one in traced for part in ("-e", one))]
        return run("env", as_user(user, *strace, self.program, *words, groups=groups), self.folder, **options)

    def run_stopping(self, call, act, words=("set", "--album", "New", SONG), which=":when=1", user=USER, inject=()):
        """Runs the program and calls `act` after its first `call`, or after each one that `which` selects.

        Returns (status, standard output, standard error).
        """
        self.log.unlink(missing_ok=True)
        words = [*self.stopping_trace(call, which, inject), self.program, *words]
        process = subprocess.Popen(as_user(user, *words), cwd=self.folder, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, env=ENVIRONMENT, text=True)
        stops = self.act_at_stops(process, act)
        output, errors = process.communicate()
        check(f"stopped at {call}", stops > 0, True)
        return process.returncode, output, errors

    def stopping_trace(self, call, which, inject):
        """Returns the start of a command that stops a program after the call.

        Only reads of the song count, which are between the first look at it and the lock. Only lookups of the backup
        count, which are just before it is made.
        """
        counted = {"pread64": ["-P", self.song], "newfstatat": ["-P", BACKUP]}.get(call, [])
        traced = [call, *(one.split(":")[0] for one in inject)]
        injected = [f"{call}:signal=SIGSTOP{which}", *inject]
        return ["strace", "-f", "-qq", "-y", "-o", self.log, *counted, "-e", "trace=" + ",".join(traced),
                *(part for one in injected for part in ("-e", f"inject={one}"))]

    def act_at_stops(self, process, act):
        """Calls `act` and continues the process each time it stops, until it ends. Returns the number of stops."""
        seen = 0
        while process.poll() is None:
            stops = re.findall(r"^(\d+) +--- stopped by SIGSTOP", self.read_log(), re.M)
            if len(stops) > seen:
                seen = len(stops)
                act()
                os.kill(int(stops[-1]), signal.SIGCONT)
            time.sleep(0.002)
        return seen

    def read_log(self):
        return self.log.read_text(errors="replace") if self.log.exists() else ""

    def other(self, command, *words):
        """Runs a shell command in the folder as the other user, with the words as $1 and so on."""
        subprocess.run(as_user(OTHER, "sh", "-ec", command, "sh", *words), cwd=self.folder, check=True)

    def check_kept(self, what):
        """Checks that the user's other files are unchanged."""
        files = {path.name: path.read_bytes() for path in self.kept.iterdir() if path.is_file()}
        check(f"{what}: the user's other files", files, {"precious.mp3": b"ID3 precious"})


def failed(reason):
    return 2, "\nchanged 0, unchanged 0, failed 1\n", f"quillmark: failed    {SONG}: {reason}\n"


UPDATED = (0, f"updated   {SONG}\n\nchanged 1, unchanged 0, failed 0\n", "")
OWNER_LOST = f"{SONG} could not be written: its owner cannot be kept, nor its owner's access."
WITH_BACKUP = ("set", "--album", "New", "--backup", SONG)
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
        check(f"{what}: the error names the song", SONG in errors, True)
        stage.check_kept(what)

    # If the link is planted between the first look and the lock of root's run, no file with root's secret may appear.
    stage.reset()
    secret = stage.kept / "secret.mp3"
    secret.write_bytes(OLD + b"secret")
    os.chmod(secret, 0o600)
    os.chown(secret, 0, 0)
    stage.run_stopping("pread64", lambda: stage.other(swap, str(secret)), user=0)
    leaked = [path for path in stage.folder.iterdir()
              if path.is_file() and not path.is_symlink() and b"secret" in path.read_bytes()]
    check("a link to root's file in place of the song",
          (leaked, oct(os.stat(secret).st_mode), os.stat(secret).st_uid), ([], "0o100600", 0))


def check_swapped_folders(stage):
    """Checks that another folder in the place of the hidden one is detected and left unchanged."""
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
        check(f"{what}: is left there", [path.name.startswith(proof.LEFT_OVER) for path in stage.hidden()], [True])
        check(f"{what}: the song", stage.song.read_bytes() == OLD, True)
        check(f"{what}: its files", [path.name for path in stage.hidden()[0].iterdir()],
              {"of_others": ["new"], "of_users": ["letter"]}.get(make.__name__, []))
        stage.check_kept(what)

    stage.reset()
    check("swapped before the tidying", stage.run_stopping("renameat", swap_for(of_users)), UPDATED)
    check("swapped before the tidying: its files", (stage.hidden()[0] / "letter").read_text(), "dear")


def check_meanwhile(stage):
    """Checks that changes of other programs are neither overwritten nor undone."""
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
            check(f"{what}: both changes are there", (song.endswith(AUDIO + end), b"N\0e\0w\0" in song), (True, True))
            if title:
                check(f"{what}: its title", "I\0t\0s\0".encode() in song, True)
    stage.reset()
    check("a change at each attempt", stage.run_stopping("utimensat", append, which=""), failed(CHANGED))
    check("a change at each attempt: the song", stage.song.read_bytes().removeprefix(OLD).replace(b"more", b""), b"")
    for call in ("flock", proof.COPYING, "fsync"):
        stage.reset()
        os.chmod(stage.song, 0o600)
        result = stage.run_stopping(call, lambda: stage.song.rename(stage.folder / "moved"))
        check(f"moved after {call}", result, failed(MOVED))
        check(f"moved after {call}: files", sorted(os.listdir(stage.folder)), ["moved"])
        stage.reset()
        check(f"deleted after {call}", stage.run_stopping(call, stage.song.unlink), failed(MOVED))
        check(f"deleted after {call}: files", os.listdir(stage.folder), [])


def check_runs_at_once(stage):
    options = ("--album", "--artist", "--composer", "--genre", "--comment", "--lyrics", "--copyright", "--publisher")
    for number in range(20):
        stage.reset()
        runs = [subprocess.Popen([stage.program, "set", option, "New", SONG], cwd=stage.folder, env=ENVIRONMENT,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
                for option in options]
        outputs = [process.communicate()[0] for process in runs]
        read = run(stage.program, ["read", SONG], stage.folder)[1]
        check(f"eight runs, round {number}", (outputs, read.count("New")), ([UPDATED[1]] * 8, 8))


def check_order(stage):
    stage.reset()
    os.setxattr(stage.song, "user.note", b"kept")
    check("a run whose calls are traced", stage.run("set", "--album", "New", SONG, user=0), UPDATED)
    calls = [re.sub(r"^\d+ +", "", line) for line in stage.read_log().splitlines()]
    places = {}
    writing = r"(write|copy_file_range|fchmod|fsetxattr|utimensat|fremovexattr|fchown)"
    for name, pattern in (("written", writing + r"\(.*/\.quillmark-"),
                          ("file synchronised", r"fsync\(.*/\.quillmark-\w+/new>\) += 0"),
                          ("renamed", r"renameat"), ("folder synchronised", r"fsync\(\d+<[^>]*/shared>\) += 0")):
        places[name] = max((n for n, line in enumerate(calls) if re.match(pattern, line)), default=-1)
    check("written, synchronised, renamed, folder synchronised", sorted(places, key=places.get), list(places))
    check("each of these calls was made", min(places.values()) >= 0, True)
    opened = [line for line in calls if line.startswith("openat(") and f'/{SONG}"' in line]
    check("the song is opened once", len(opened), 1)
    read = [int(line.split("= ")[-1]) for line in calls if re.match(rf"(pread64|read)\(\d+<[^>]*/{SONG}>", line)]
    check("the bytes of the tag are read once", sum(read), len(OLD) - (0 if proof.IS_PLAIN else len(AUDIO)))
    first, last = calls.index(opened[0]), next(n for n, line in enumerate(calls) if "updated" in line)
    # Leave out calls of the sanitizers, which concern no file of the run.
    count = sum(str(stage.folder) in line and "/proc/" not in line for line in calls[first:last])
    most = 35 if proof.IS_PLAIN else 30
    check(f"{count} calls for a changed file are at most {most}", 20 < count <= most, True)


def entries(path):
    """Returns the entries of the access-control list as (tag, permissions, id), without the mask."""
    data = os.getxattr(path, "system.posix_acl_access")[4:]
    return sorted(entry for entry in struct.iter_unpack("<HHI", data) if entry[0] != 0x10)


def check_readers(stage):
    """Checks access that an owner or a group must neither lose nor gain."""
    stage.reset_owned(USER, OTHER, 0o604)
    what = "a group without rights"
    check(what, stage.run("set", "--album", "New", SONG), UPDATED)
    check(f"{what}: its member cannot read",
          run("env", as_user(OTHER, "cat", str(stage.song)), stage.folder)[0], 1)
    stage.reset_owned(USER, USER, 0o666)
    namespace = ["-U", "--map-root-user"]
    if proof.is_linux_only("user namespaces"):
        pass
    elif run("unshare", [*namespace, "true"], stage.folder)[0] == 0:
        result = run("unshare", [*namespace, stage.program, "set", "--album", "New", SONG], stage.folder)
        check("an ID without a counterpart in the user namespace", result, failed(OWNER_LOST))
    else:
        print("skipped: user namespaces, which this system refuses, as Linux does in a chroot")


def check_lost_owners(stage):
    """Checks that entries of the access-control list preserve the access of an owner that cannot be kept."""
    def reset_shared():
        stage.reset_owned(OTHER, OTHER)
        os.setxattr(stage.song, "system.posix_acl_access", shared)

    what = "a song of another user that the user may write to"
    shared = acl((1, 6, NO_ID), (2, 6, USER), (4, 6, NO_ID), (16, 6, NO_ID), (32, 0, NO_ID))
    reset_shared()
    check(what, stage.run("set", "--album", "New", SONG), UPDATED)
    check(f"{what}: owner", (os.stat(stage.song).st_uid, os.stat(stage.song).st_gid), (USER, USER))
    check(f"{what}: list", entries(stage.song),
          [(1, 6, NO_ID), (2, 6, OTHER), (4, 0, NO_ID), (8, 6, OTHER), (32, 0, NO_ID)])
    check(f"{what}: its owner can read", run("env", as_user(OTHER, stage.program, "read", SONG), stage.folder)[0], 0)
    reset_shared()
    grouped = f"{what}, whose group the user is in"
    check(grouped, stage.run("set", "--album", "New", SONG, groups=f"--groups={OTHER}"), UPDATED)
    check(f"{grouped}: owner", (os.stat(stage.song).st_uid, os.stat(stage.song).st_gid), (USER, OTHER))
    check(f"{grouped}: list", entries(stage.song), [(1, 6, NO_ID), (2, 6, OTHER), (4, 6, NO_ID), (32, 0, NO_ID)])
    reset_shared()
    before = attributes(stage.song)
    result = stage.run("set", "--album", "New", SONG, inject=["fsetxattr:error=EOPNOTSUPP"])
    check(f"{what}, without lists", result, failed(OWNER_LOST))
    check(f"{what}, without lists: attributes", attributes(stage.song), before)


def check_lost_groups(stage):
    """Checks the same for a group that cannot be kept, and that default lists of the folder grant nothing."""
    group_list = [(1, 6, NO_ID), (4, 0, NO_ID), (8, 4, OTHER), (32, 0, NO_ID)]
    for mode, expected in ((0o640, group_list), (0o644, None)):
        what = f"a song {mode:o} of the user and another group"
        stage.reset_owned(USER, OTHER, mode | 0o2000)
        check(what, stage.run("set", "--album", "New", SONG), UPDATED)
        status = os.stat(stage.song)
        check(f"{what}: owner", (status.st_uid, status.st_gid, status.st_mode & 0o7000), (USER, USER, 0))
        check(f"{what}: list", entries(stage.song) if expected else os.listxattr(stage.song), expected or [])
    everything = acl((1, 7, NO_ID), (2, 7, OTHER), (4, 7, NO_ID), (16, 7, NO_ID), (32, 7, NO_ID))
    for owner, group in ((USER, USER), (0, OTHER)):
        what = f"a folder with a default list, a song of {owner}:{group}"
        stage.reset_owned(owner, group, 0o2640)
        os.setxattr(stage.folder, "system.posix_acl_default", everything)
        before = attributes(stage.song)
        check(what, stage.run("set", "--album", "New", SONG, user=owner), UPDATED)
        check(f"{what}: attributes", attributes(stage.song), before)


def check_backups(stage):
    """Checks backups of both kinds, a hard link and a copy with all attributes, and that a later run keeps them."""
    backup = stage.folder / BACKUP
    for inject in ((), ("linkat:error=EPERM",)):
        what = f"a backup {inject or 'by a hard link'}"
        stage.reset()
        os.setxattr(stage.song, "user.note", b"kept")
        os.chmod(stage.song, 0o604)
        os.utime(stage.song, ns=(proof.DATE, proof.DATE))
        before, inode = attributes(stage.song), os.stat(stage.song).st_ino
        check(what, stage.run(*WITH_BACKUP, inject=inject), UPDATED)
        check(f"{what}: file", (backup.read_bytes() == OLD, attributes(backup), os.stat(backup).st_ino == inode),
              (True, before, not inject))
        check(f"{what}: folder", sorted(os.listdir(stage.folder)), [SONG, BACKUP])
        result = stage.run("set", "--album", "Newer", "--backup", SONG)
        check(f"{what}: again", (result, backup.read_bytes() == OLD), (UPDATED, True))
        note = stage.run("set", "--album", "Newest", "--notes", "--backup", SONG)[2]
        check(f"{what}: note about the earlier one", note,
              f"quillmark: note: {SONG}: {BACKUP} already exists and is kept as the backup.\n")

        stage.reset()
        failure = f"{SONG} could not be written: Input/output error."
        rename = "renameat2" if inject and not proof.IS_PLAIN else "renameat"
        result = stage.run(*WITH_BACKUP, inject=[*inject, f"{rename}:error=EIO"])
        check(f"{what}, then a failure", result, failed(failure))
        check(f"{what}, then a failure: folder", (os.listdir(stage.folder), stage.song.read_bytes() == OLD),
              ([SONG], True))


def check_refused_backups(stage):
    """Checks that a file is not changed if it cannot be backed up."""
    backup = stage.folder / BACKUP
    for make in (backup.mkdir, lambda: backup.symlink_to("nothing"), lambda: os.mkfifo(backup), backup.touch):
        stage.reset()
        make()
        failure = f"{SONG} could not be backed up: something else has the name {BACKUP}."
        check("something else in place of a backup",
              (stage.run(*WITH_BACKUP, user=0), stage.song.read_bytes() == OLD), (failed(failure), True))
    stage.reset()
    os.chmod(stage.folder, 0o1777)
    os.chown(stage.folder, 0, 0)
    os.chown(stage.song, OTHER, OTHER)
    os.chmod(stage.song, 0o666)
    check("a backup in a sticky folder", (stage.run(*WITH_BACKUP)[0], os.listdir(stage.folder)), (2, [SONG]))
    stage.reset()
    failure = f"{SONG} could not be backed up: Input/output error."
    result = stage.run(*WITH_BACKUP, inject=["linkat:error=EIO"])
    check("no backup", (result, stage.song.read_bytes() == OLD), (failed(failure), True))


def check_missing_calls(stage):
    """Checks that a run works if the system refuses calls that have a replacement."""
    backup = stage.folder / BACKUP
    for code in ("EXDEV", "EACCES", "EINVAL", "ENOSYS"):
        stage.reset()
        result = stage.run(*WITH_BACKUP, inject=[f"linkat:error={code}", "renameat2:error=EPERM"])
        check(f"a backup after {code}", result, UPDATED)
        check(f"a backup after {code}: its contents", backup.read_bytes() == OLD, True)
    for code in () if proof.is_linux_only("a kernel without faccessat2") else ("ENOSYS", "EPERM"):
        stage.reset()
        result = stage.run("set", "--album", "New", SONG, inject=[f"faccessat2:error={code}"])
        check(f"faccessat2: {code}", result, UPDATED)


def check_backups_meanwhile(stage):
    """Checks changes of the folder while a backup is made."""
    backup = stage.folder / BACKUP

    def replace():
        stage.song.unlink()
        stage.song.symlink_to(stage.kept / "precious.mp3")

    what = "a change between backup and rename"
    stage.reset()
    check(what, stage.run_stopping("linkat", lambda: os.truncate(stage.song, 9), WITH_BACKUP)[0], 2)
    check(f"{what}: folder", (os.listdir(stage.folder), os.stat(stage.song).st_size), ([SONG], 9))
    what = "a link in place of the file that is backed up"
    stage.reset()
    check(what, stage.run_stopping("newfstatat", replace, WITH_BACKUP, user=0)[0], 2)
    check(f"{what}: folder", os.listdir(stage.folder), [SONG])
    stage.check_kept(what)
    what = "a file with the backup's name, made meanwhile"
    stage.reset()
    check(what, stage.run_stopping("newfstatat", lambda: backup.write_text("dear"), WITH_BACKUP,
                                   inject=["linkat:error=EPERM", "renameat2:error=EINVAL"]), UPDATED)
    check(f"{what}: its contents", backup.read_bytes(), b"dear")


def check_single_failures(stage):
    stage.reset()
    failure = f"{SONG} could not be written: the system took nothing of it."
    result = stage.run("set", "--album", "New", SONG, inject=["write:retval=0:when=1"])
    check("a write that accepts no byte", result, failed(failure))
    check("a write that accepts no byte: folder", os.listdir(stage.folder), [SONG])
    stage.reset()
    check("umask 0777", stage.run("set", "--album", "New", SONG, preexec_fn=lambda: os.umask(0o777)), UPDATED)
    stage.reset()
    linked = stage.folder / "linked" / SONG
    linked.parent.mkdir()
    os.link(stage.song, linked)
    shutil.copy(stage.song, stage.folder / "first.mp3")
    what = "a hard link with the same name in the previous folder"
    check(what, stage.run("set", "--album", "New", "first.mp3", f"linked/{SONG}", user=0)[0], 0)
    check(f"{what}: both files", (stage.song.read_bytes() == OLD, linked.read_bytes() == OLD), (True, False))
    failure = f"quillmark: {SONG} was written, but its folder could not be synchronised: Input/output error.\n"
    stage.reset()
    result = stage.run("set", "--album", "New", SONG, inject=["fsync:error=EIO:when=2"])
    check("a folder that cannot be synchronised", result, (2, UPDATED[1], failure))
    if not proof.is_linux_only("a folder that may not be read"):
        stage.reset()
        os.chmod(stage.folder, 0o333)
        check("a folder that may not be read", stage.run("set", "--album", "New", SONG), UPDATED)
        os.chmod(stage.folder, 0o777)


def main():
    if os.geteuid() != 0:
        proof.finish("Skipped: only root can act as two users.")
    program = pathlib.Path(sys.argv[1])
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        os.chmod(folder, 0o777)
        shutil.copy(program, folder / "program")  # where every user can run it
        stage = Stage(folder / "program", folder)
        for part in (check_planted_links, check_swapped_folders, check_meanwhile, check_runs_at_once, check_order,
                     check_readers, check_lost_owners, check_lost_groups, check_backups, check_refused_backups,
                     check_missing_calls, check_backups_meanwhile, check_single_failures):
            part(stage)
    proof.finish("Other users and programs in the folder cost no file a byte, and no change is lost.")


if __name__ == "__main__":
    main()
