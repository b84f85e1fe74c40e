"""Checks that the examples in the documents print the output that is shown with them.

Those of the README run from top to bottom in one copy of the sample album, each recipe in its own copy.

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


def run_examples(text, program):
    """Runs the commands of a text in a copy of the album and returns them."""
    blocks = re.findall(r"^```\n(\$ .*?)^```$", text, re.MULTILINE | re.DOTALL)
    examples = re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", "".join(blocks), re.MULTILINE)
    with tempfile.TemporaryDirectory() as scratch:
        album = pathlib.Path(scratch, "album").resolve()
        shutil.copytree(ROOT / "samples", album)
        path = f"{program.parent}:{os.environ['PATH']}"
        environment = {**ENVIRONMENT, "HOME": scratch, "PATH": path, "LC_ALL": "C.UTF-8"}
        for command, shown in examples:
            done = subprocess.run(["bash", "-c", command], cwd=album, env=environment, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            # JSON has a backslash before each slash.
            printed = done.stdout.replace(str(album).replace("/", "\\/"), SHOWN_FOLDER.replace("/", "\\/"))
            check(command, printed.rstrip("\n"), shown.rstrip("\n"))
    return examples


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    usage = subprocess.run([program, "help"], check=True, stdout=subprocess.PIPE, text=True).stdout
    commands = set(re.findall(r"^  quillmark (\w+)", usage, re.MULTILINE))
    examples = run_examples((ROOT / "README.md").read_text(), program)
    check("commands without an example", commands - set(re.findall(r"quillmark (\w+)", str(examples))), set())
    for recipe in re.split(r"^## ", (ROOT / "docs/recipes.md").read_text(), flags=re.MULTILINE)[1:]:
        if not run_examples(recipe, program):
            check("a recipe without an example", recipe.split("\n")[0], "")


if __name__ == "__main__":
    main()
    proof.finish("The examples in the documents print the output that is shown.")
