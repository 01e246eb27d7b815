#!/usr/bin/env python3
"""Starts the built program again and again, several at once, and looks whether it comes up whole.

  start_and_kill.py starts COUNT [--slowed]   until the map page is there, without a sound card, on a
                                              machine that has more to do than it can; --slowed: with
                                              an environment that is read slowly (tools/slow_getenv)
  start_and_kill.py kills COUNT               kills it at random moments, by turns as the user sees it
                                              and driven along its main road; then card, configuration
                                              and list must be whole
Common to both: [--workers N] programs at once (default: three for each core), each on a display of
its own. Ends with 0 when all was well, and prints what it counted."""
import argparse
import collections
import concurrent.futures
import hashlib
import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import xml.etree.ElementTree

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.path.join(ROOT, "build", "default")
MAIN = "Velmorant DVR Tools"
PAGE = "page velmorant:"
START_LIMIT = 120  # seconds
LONGEST_LIFE = 14  # seconds until a kill: the road is driven to its end in that time
SCRIPT_THREADS = ("lua", "script")


class Failure(Exception):
    pass


class Display:
    """A virtual display, for as long as it is held."""

    def __init__(self):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", "1024x708x24", "-nolisten", "tcp"],
            pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise Failure("the virtual display does not start")
        self.name = f":{number}"

    def close(self):
        self.server.terminate()
        self.server.wait()


class Place:
    """A home, a program folder and a display of one worker's own."""

    def __init__(self, folder, card):
        self.folder = folder
        self.card = card
        self.program = os.path.join(folder, "program")
        # The program leaves its list for the next start beside itself.
        shutil.copytree(os.path.join(BUILD, "program"), self.program,
                        ignore=shutil.ignore_patterns("flow.xml*"))
        self.display = Display()
        self.environment = dict(os.environ, HOME=folder, DISPLAY=self.display.name,
                                QT_QPA_PLATFORM="xcb", WAYLAND_DISPLAY="")
        for name in ("CONFIG", "DATA", "CACHE"):
            self.environment[f"XDG_{name}_HOME"] = self.path(name.lower())
            os.makedirs(self.path(name.lower()), exist_ok=True)
        self.environment["XDG_RUNTIME_DIR"] = self.path("run")
        os.makedirs(self.path("run"), mode=0o700, exist_ok=True)
        self.environment["VELMORANT_JOURNAL"] = self.path("journal")
        # With an empty sound configuration there is no card to be found, whatever the machine has.
        self.environment.update(ALSA_CONFIG_PATH="/dev/null", PULSE_SERVER="/nowhere")
        subprocess.run([os.path.join(self.program, "velmorant-setup")], env=self.environment,
                       check=True)

    def path(self, name):
        return os.path.join(self.folder, name)

    def leave_list(self):
        subprocess.run([os.path.join(self.program, "velmorant-list"), self.card], check=True,
                       env=self.environment, stdout=subprocess.DEVNULL)

    def begin(self, command):
        if os.path.exists(self.path("journal")):
            os.remove(self.path("journal"))
        with open(self.path("log"), "wb") as log:
            return subprocess.Popen(command, env=self.environment, start_new_session=True,
                                    stdout=log, stderr=subprocess.STDOUT)

    def read(self, name):
        try:
            with open(self.path(name), encoding="utf-8", errors="replace") as file:
                return file.read()
        except FileNotFoundError:
            return ""

    def start(self, command):
        """Returns the process when its map page is there."""
        process = self.begin(command)
        limit = time.monotonic() + START_LIMIT
        while PAGE not in self.read("journal"):
            if process.poll() is not None:
                raise Failure(f"it ended with {process.returncode}\n{self.read('log')[-800:]}")
            if time.monotonic() > limit:
                end(process)
                raise Failure(f"no map page within {START_LIMIT} s\n{self.read('log')[-800:]}")
            time.sleep(0.02)
        return process

    def close(self):
        self.display.close()


def end(process):
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def thread_names(process):
    names = []
    for task in os.listdir(f"/proc/{process.pid}/task"):
        try:
            with open(f"/proc/{process.pid}/task/{task}/comm", encoding="utf-8") as file:
                names.append(file.read().strip())
        except (FileNotFoundError, ProcessLookupError):
            pass  # the thread has ended meanwhile
    return names


def program_command(place, slowed):
    command = [os.path.join(place.program, MAIN)]
    if slowed:
        library = os.path.join(BUILD, "tools", "libslow_getenv.so")
        command = ["env", f"LD_PRELOAD={library}"] + command
    return command


