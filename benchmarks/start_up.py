#!/usr/bin/env python3
"""Starts the program again and again and tells how long it takes until a window is painted and until
the map page is ready, and what memory its processes take then.

    start_up.py PROGRAM [--runs N] [--limits] [--folder FOLDER]

PROGRAM is the program of a program folder or the launcher of the package. It needs a display (see
tools/on_virtual_display.sh). One start goes before the counted ones, so that these are warm. With
--limits a median above 0.4 s or 0.8 s ends with 1. FOLDER is the program's home for the time, where
another user than the present one runs it."""

import argparse
import os
import re
import signal
import statistics
import subprocess
import sys
import tempfile
import time

WINDOW_LIMIT = 0.4
PAGE_LIMIT = 0.8
LONGEST_START = 60
STEPS = {"painted splash": "splash painted", "painted frame": "frame painted",
         "page ": "page ready"}


def children_of(root):
    """The process and all below it, whatever session they are in."""
    parents = {}
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{entry}/stat", encoding="utf-8", errors="replace") as stat:
                parents[int(entry)] = int(stat.read().rsplit(")", 1)[1].split()[1])
        except OSError:
            continue
    found = [root]
    for process in found:
        found += [child for child, parent in parents.items() if parent == process]
    return found


def role_of(process):
    with open(f"/proc/{process}/cmdline", "rb") as text:
        words = text.read().decode(errors="replace").split("\0")
    kind = [word[len("--type="):] for word in words if word.startswith("--type=")]
    return "web engine: " + kind[0] if kind else os.path.basename(words[0])


def kind_of(path):
    if not path or path.startswith("["):
        return "heap, stacks and other private memory"
    if re.search(r"libQt6WebEngineCore|QtWebEngine|/qtwebengine|icudtl|\.pak$", path):
        return "the web engine's code and data"
    if re.search(r"libmpv|libav|libsw|libplacebo", path):
        return "the player's libraries"
    if path.startswith("/dev/shm") or path.startswith("/memfd") or path.startswith("/SYSV"):
        return "shared pictures"
    return "other libraries and files"


def memory_of(processes):
    """Proportional megabytes by process and by kind of content."""
    roles, kinds = {}, {}
    for process in processes:
        try:
            role = role_of(process)
            kind = None
            with open(f"/proc/{process}/smaps", encoding="utf-8", errors="replace") as maps:
                for line in maps:
                    if re.match(r"[0-9a-f]+-[0-9a-f]+ ", line):
                        parts = line.split(None, 5)
                        kind = kind_of(parts[5].strip() if len(parts) > 5 else "")
                    elif line.startswith("Pss:"):
                        megabytes = int(line.split()[1]) / 1024
                        roles[role] = roles.get(role, 0) + megabytes
                        kinds[kind] = kinds.get(kind, 0) + megabytes
        except OSError:
            continue
    return roles, kinds


def start(program, folder):
    """One start: the seconds of each step, and the memory at its end."""
    journal = os.path.join(folder, "journal")
    if not os.path.exists(journal):
        os.mkfifo(journal)
        os.chmod(journal, 0o666)
    # Open for writing too, so that the pipe stays open whoever comes and goes.
    pipe = os.fdopen(os.open(journal, os.O_RDWR), "r", encoding="utf-8", errors="replace")
    environment = dict(os.environ, VELMORANT_JOURNAL=journal, HOME=folder)
    for name in ("CONFIG", "DATA", "CACHE"):
        environment[f"XDG_{name}_HOME"] = os.path.join(folder, name.lower())
    signal.alarm(LONGEST_START)
    begin = time.monotonic()
    with open(os.path.join(folder, "log"), "w", encoding="utf-8") as log:
        process = subprocess.Popen([program], stdout=log, stderr=log, env=environment,
                                   cwd=os.path.dirname(program) or ".", start_new_session=True)
    seconds = {}
    try:
        while len(seconds) < len(STEPS):
            line = pipe.readline()
            now = time.monotonic() - begin
            for beginning, step in STEPS.items():
                # Behind the time and the level.
                if f" info {beginning}" in line and step not in seconds:
                    seconds[step] = now
        signal.alarm(0)
        time.sleep(1.5)
        memory = memory_of(children_of(process.pid))
    finally:
        os.killpg(process.pid, signal.SIGTERM)
        process.wait()
        pipe.close()
    return seconds, memory


def no_start(*_):
    raise TimeoutError(f"no painted window with a map page within {LONGEST_START} s")


def main():
    reader = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    reader.add_argument("program")
    reader.add_argument("--runs", type=int, default=10)
    reader.add_argument("--limits", action="store_true")
    reader.add_argument("--folder")
    options = reader.parse_args()
    program = os.path.abspath(options.program)
    signal.signal(signal.SIGALRM, no_start)
    taken = {step: [] for step in STEPS.values()}
    with tempfile.TemporaryDirectory() as own_folder:
        folder = options.folder or own_folder
        setup = os.path.join(os.path.dirname(program), "velmorant-setup")
        if os.path.exists(setup):
            environment = dict(os.environ, HOME=folder, XDG_CONFIG_HOME=folder + "/config")
            subprocess.run([setup], env=environment, check=True)
        for run in range(options.runs + 1):
            seconds, memory = start(program, folder)
            for step in taken:
                if run > 0:
                    taken[step].append(seconds[step])
    for step, values in taken.items():
        print(f"{step}: median {statistics.median(values):.3f} s of {len(values)}"
              f" (from {min(values):.3f} to {max(values):.3f})")
    roles, kinds = memory
    print(f"memory of all processes, proportional: {sum(roles.values()):.0f} MB")
    for table in (roles, kinds):
        for name, megabytes in sorted(table.items(), key=lambda row: -row[1]):
            print(f"  {megabytes:6.1f} MB  {name}")
    first = min(statistics.median(taken["splash painted"]),
                statistics.median(taken["frame painted"]))
    page = statistics.median(taken["page ready"])
    if options.limits and (first > WINDOW_LIMIT or page > PAGE_LIMIT):
        print(f"missed: a window within {WINDOW_LIMIT} s, the page within {PAGE_LIMIT} s")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
