"""The examples in the README print what they show, run from top to bottom in one copy of the sample album.

Usage: readme.py PROGRAM
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

import proof
from proof import ENVIRONMENT, ROOT, check

SHOWN_FOLDER = "/music"


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    usage = subprocess.run([program, "help"], check=True, stdout=subprocess.PIPE, text=True).stdout
    blocks = re.findall(r"^```\n(\$ .*?)^```$", (ROOT / "README.md").read_text(), re.MULTILINE | re.DOTALL)
    examples = re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", "".join(blocks), re.MULTILINE)
    commands = set(re.findall(r"^  quillmark (\w+)", usage, re.MULTILINE))
    readme = (ROOT / "README.md").read_text()
    for command in ("read", "copy", "paste", "apply", "set"):
        words = subprocess.run([program, command, "--help"], check=True, stdout=subprocess.PIPE, text=True).stdout
        options = re.findall(r"^  (--[a-z0-9-]+)", words, re.MULTILINE)
        check(f"options of {command} that are not told", [option for option in options if option not in readme], [])
    check("commands without an example", commands - set(re.findall(r"quillmark (\w+)", str(examples))), set())
    with tempfile.TemporaryDirectory() as scratch:
        album = pathlib.Path(scratch, "album").resolve()
        shutil.copytree(ROOT / "samples", album)
        environment = {**ENVIRONMENT, "HOME": scratch, "PATH": f"{program.parent}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
        for command, shown in examples:
            done = subprocess.run(["bash", "-c", command], cwd=album, env=environment, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            # In JSON, a slash stands behind a backslash.
            printed = done.stdout.replace(str(album).replace("/", "\\/"), SHOWN_FOLDER.replace("/", "\\/"))
            check(command, printed.rstrip("\n"), shown.rstrip("\n"))


if __name__ == "__main__":
    main()
    proof.finish("The README shows what its examples print.")
