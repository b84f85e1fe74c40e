#!/usr/bin/env python3
"""Stops runs at chosen system calls, changes the folder as other users or programs could, and checks the results.

Usage: attacks.py PROGRAM [SYSTEM]
"""
import os
import re
import shutil
import signal
import struct
import subprocess
import time

import proof
from proof import ENVIRONMENT, acl, attributes, check, quillmark, run
from tagbytes import f3, tag, text

USER, OTHER = 64501, 64502
SONG, BACKUP, HIDDEN = "song.mp3", "song.mp3.orig", proof.LEFT_OVER
AUDIO = b"\xff\xfb\x90\x64" + bytes(range(256)) * 400
OLD = tag(3, f3("TALB", text("Old")), f3("PRIV", b"kept\0" * 9)) + AUDIO
SET = ("set", "--album", "New", SONG)
WITH_BACKUP = (*SET, "--backup")
UPDATED = (0, f"updated   {SONG}\n\nchanged 1, unchanged 0, failed 0\n", "")


def failed(reason):
    return 2, "\nchanged 0, unchanged 0, failed 1\n", f"quillmark: failed    {SONG}: {SONG} {reason}.\n"


CHANGED, MOVED = failed("was changed by another program meanwhile"), failed("was moved or deleted meanwhile")
ANOTHER = failed("could not be written: another program has replaced the hidden folder for its new version")
OWNER_LOST = failed("could not be written: its owner cannot be kept, nor its owner's access")


class Stage:
    """A folder that all users may write to, with a song that belongs to the user."""

    def __init__(self, folder):
        self.folder, self.log = folder / "shared", folder / "log"
        self.song, self.backup, self.precious = self.folder / SONG, self.folder / BACKUP, folder / "kept/precious.mp3"
        self.reset()
        self.new = None
        check("an undisturbed run", self.run(*SET), UPDATED)
        self.new = self.song.read_bytes()

    def reset(self, owner=USER, group=USER, mode=0o644):
        for place in (self.folder, self.precious.parent):
            shutil.rmtree(place, ignore_errors=True)
            place.mkdir()
            os.chown(place, USER, USER)
        os.chmod(self.folder, 0o777)
        for path, content in ((self.song, OLD), (self.precious, b"ID3 precious")):
            path.write_bytes(content)
            os.chown(path, owner, group)
        os.chmod(self.song, mode)

    def hidden(self):
        return next(path for path in self.folder.iterdir() if path.name.startswith(HIDDEN))

    def files(self):
        """Returns the contents of the files in and below the folder by their names, except for folders moved away."""
        def content(path):
            if path.is_symlink() or not path.is_file():
                return os.readlink(path) if path.is_symlink() else "no file"
            data = path.read_bytes()
            return {OLD: "old", self.new: "new"}.get(data, data)
        names = {path: re.sub(r"(\.quillmark-)\w+", r"\1", str(path.relative_to(self.folder)))
                 for path in self.folder.rglob("*")}
        return {name: content(path) for path, name in names.items() if not name.startswith("away")}

    def run(self, *words, user=USER, groups="--clear-groups", inject=(), at=None, act=None, which=":when=1", **options):
        """Runs the program and calls `act` after its first call of `at`, or after each one that `which` selects.

        Only reads of the song count, which are between the first look at it and the lock. Only lookups of the backup
        count, which are just before it is made. Returns (status, standard output, standard error).
        """
        self.log.unlink(missing_ok=True)
        inject = [*inject, f"{at}:signal=SIGSTOP{which}"] if at else inject
        counted = {"pread64": ["-P", self.song], "newfstatat": ["-P", BACKUP]}.get(at, [])
        traced = ["-e", "trace=" + ",".join(one.split(":")[0] for one in inject)] if at else []
        process = subprocess.Popen(
            ["setpriv", f"--reuid={user}", f"--regid={user}", groups, "strace", "-f", "-qq", "-y", "-o", self.log, *counted,
             *traced, *(part for one in inject for part in ("-e", f"inject={one}")), proof.PROGRAM, *words],
            cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=ENVIRONMENT, text=True, **options)
        seen = 0
        while at and process.poll() is None:
            log = self.log.read_text(errors="replace") if self.log.exists() else ""
            stops = re.findall(r"^(\d+) +--- stopped by SIGSTOP", log, re.M)
            if len(stops) > seen:
                seen = len(stops)
                act()
                os.kill(int(stops[-1]), signal.SIGCONT)
            time.sleep(0.002)
        check(f"stopped at {at}", seen > 0, at is not None)
        output, errors = process.communicate()
        return process.returncode, output, errors

    def trial(self, what, expected, files, words=SET, **how):
        """Checks the result of a run (or only its status), the files after it, and that the precious one is the same."""
        result = self.run(*words, **how)
        check(what, result if isinstance(expected, tuple) else result[0], expected)
        check(f"{what}: files", self.files(), files)
        check(f"{what}: the user's other files", self.precious.read_bytes(), b"ID3 precious")

    def other(self, command, *words):
        """Runs a shell command in the folder as the other user, with the words as $1 and so on."""
        subprocess.run(["setpriv", f"--reuid={OTHER}", f"--regid={OTHER}", "--clear-groups", "sh", "-ec", command, "sh",
                        *map(str, words)], cwd=self.folder, check=True)


