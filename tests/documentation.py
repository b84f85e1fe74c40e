"""Checks that the manual, the README and the completions have every command, option and field of the program.

The examples in the documents print the output that is shown with them: those of the README run from top to bottom in one
copy of the sample album, each recipe in its own copy.

Usage: documentation.py PROGRAM
"""
import os
import pathlib
import pty
import re
import shlex
import shutil
import subprocess
import tempfile
import threading
import time

import proof
from proof import ENVIRONMENT, PROGRAM, ROOT, check

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
    options = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.STDOUT, "text": True, **options}
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


def start_zsh(folder, out):
    """Starts an interactive zsh in a pseudo-terminal. Returns a function that returns the offers for a line."""
    pid, terminal = pty.fork()
    if pid == 0:
        os.chdir(folder)
        os.execvp("zsh", ["zsh", "-f", "-i"])

    def drain():
        while os.read(terminal, 4096):
            pass

    def typed(keys):
        """Types the keys and returns the words offered until zsh is ready again, at most 30 seconds later."""
        out.write_text("")
        os.write(terminal, keys.encode())
        deadline = time.monotonic() + 30
        while not out.read_text().endswith("END\n") and time.monotonic() < deadline:
            time.sleep(0.01)
        return out.read_text().split("\n")[:-2]

    def zsh(line, _):
        # The offers do not repeat the names before the last comma.
        list_so_far = re.search(r"[a-z,-]*,|$", line)[0]
        offers = [list_so_far + offer.replace("\\", "") for offer in typed(line + "\t")]
        os.write(terminal, b"\x15")
        return offers

    threading.Thread(target=drain, daemon=True).start()
    typed(ZSH.format(completions=COMPLETIONS, out=out))
    return zsh


def check_completions(scratch, fields, options):
    folder = scratch / "album"
    folder.mkdir()
    for name in ("a b.mp3", "B.MP3", "cover.jpg", "album.json"):
        (folder / name).touch()
    # Lines, the offers for them, and whether there are no others.
    rows = [("", [*options, "fields", "help"], True), ("fields ", [], True), ("set --title ", [], True),
            ("set --artwork ", ["cover.jpg"], False), ("read --save-artwork ", ["cover.jpg"], False),
            ("set --from-json ", ["album.json"], False), ("apply --from ", ["a b.mp3", "B.MP3"], False)]
    for command, names in options.items():
        rows += [(f"{command} --", names, True), (f"{command} --notes ", ["a b.mp3", "B.MP3"], False)]
    for option in ("read --fields", "paste --fields", "apply --from x --fields", "set --clear"):
        rows += [(f"{option} ", fields, True), (f"{option} artist,ar", ["artist,artwork"], True)]
    os.environ["HOME"] = str(scratch)  # the shells write files of their own there
    for shell in (bash, fish, start_zsh(folder, scratch / "out")):
        for line, expected, is_all in rows:
            offered = {word for word in shell("quillmark " + line, folder) if word}
            check(f"{shell.__name__}: {line}", offered if is_all else offered & set(expected), set(expected))


def run_examples(text):
    """Runs the commands of a text in a copy of the album and returns them."""
    blocks = re.findall(r"^```\n(\$ .*?)^```$", text, re.MULTILINE | re.DOTALL)
    examples = re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", "".join(blocks), re.MULTILINE)
    with tempfile.TemporaryDirectory() as scratch:
        album = pathlib.Path(scratch, "album").resolve()
        shutil.copytree(ROOT / "samples", album)
        path = f"{PROGRAM.parent}:{os.environ['PATH']}"
        environment = {**ENVIRONMENT, "HOME": scratch, "PATH": path, "LC_ALL": "C.UTF-8"}
        for command, shown in examples:
            output = printed("bash", "-c", command, cwd=album, env=environment)
            # JSON has a backslash before each slash.
            output = output.replace(str(album).replace("/", "\\/"), "\\/music")
            check(command, output.rstrip("\n"), shown.rstrip("\n"))
    return examples


def check_documents(folder):
    fields = re.findall(r"^  [* ] (\S+)", printed(PROGRAM, "fields"), re.MULTILINE)[:-1]
    commands = re.findall(r"^  quillmark (\w+)", printed(PROGRAM, "help").split("\n\n")[1], re.MULTILINE)
    helps = {command: printed(PROGRAM, command, "--help") for command in commands if command != "fields"}
    check("long lines of help", [line for text in helps.values() for line in text.split("\n") if len(line) > 80], [])
    options = {command: re.findall(r"^  (--[a-z]\S*)", text, re.MULTILINE) for command, text in helps.items()}

    examples = run_examples((ROOT / "README.md").read_text())
    check("commands without an example", set(commands) - set(re.findall(r"quillmark (\w+)", str(examples))), set())
    for recipe in re.split(r"^## ", (ROOT / "docs/recipes.md").read_text(), flags=re.MULTILINE)[1:]:
        check(f"examples of {recipe[:20]}", run_examples(recipe) != [], True)
    # These lists have every option of every command, and are in the synopsis of the manual, too.
    check("lists made by scripts/options", printed(ROOT / "scripts/options", "--check", PROGRAM), "")
    manual = (ROOT / "man/quillmark.1").read_text()
    described = {f"--{name}" for name in re.findall(r"^\.It Fl -(\S+)", manual, re.MULTILINE)}
    check("manual: descriptions of options", described, set().union(*options.values()))
    items = re.findall(r"^\.It Cm (\S+)(?: No \*)?$", manual, re.MULTILINE)
    check("manual: commands and fields", (set(commands) - set(items), items[-len(fields):]), (set(), fields))
    check("manual: lint", printed("mandoc", "-T", "lint", ROOT / "man/quillmark.1"), "")

    proof.require_terminals()
    options["set"] += [f"--{field}" for field in fields]
    check_completions(folder, fields, options)


proof.main("The manual, the completions and the examples in the documents agree with the program.", check_documents)
