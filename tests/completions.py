"""Checks that the manual and the completions of bash, zsh and fish have every command, option and field of the program.

Usage: completions.py PROGRAM
"""
import os
import pathlib
import pty
import re
import shlex
import subprocess
import sys
import tempfile
import threading
import time

import proof
from proof import ROOT, check

COMPLETIONS = ROOT / "completions"
# Makes an interactive zsh write to a file the words that it would offer for each line typed.
ZSH = """fpath=({completions} $fpath); autoload -Uz compinit; compinit -D -u
compadd() {{ if [[ " $* " != *' '-[OAD]' '* ]]; then
local -a hits; builtin compadd -A hits "$@"; print -rl -- $hits >>{out}; fi
builtin compadd "$@" }}
capture() {{ _main_complete; compstate[list]= compstate[insert]=; print END >>{out} }}
zle -C capture list-choices capture; bindkey '^I' capture; PROMPT=; print END >>{out}
"""


def printed(*words, **options):
    options = {"check": True, "stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "text": True, **options}
    return subprocess.run(words, **options).stdout


def bash(line, folder):
    words = line.split(" ")
    script = (f"source {COMPLETIONS}/quillmark.bash; compopt() {{ :; }}\n"
              f"COMP_WORDS=({' '.join(map(shlex.quote, words))})\n"
              f"COMP_CWORD={len(words) - 1}; _quillmark; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
    return printed("bash", "--norc", "-c", script, cwd=folder).split("\n")


def fish(line, folder):
    script = f"source {COMPLETIONS}/quillmark.fish; complete -C {shlex.quote(line)}"
    return [offer.split("\t")[0] for offer in printed("fish", "-N", "-c", script, cwd=folder).split("\n")]


class Zsh:
    """An interactive zsh in a pseudo-terminal; a call returns the offers for a line."""

    def __init__(self, folder, out):
        self.out = out
        pid, self.terminal = pty.fork()
        if pid == 0:
            os.chdir(folder)
            os.execvp("zsh", ["zsh", "-f", "-i"])
        threading.Thread(target=self.drain, daemon=True).start()
        self.typed(ZSH.format(completions=COMPLETIONS, out=out))

    def drain(self):
        while os.read(self.terminal, 4096):
            pass

    def typed(self, keys):
        """Types the keys and returns the words offered until zsh is ready again, at most 30 seconds later."""
        self.out.write_text("")
        os.write(self.terminal, keys.encode())
        deadline = time.monotonic() + 30
        while not self.out.read_text().endswith("END\n") and time.monotonic() < deadline:
            time.sleep(0.01)
        return self.out.read_text().split("\n")[:-2]

    def __call__(self, line, _):
        # The offers do not repeat the names before the last comma.
        list_so_far = re.search(r"[a-z,-]*,|$", line)[0]
        offers = [list_so_far + offer.replace("\\", "") for offer in self.typed(line + "\t")]
        os.write(self.terminal, b"\x15")
        return offers


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    fields = re.findall(r"^  [* ] (\S+)", printed(program, "fields"), re.MULTILINE)[:-1]
    commands = re.findall(r"^  quillmark (\w+)", printed(program, "help").split("\n\n")[1], re.MULTILINE)
    options = {}
    for command in commands:
        if command != "fields":
            text = printed(program, command, "--help")
            check(f"help on {command}: long lines", [line for line in text.split("\n") if len(line) > 80], [])
            options[command] = re.findall(r"^  (--[a-z]\S*)", text, re.MULTILINE)
    options["set"] += [f"--{field}" for field in fields]

    manual = (ROOT / "man/quillmark.1").read_text()
    synopsis = manual[manual.index(".Sh SYNOPSIS"):manual.index(".Sh DESCRIPTION")]
    described = {f"--{name}" for name in re.findall(r"^\.It Fl -(\S+)", manual, re.MULTILINE)}
    existing = set()
    for command in commands:
        check(f"manual: an item for {command}", f"\n.It Cm {command}\n" in manual, True)
        calls = [call for call in synopsis.split("\n.Nm\n") if call.split("\n")[0] == f".Cm {command}"]
        check(f"manual: one synopsis of {command}", len(calls), 1)
        known = {f"--{name}" for name in re.findall(r"Fl -(\S+)", calls[0])} | {"--help"}
        own = set(options.get(command, ["--help"])) - {f"--{field}" for field in fields}
        check(f"manual: options of {command}", known, own)
        existing |= own
    check("manual: descriptions of options", described, existing)
    check("manual: fields", re.findall(r"^\.It Cm (\S+)(?: No \*)?$", manual, re.MULTILINE)[-len(fields):], fields)
    made = subprocess.run([ROOT / "scripts/options", "--check", program], stderr=subprocess.PIPE, text=True)
    check("lists made by scripts/options", made.stderr, "")
    check("manual: lint", printed("mandoc", "-T", "lint", ROOT / "man/quillmark.1", check=False), "")

    proof.require_terminals()
    with tempfile.TemporaryDirectory() as scratch:
        os.environ["HOME"] = scratch  # the shells write files of their own there
        folder = pathlib.Path(scratch, "album")
        folder.mkdir()
        for name in ("a b.mp3", "B.MP3", "cover.jpg", "album.json"):
            (folder / name).touch()
        for shell in (bash, fish, Zsh(folder, pathlib.Path(scratch, "out"))):
            name = getattr(shell, "__name__", "zsh")

            def offers(line, *expected, only=True):
                offered = {word for word in shell(line, folder) if word}
                check(f"{name}: {line}", offered if only else offered & set(expected), set(expected))

            offers("quillmark ", *commands, "help")
            offers("quillmark fields ")
            for command, names in options.items():
                offers(f"quillmark {command} --", *names)
                offers(f"quillmark {command} --notes ", "a b.mp3", "B.MP3", only=False)
            for option in ("read --fields", "paste --fields", "apply --from x --fields", "set --clear"):
                offers(f"quillmark {option} ", *fields)
                offers(f"quillmark {option} artist,ar", "artist,artwork")
            offers("quillmark set --title ")
            for option in ("set --artwork", "read --save-artwork"):
                offers(f"quillmark {option} ", "cover.jpg", only=False)
            offers("quillmark set --from-json ", "album.json", only=False)
            offers("quillmark apply --from ", "a b.mp3", "B.MP3", only=False)


if __name__ == "__main__":
    main()
    proof.finish("The manual and the completions have every command, option and field.")