def check_planted_links(stage):
    swap = f'mv {SONG} taken; ln -s "$1" {SONG}'
    for call in ("mkdirat", proof.COPYING, "fsync"):
        stage.reset()
        stage.trial(f"the song swapped for a link after {call}", CHANGED, {SONG: str(stage.precious), "taken": "old"},
                    at=call, act=lambda: stage.other(swap, stage.precious))
    # If the link is planted between the first look and the lock of root's run, no file with root's secret may appear.
    stage.reset()
    secret = stage.precious.with_name("secret.mp3")
    secret.write_bytes(OLD + b"secret")
    os.chmod(secret, 0o600)
    stage.run(*SET, user=0, at="pread64", act=lambda: stage.other(swap, secret))
    check("a link to root's file in place of the song", (stage.files(), attributes(secret)["mode"]),
          ({SONG: str(secret), "taken": "old"}, "0o100600"))


def check_swapped_folders(stage):
    """Checks that another folder in the place of the hidden one is detected and left unchanged."""
    def swap():
        hidden = stage.hidden()
        hidden.rename(stage.folder / "away")
        return hidden

    def for_others():
        stage.other('mkdir -m 777 "$1"; ln -s "$2" "$1/new"', swap(), stage.precious)

    def for_users(mode=0o700):
        hidden = swap()
        hidden.mkdir()
        (hidden / "letter").write_text("dear")
        os.chown(hidden, USER, USER)
        os.chmod(hidden, mode)

    letter = {HIDDEN: "no file", HIDDEN + "/letter": b"dear"}
    for what, call, act, expected, files in (
            ("of another user", "mkdirat", for_others, ANOTHER, {HIDDEN: "no file", HIDDEN + "/new": str(stage.precious)}),
            ("of the user", "mkdirat", for_users, ANOTHER, letter),
            ("open to all", "mkdirat", lambda: for_users(0o777), ANOTHER, letter),
            ("before the tidying", "renameat", for_users, UPDATED, letter)):
        stage.reset()
        stage.trial(f"a folder {what} in place of the hidden one", expected,
                    {SONG: "new" if expected == UPDATED else "old", **files}, at=call, act=act)


