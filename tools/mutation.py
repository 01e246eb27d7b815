#!/usr/bin/env python3
"""Breaks the logic one place at a time and sees whether the unit tests notice.

  tools/mutation.py [--count N] [--seed N] [--jobs N] [--share PERCENT] [--all] [ROOM | FILE ...]

Draws N places (default 200) of the logic rooms, or of the rooms and files named; --all takes every
place. Each is broken in a copy of the tree under build/mutation, built without the desktop, and
tried with the unit tests of its room and then of the rooms that use it. What does not compile does
not count; another place is drawn for it. A test that fails, crashes or does not end has caught the
mutant. Those that no test catches are printed with file and line. tools/mutation_survivors.txt lists
survivors that change nothing anybody could see, each with its reason; they do not count either.

Ends with 0 when at least PERCENT of 100 (default 95) are caught, with 1 when fewer are, and with 2
when the tests fail on the unbroken tree or nothing could be tried."""

import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import time

from mutation_sites import mutants_of

ROOMS = ["common", "recordings", "library", "track", "playback", "settings", "update", "app", "xml"]
TREE = pathlib.Path(__file__).resolve().parent.parent
FOLDER = TREE / "build" / "mutation"
SNAPSHOT = FOLDER / "tree"  # what is tried, whatever is edited meanwhile
LISTED = pathlib.Path(__file__).resolve().parent / "mutation_survivors.txt"
LEFT_OUT = {"build", ".git", ".cache", "node_modules", "__pycache__"}
MEMORY = 4 << 30  # a mutant that never stops to grow ends here
COMPILE_LIMIT = 300  # seconds
# A mutant may delete or write what the unbroken program would not: its tests see everything but the
# temporary folder as read-only, where the system lets us arrange that.
FENCE = ["unshare", "--mount", "--map-root-user", "sh", "-c",
         "mount --bind / / && mount -o remount,bind,ro / && mount -t tmpfs tmpfs /tmp && exec \"$@\"",
         "fence"]

Result = collections.namedtuple("Result", "mutant outcome")