def start_once(place, slowed):
    place.leave_list()
    process = place.start(program_command(place, slowed))
    scripts = [name for name in thread_names(process)
               if any(word in name for word in SCRIPT_THREADS)]
    ended = process.poll()
    end(process)
    if ended is not None:
        raise Failure(f"it ended with {ended} just after the map page came")
    if scripts:
        raise Failure(f"threads that run scripts: {' '.join(scripts)}")
    changes = [line for line in place.read("log").splitlines() if line.startswith("environment:")]
    if changes:
        raise Failure("\n".join(changes))
    return "started"


def sums(place):
    """Of the recordings and the configuration."""
    found = {}
    for top in (place.card, place.path("config")):
        for folder, _, names in os.walk(top):
            for name in names:
                if name.lower().endswith(".mp4"):
                    with open(os.path.join(folder, name), "rb") as file:
                        found[os.path.join(folder, name)] = hashlib.sha256(file.read()).hexdigest()
    return found


def check_list(place, rows):
    """The list that one start leaves for the next is there as a whole or not at all."""
    path = os.path.join(place.program, "flow.xml")
    if not os.path.exists(path):
        return
    try:
        count = len(xml.etree.ElementTree.parse(path).getroot().findall("Data"))
    except xml.etree.ElementTree.ParseError as error:
        raise Failure(f"the list is broken: {error}") from error
    if count != rows:
        raise Failure(f"the list holds {count} rows instead of {rows}")


def phase(place):
    """How far the program had come."""
    log = place.read("log")
    for word, name in ((" clicked-route", "a route was clicked"), (" playing", "it played"),
                       (" routes", "the routes were drawn"), (" list", "it extracted")):
        if word in log:
            return name
    return "the map page was there" if PAGE in place.read("journal") else "it started"


def kill_once(place, turn):
    if not hasattr(place, "before"):  # the first start writes what the configuration lacks
        end(place.start(program_command(place, False)))
        place.before = sums(place)
        place.rows = sum(path.startswith(place.card) for path in place.before)
    place.leave_list()
    if turn % 2:
        command = [os.path.join(BUILD, "tools", "drive_road"), place.program,
                   place.path("pictures")]
    else:
        command = program_command(place, False)
    process = place.begin(command)
    moment = random.uniform(0, LONGEST_LIFE)
    time.sleep(moment)
    ended = process.poll()
    end(process)
    if ended not in (None, 0):
        raise Failure(f"it had ended with {ended} before\n{place.read('log')[-800:]}")
    if sums(place) != place.before:
        raise Failure(f"killed at {moment:.1f} s: a recording or the configuration differs")
    check_list(place, place.rows)
    return f"killed when {phase(place)}"


def burn(until):
    while not until.is_set():
        process = subprocess.Popen([sys.executable, "-c",
                                    "import time\nend = time.time() + 5\n"
                                    "while time.time() < end: pass"])
        process.wait()


def run(arguments, folder):
    card = os.path.join(folder, "card")
    subprocess.run([os.path.join(BUILD, "tools", "make_card"), card, "--one-picture", "--seconds",
                    "5"], check=True, stdout=subprocess.DEVNULL)
    turns = iter(range(arguments.count))
    counted = collections.Counter()
    failures = []
    lock = threading.Lock()

    def work(number):
        place = Place(os.path.join(folder, str(number)), card)
        try:
            while True:
                with lock:
                    turn = next(turns, None)
                    if turn is None or failures:
                        return
                try:
                    outcome = start_once(place, arguments.slowed) if arguments.what == "starts" \
                        else kill_once(place, turn)
                except Failure as failure:
                    with lock:
                        failures.append(f"run {turn + 1}: {failure}")
                    return
                with lock:
                    counted[outcome] += 1
        finally:
            place.close()

    done = threading.Event()
    load = [threading.Thread(target=burn, args=[done]) for _ in range(arguments.load)]
    for thread in load:
        thread.start()
    began = time.monotonic()
    try:
        with concurrent.futures.ThreadPoolExecutor(arguments.workers) as pool:
            for worker in [pool.submit(work, number) for number in range(arguments.workers)]:
                worker.result()
    finally:
        done.set()
        for thread in load:
            thread.join()
    for outcome, count in sorted(counted.items()):
        print(f"  {count} times {outcome}")
    print(f"  {sum(counted.values())} of {arguments.count} in {time.monotonic() - began:.0f} s, "
          f"{arguments.workers} at once")
    for failure in failures:
        print(f"  {failure}")
    return 0 if sum(counted.values()) == arguments.count and not failures else 1


def main():
    cores = os.cpu_count() or 1
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("what", choices=["starts", "kills"])
    parser.add_argument("count", type=int)
    parser.add_argument("--slowed", action="store_true")
    parser.add_argument("--workers", type=int, default=3 * cores)
    parser.add_argument("--load", type=int, default=0, help="processes that only burn time beside")
    arguments = parser.parse_args()
    folder = tempfile.mkdtemp(prefix="starts-", dir=BUILD)
    try:
        return run(arguments, folder)
    finally:
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