def check_meanwhile(stage):
    """Checks that changes of other programs are neither overwritten nor undone."""
    def append():
        with open(stage.song, "ab") as song:
            song.write(b"more")

    def replace():
        (stage.folder / "its").write_bytes(tag(3, f3("TIT2", text("Its"))) + AUDIO + b"its")
        os.rename(stage.folder / "its", stage.song)

    for act, title, end in ((append, "", b"more"), (replace, "Its", b"its")):
        for call in ("pread64", "flock", proof.COPYING, "fsync"):
            stage.reset()
            check(f"{act.__name__} after {call}", stage.run(*SET, at=call, act=act, user=0), UPDATED)
            song = stage.song.read_bytes()
            check(f"{act.__name__} after {call}: both changes are there",
                  (song.endswith(AUDIO + end), *(word.encode("utf-16-le") in song for word in ("New", title))), (True,) * 3)
    stage.reset()
    check("a change at each attempt", stage.run(*SET, at="utimensat", act=append, which=""), CHANGED)
    check("a change at each attempt: the song", stage.song.read_bytes().removeprefix(OLD).replace(b"more", b""), b"")
    for call in ("flock", proof.COPYING, "fsync"):
        for act, files in ((lambda: stage.song.rename(stage.folder / "moved"), {"moved": "old"}), (stage.song.unlink, {})):
            stage.reset()
            stage.trial(f"moved to {files} after {call}", MOVED, files, at=call, act=act)


def check_runs_at_once(stage):
    options = ("--album", "--artist", "--composer", "--genre", "--comment", "--lyrics", "--copyright", "--publisher")
    for number in range(20):
        stage.reset()
        runs = [subprocess.Popen([proof.PROGRAM, "set", option, "New", SONG], cwd=stage.folder, env=ENVIRONMENT,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True) for option in options]
        outputs = [process.communicate()[0] for process in runs]
        read = quillmark(["read", SONG], stage.folder)[1]
        check(f"eight runs, round {number}", (outputs, read.count("New")), ([UPDATED[1]] * 8, 8))


def check_order(stage):
    """Checks the order of the calls that bring a file to the disk, and the number of calls and of bytes read."""
    stage.reset()
    os.setxattr(stage.song, "user.note", b"kept")
    check("a run whose calls are traced", stage.run(*SET, user=0), UPDATED)
    calls = [re.sub(r"^\d+ +", "", line) for line in stage.log.read_text().splitlines()]
    writing = r"(write|copy_file_range|fchmod|fsetxattr|utimensat|fremovexattr|fchown)"
    places = [max((n for n, line in enumerate(calls) if re.match(pattern, line)), default=-1) for pattern in (
        writing + r"\(.*/\.quillmark-", r"fsync\(.*/\.quillmark-\w+/new>\) += 0", "renameat",
        r"fsync\(\d+<[^>]*/shared>\) += 0")]
    check("written, synchronised, renamed, folder synchronised", (sorted(places), places[0] >= 0), (places, True))
    opened = [line for line in calls if line.startswith("openat(") and f'/{SONG}"' in line]
    check("the song is opened once", len(opened), 1)
    read = [int(line.split("= ")[-1]) for line in calls if re.match(rf"(pread64|read)\(\d+<[^>]*/{SONG}>", line)]
    check("the bytes of the tag are read once", sum(read), len(OLD) - (0 if proof.IS_PLAIN else len(AUDIO)))
    first, last = calls.index(opened[0]), next(n for n, line in enumerate(calls) if "updated" in line)
    # Leave out calls of the sanitizers, which concern no file of the run.
    count = sum(str(stage.folder) in line and "/proc/" not in line for line in calls[first:last])
    most = 35 if proof.IS_PLAIN else 30
    check(f"{count} calls for a changed file are at most {most}", 20 < count <= most, True)