class Workshop:
    """One copy of the tree with its build folder; used by one thread at a time."""

    fenced = False  # whether the tests run behind the fence

    def __init__(self, number, share_of_cores):
        self.share_of_cores = share_of_cores
        self.tree = FOLDER / str(number) / "tree"
        self.build = FOLDER / str(number) / "build"
        self.home = FOLDER / str(number) / "home"
        self.environment = dict(os.environ, HOME=str(self.home), LC_ALL="C.UTF-8",
                                CCACHE_DIR=str(FOLDER / "ccache"), CCACHE_DEPEND="1",
                                CCACHE_BASEDIR=str(FOLDER / str(number)))
        self.tests_of_room = {}
        self.limits = {}

    def prepare(self, rooms):
        copy_changed(SNAPSHOT, self.tree)
        shutil.rmtree(self.home, ignore_errors=True)
        self.home.mkdir(parents=True)
        configured = self.run(
            ["cmake", "-S", str(self.tree), "-B", str(self.build), "-G", "Ninja",
             "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS=-w", "-DCMAKE_CXX_FLAGS_DEBUG=-O0",
             "-DCMAKE_EXE_LINKER_FLAGS=" + fast_linker(), "-DVELMORANT_DESKTOP=OFF",
             "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"], COMPILE_LIMIT)
        if configured.returncode != 0:
            raise RuntimeError(configured.stdout)
        self.find_tests()
        tests = sorted({test for room in rooms for test in self.tests_of_room.get(room, [])})
        built = self.run(["ninja", "-C", str(self.build), f"-j{self.share_of_cores}", *tests], 3600)
        if built.returncode != 0:
            raise RuntimeError(built.stdout[-3000:])
        for test in tests:
            begun = time.monotonic()
            ended = self.try_test(test, 600)
            if ended is None or ended.returncode != 0:
                raise RuntimeError(f"{test} fails on the unbroken tree:\n"
                                   f"{ended.stdout[-3000:] if ended else 'it does not end'}")
            self.limits[test] = 20 + 10 * (time.monotonic() - begun)

    def find_tests(self):
        """The test programs that hold each room's library, the room's own first."""
        listing = self.run(["ninja", "-C", str(self.build), "-t", "targets", "all"], 60).stdout
        programs = re.findall(r"^(tests/\S+/test_\w+):", listing, re.MULTILINE)
        for program in programs:
            inputs = self.run(["ninja", "-C", str(self.build), "-t", "inputs", program], 60).stdout
            for room in ROOMS:
                if re.search(rf"^{room}/\S+", inputs, re.MULTILINE):
                    self.tests_of_room.setdefault(room, []).append(program)
        for room, tests in self.tests_of_room.items():
            tests.sort(key=lambda test: (f"test_{room}" not in test, test))

    def run(self, command, limit, **options):
        return subprocess.run(command, env=self.environment, timeout=limit, text=True, errors="replace",
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, check=False, **options)

    def try_test(self, test, limit, *options):
        """The ended test program, or None where it did not end."""
        def bounded():
            os.setsid()
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        command = [str(self.build / test), "--gtest_brief=1", *options]
        process = subprocess.Popen((FENCE if Workshop.fenced else []) + command, env=self.environment,
                                   cwd=self.home, text=True, errors="replace", preexec_fn=bounded,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT)
        try:
            output, _ = process.communicate(timeout=limit)
            return subprocess.CompletedProcess(command, process.returncode, output)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, 9)
            process.communicate()
            return None

    def judge(self, mutant):
        """Whether the mutant is "caught", "survived" or "not compiled"; the tree stays broken."""
        broken = self.tree / mutant.file
        broken.write_text(mutant.apply((SNAPSHOT / mutant.file).read_text()))
        for test in self.tests_of_room.get(mutant.file.split("/")[0], []):
            try:
                built = self.run(["ninja", "-C", str(self.build), f"-j{self.share_of_cores}", test],
                                 COMPILE_LIMIT)
            except subprocess.TimeoutExpired:
                return "not compiled"
            if built.returncode != 0:
                return "not compiled"
            ended = self.try_test(test, self.limits[test], "--gtest_fail_fast")
            if ended is None or ended.returncode != 0:
                return "caught"
        return "survived"

    def judge_file(self, mutants):
        results = []
        for mutant in mutants:
            results.append(Result(mutant, self.judge(mutant)))
        copy_changed(SNAPSHOT / mutants[0].file, self.tree / mutants[0].file)
        return results


def copy_changed(source, target):
    """Makes the target as the source is; what is alike keeps its time, so that it is not built again."""
    if source.is_file():
        content = source.read_bytes()
        if not target.is_file() or target.read_bytes() != content:
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(content)
            shutil.copymode(source, target)
        return
    target.mkdir(parents=True, exist_ok=True)
    names = {entry.name for entry in source.iterdir()} - LEFT_OUT
    for entry in target.iterdir():
        if entry.name not in names:
            shutil.rmtree(entry) if entry.is_dir() else entry.unlink()
    for name in names:
        if (source / name).is_file() or (source / name).is_dir():
            copy_changed(source / name, target / name)


def fast_linker():
    for linker in ("mold", "lld", "gold"):
        if shutil.which(f"ld.{linker}") or shutil.which(linker):
            return f"-fuse-ld={linker}"
    return ""


