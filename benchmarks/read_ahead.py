#!/usr/bin/env python3
"""Prints how long the program reads files that are not in memory: as one run, in turn, and as eight processes.

Usage: read_ahead.py PROGRAM FOLDER [RUNS]

FOLDER has the MP3 files, about 2,000 of them. Needs root, to empty the page cache.
"""
import pathlib
import resource
import statistics
import subprocess
import sys
import time

PROCESSES = 8
FEW = 20  # descriptors, too few for reading ahead


def few_descriptors():
    resource.setrlimit(resource.RLIMIT_NOFILE, (FEW, FEW))


def main():
    program, files = sys.argv[1], sorted(map(str, pathlib.Path(sys.argv[2]).rglob("*.mp3")))
    kinds = {"reading ahead": ([files], None), "in turn": ([files], few_descriptors),
             "eight processes": ([files[part::PROCESSES] for part in range(PROCESSES)], few_descriptors)}
    times = {kind: [] for kind in kinds}
    for _ in range(int(sys.argv[3]) if len(sys.argv) > 3 else 7):
        for kind, (parts, prepare) in kinds.items():
            pathlib.Path("/proc/sys/vm/drop_caches").write_text("3")
            subprocess.run([program, "fields"], stdout=subprocess.DEVNULL, check=True)
            begun = time.monotonic()
            runs = [subprocess.Popen([program, "read", *part], stdout=subprocess.DEVNULL, preexec_fn=prepare)
                    for part in parts]
            for run in runs:
                run.wait()
            times[kind].append(time.monotonic() - begun)
    for kind, seconds in times.items():
        print(f"{kind:16} median {statistics.median(seconds):.3f} s, {min(seconds):.3f} to {max(seconds):.3f} s")


if __name__ == "__main__":
    main()