def check_owners(stage):
    """Checks that entries of the access-control list keep the access of owners and groups that a file loses."""
    mine, its_owner = (1, 6), (2, 6, OTHER)
    shared = acl((1, 6), (2, 6, USER), (4, 6), (16, 6), (32, 0))
    # The owner, group and mode of the song and its list; how it is written, and the owner, group and list afterwards.
    for what, before, shared_list, how, ids, entries in (
            ("another user's", (OTHER, OTHER, 0o644), shared, {}, (USER, USER),
             acl(mine, its_owner, (4, 0), (8, 6, OTHER), (16, 6), (32, 0))),
            ("another user's, whose group the user is in", (OTHER, OTHER, 0o644), shared,
             {"groups": f"--groups={OTHER}"}, (USER, OTHER), acl(mine, its_owner, (4, 6), (16, 6), (32, 0))),
            ("another user's, without lists", (OTHER, OTHER, 0o644), shared,
             {"inject": ["fsetxattr:error=EOPNOTSUPP"]}, None, None),
            ("another group's", (USER, OTHER, 0o2640), None, {}, (USER, USER),
             acl(mine, (4, 0), (8, 4, OTHER), (16, 4), (32, 0))),
            ("another group's, readable by all", (USER, OTHER, 0o2644), None, {}, (USER, USER), None),
            ("another group's, closed to it", (USER, OTHER, 0o604), None, {}, (USER, USER),
             acl(mine, (4, 0), (8, 0, OTHER), (16, 1), (32, 4)))):
        stage.reset(*before)
        if shared_list:
            os.setxattr(stage.song, "system.posix_acl_access", shared_list)
        old = attributes(stage.song)
        check(f"a song that is {what}", stage.run(*SET, **how), UPDATED if ids else OWNER_LOST)
        new = attributes(stage.song)
        check(f"a song that is {what}: attributes", (new["owner"], new.get("system.posix_acl_access"), new["mode"][-4]),
              (ids, entries, "0") if ids else (old["owner"], shared, old["mode"][-4]))
    for owner, group in ((USER, USER), (0, OTHER)):
        stage.reset(owner, group, 0o2640)
        os.setxattr(stage.folder, "system.posix_acl_default", acl((1, 7), (2, 7, OTHER), (4, 7), (16, 7), (32, 7)))
        before = attributes(stage.song)
        check(f"a folder with a default list, a song of {owner}:{group}",
              (stage.run(*SET, user=owner), attributes(stage.song)), (UPDATED, before))
    stage.reset(mode=0o666)
    mapped = ["unshare", "-U", "--map-root-user"]
    if proof.is_linux_only("user namespaces") or run([*mapped, "true"], stage.folder)[0]:
        print("skipped: user namespaces, which this system refuses, as Linux does in a chroot")
    else:
        check("an ID without a counterpart in the user namespace",
              run([*mapped, proof.PROGRAM, *SET], stage.folder), OWNER_LOST)


def check_backups(stage):
    """Checks backups of both kinds, a hard link and a copy with all attributes, and that a later run keeps them."""
    for inject in ((), ("linkat:error=EPERM",)):
        what = f"a backup {inject or 'by a hard link'}"
        stage.reset(mode=0o604)
        os.setxattr(stage.song, "user.note", b"kept")
        os.utime(stage.song, ns=(proof.DATE, proof.DATE))
        before, inode = attributes(stage.song), os.stat(stage.song).st_ino
        stage.trial(what, UPDATED, {SONG: "new", BACKUP: "old"}, WITH_BACKUP, inject=inject)
        check(f"{what}: attributes", (attributes(stage.backup), os.stat(stage.backup).st_ino == inode),
              (before, not inject))
        note = stage.run("set", "--album", "Newest", "--notes", "--backup", SONG)[2]
        check(f"{what}: again", (note, stage.backup.read_bytes() == OLD), (
            f"quillmark: note: {SONG}: {BACKUP} already exists and is kept as the backup.\n", True))
        stage.reset()
        rename = "renameat2" if inject and not proof.IS_PLAIN else "renameat"
        stage.trial(f"{what}, then a failure", failed("could not be written: Input/output error"), {SONG: "old"},
                    WITH_BACKUP, inject=[*inject, f"{rename}:error=EIO"])


def check_backups_meanwhile(stage):
    """Checks what else can be in the place of a backup, before or while it is made; then nothing is changed."""
    taken = failed(f"could not be backed up: something else has the name {BACKUP}")
    for make, content in ((stage.backup.mkdir, "no file"), (lambda: stage.backup.symlink_to("nothing"), "nothing"),
                          (lambda: os.mkfifo(stage.backup), "no file"), (stage.backup.touch, b"")):
        stage.reset()
        make()
        stage.trial("something else in place of a backup", taken, {SONG: "old", BACKUP: content}, WITH_BACKUP, user=0)

    def replace():
        stage.song.unlink()
        stage.song.symlink_to(stage.precious)

    for what, expected, files, how in (
            ("a change between backup and rename", 2, {SONG: OLD[:9]},
             {"at": "linkat", "act": lambda: os.truncate(stage.song, 9)}),
            ("a link in place of the file that is backed up", 2, {SONG: str(stage.precious)},
             {"at": "newfstatat", "act": replace, "user": 0}),
            ("a file with the backup's name, made meanwhile", UPDATED, {SONG: "new", BACKUP: b"dear"},
             {"at": "newfstatat", "act": lambda: stage.backup.write_text("dear"),
              "inject": ["linkat:error=EPERM", "renameat2:error=EINVAL"]})):
        stage.reset()
        stage.trial(what, expected, files, WITH_BACKUP, **how)