def can_fence():
    ended = subprocess.run(FENCE + ["sh", "-c", "! touch / 2>/dev/null"], check=False,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return ended.returncode == 0


def listed_survivors():
    """File, line before and line after of the survivors that stand in the list with a reason."""
    found = {}
    entry = {}
    for line in LISTED.read_text().splitlines() + [""]:
        if line.startswith("#"):
            continue
        if line.strip():
            key, _, value = line.partition(":")
            entry[key.strip()] = value.strip()
        elif entry:
            if set(entry) != {"file", "line", "becomes", "reason"} or not entry["reason"]:
                sys.exit(f"{LISTED.name}: an entry needs file, line, becomes and reason: {entry}")
            found[entry["file"], entry["line"], entry["becomes"]] = entry["reason"]
            entry = {}
    return found


def all_mutants(places):
    files = []
    for place in places:
        path = SNAPSHOT / place
        files += [path] if path.is_file() else sorted(path.glob("*.cpp")) + sorted(path.glob("*.h"))
    return [mutant for file in files
            for mutant in mutants_of(str(file.relative_to(SNAPSHOT)), file.read_text())]


def try_all(workshops, mutants, listed):
    """The results; the mutants of one file stay together, so that each costs one file's compilation.
    Survivors that are not listed are printed as they come."""
    files = collections.OrderedDict()
    for mutant in mutants:
        files.setdefault(mutant.file, []).append(mutant)
    waiting = collections.deque(sorted(files.values(), key=len, reverse=True))

    def work(workshop):
        results = []
        while waiting:
            try:
                batch = waiting.popleft()
            except IndexError:
                break
            for result in workshop.judge_file(batch):
                results.append(result)
                if result.outcome == "survived" and key_of(result.mutant) not in listed:
                    show(result.mutant, "survived")
        return results

    with concurrent.futures.ThreadPoolExecutor(len(workshops)) as threads:
        return [result for results in threads.map(work, workshops) for result in results]


def key_of(mutant):
    return mutant.file, mutant.before, mutant.after


def show(mutant, outcome):
    print(f"{mutant.file}:{mutant.line}: {outcome}\n    {mutant.before}\n    {mutant.after}", flush=True)


def draw_and_try(workshops, mutants, count, listed):
    """Draws until enough have counted or none is left."""
    counted, stale, left_out = [], [], 0
    while mutants and len(counted) < count:
        drawn, mutants = mutants[:count - len(counted)], mutants[count - len(counted):]
        for result in try_all(workshops, drawn, listed):
            if result.outcome == "not compiled":
                continue
            if key_of(result.mutant) not in listed:
                counted.append(result)
                continue
            left_out += 1
            if result.outcome == "caught":
                stale.append(result.mutant)
    return counted, stale, left_out


def arguments():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--count", type=int, default=200, help="how many places count")
    parser.add_argument("--seed", type=int, default=1, help="the same seed draws the same places")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1)
    parser.add_argument("--share", type=float, default=95, help="percentage that must be caught")
    parser.add_argument("--all", action="store_true", help="every place, not a number of them")
    parser.add_argument("places", nargs="*", help="rooms or files (default: every logic room)")
    return parser.parse_args()


def main():
    options = arguments()
    copy_changed(TREE, SNAPSHOT)
    places = options.places or [room for room in ROOMS if (SNAPSHOT / room).is_dir()]
    mutants = all_mutants(places)
    random.Random(options.seed).shuffle(mutants)
    rooms = {mutant.file.split("/")[0] for mutant in mutants}
    listed = listed_survivors()
    Workshop.fenced = can_fence()
    begun = time.monotonic()
    share_of_cores = max(1, (os.cpu_count() or 1) // options.jobs)
    workshops = [Workshop(number, share_of_cores) for number in range(1, options.jobs + 1)]
    try:
        with concurrent.futures.ThreadPoolExecutor(len(workshops)) as threads:
            list(threads.map(lambda workshop: workshop.prepare(rooms), workshops))
    except RuntimeError as error:
        print(error)
        return 2
    print(f"prepared in {time.monotonic() - begun:.0f} s; seed {options.seed}, "
          f"{len(mutants)} places in {' '.join(places)}", flush=True)
    counted, stale, left_out = draw_and_try(
        workshops, mutants, len(mutants) if options.all else options.count, listed)
    for mutant in stale:
        show(mutant, "listed as a survivor, but caught")
    if not counted:
        print("nothing could be tried")
        return 2
    caught = sum(result.outcome == "caught" for result in counted)
    print(f"{caught} of {len(counted)} caught ({100 * caught / len(counted):.1f} %), {left_out} of the "
          f"list left out, {time.monotonic() - begun:.0f} s, seed {options.seed}")
    return 0 if 100 * caught >= options.share * len(counted) else 1


if __name__ == "__main__":
    sys.exit(main())