def check_calls(stage):
    """Checks calls that have a replacement if the system refuses them, and those that have none."""
    backed_up = {SONG: "new", BACKUP: "old"}
    rows = [(WITH_BACKUP, UPDATED, backed_up, (f"linkat:error={code}", "renameat2:error=EPERM"))
            for code in ("EXDEV", "EACCES", "EINVAL", "ENOSYS")]
    if not proof.is_linux_only("a kernel without faccessat2"):
        rows += [(SET, UPDATED, {SONG: "new"}, (f"faccessat2:error={code}",)) for code in ("ENOSYS", "EPERM")]
    lost = f"quillmark: {SONG} was written, but its folder could not be synchronised: Input/output error.\n"
    rows += [(WITH_BACKUP, failed("could not be backed up: Input/output error"), {SONG: "old"}, ("linkat:error=EIO",)),
             (SET, failed("could not be written: the system took nothing of it"), {SONG: "old"}, ("write:retval=0:when=1",)),
             (SET, (2, UPDATED[1], lost), {SONG: "new"}, ("fsync:error=EIO:when=2",))]
    for words, expected, files, inject in rows:
        stage.reset()
        stage.trial(f"{words} {inject}", expected, files, words, inject=inject)


def check_rights(stage):
    """Checks folders and files that the user may not write to or read, and a hard link in another folder."""
    denied, kept = (failed(f"could not be written: {reason}") for reason in ("Permission denied", "Operation not permitted"))
    for what, owner, mode, folder_owner, folder_mode, words, expected in (
            ("a folder without write permission", USER, 0o666, OTHER, 0o755, SET, denied),
            ("a write-protected file", USER, 0o444, USER, 0o777, SET, failed("could not be written: it is write-protected")),
            ("a sticky folder", OTHER, 0o666, 0, 0o1777, SET, kept), ("its backup", OTHER, 0o666, 0, 0o1777, WITH_BACKUP, 2),
            ("a folder that may not be read", USER, 0o644, USER, 0o333, SET, UPDATED)):
        if expected != UPDATED or not proof.is_linux_only(what):
            stage.reset(owner, owner, mode)
            os.chown(stage.folder, folder_owner, folder_owner)
            os.chmod(stage.folder, folder_mode)
            stage.trial(what, expected, {SONG: "new" if expected == UPDATED else "old"}, words)
    stage.reset()
    stage.trial("umask 0777", UPDATED, {SONG: "new"}, preexec_fn=lambda: os.umask(0o777))
    stage.reset()
    linked = stage.folder / "linked" / SONG
    linked.parent.mkdir()
    os.link(stage.song, linked)
    shutil.copy(stage.song, stage.folder / "first.mp3")
    stage.trial("a hard link with the same name in the previous folder", 0,
                {SONG: "old", "first.mp3": "new", "linked": "no file", f"linked/{SONG}": "new"},
                ("set", "--album", "New", "first.mp3", f"linked/{SONG}"), user=0)


def check_all(folder):
    os.chmod(folder, 0o777)
    proof.PROGRAM = shutil.copy(proof.PROGRAM, folder / "program")  # where every user can run it
    stage = Stage(folder)
    for part in (check_planted_links, check_swapped_folders, check_meanwhile, check_runs_at_once, check_order,
                 check_owners, check_backups, check_backups_meanwhile, check_calls, check_rights):
        part(stage)


if os.geteuid() != 0:
    proof.finish("Skipped: only root can act as two users.")
proof.main("Other users and programs in the folder cost no file a byte, and no change is lost.", check_all)
