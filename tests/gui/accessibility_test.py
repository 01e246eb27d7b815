#!/usr/bin/python3
"""Uses the real program without a mouse, by the keyboard and by what it tells screen readers.

    accessibility_test.py PROGRAM_FOLDER SKIN_TEXTS_FOLDER CARD PICTURES_FOLDER CATALOGUE_PROGRAM

In English: every command of the skins is in the accessibility tree under its name, the Tab key
reaches each, and the focus can be seen; the dialogs, boxes and menus open and close by keys, and so
does the update's window while it fetches a release from a slow server. Then the settings change the
language: the program starts again with the same rows, and all is looked at once more in Chinese.
Needs a display, a session bus, openbox, xdotool and ImageMagick. Leaves a picture of every window
in each language.

Long because it is one walk, in which each step begins where the one before has ended."""

import functools
import http.server
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (the version comes first)

WAIT = 30
MAIN = "Velmorant DVR Tools"
COMMANDS = {"push button", "check box", "toggle button", "slider", "radio button"}
# What the page of the map offers, by the language of the page.
MAP_COMMANDS = {1: ["Zoom in", "Zoom out"], 2: ["放大", "縮小"]}
OTHER_NAMES = {1: ["Recordings", "Map", "Picture", "Speed or G-force of every second"],
               2: ["錄影清單", "地圖", "影像", "每一秒的車速或 G 值"]}
BOX_BUTTONS = {1: ["Yes", "No"], 2: ["是", "否"]}
FILE_DIALOG = {1: ["Open", "Cancel"], 2: ["開啟", "取消"]}
TITLE_MENU = {1: ["Minimise", "Close", "Check for updates"],
              2: ["最小化", "關閉", "檢查更新"]}
LIST_MENU = {1: ["Play", "Mark or unmark", "Show on map", "Show in folder", "Copy path",
                 "Export track", "Remove from list"],
             2: ["播放", "標記或取消標記", "在地圖上顯示", "在資料夾中顯示", "複製路徑",
                 "匯出軌跡", "從清單移除"]}
failures = []


def check(condition, text):
    if not condition:
        failures.append(text)
        print("FAILED:", text, flush=True)


def wait_for(condition, what, seconds=WAIT):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.05)
    raise TimeoutError(f"{what} within {seconds} s")


def steady(look):
    """Looks again when something went from the tree while it was looked at."""
    def again(*arguments):
        for _ in range(50):
            try:
                return look(*arguments)
            except GLib.GError:
                time.sleep(0.05)
        return look(*arguments)
    return again


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def key(name):
    run("xdotool", "key", name)
    time.sleep(0.06)


def state(node, wanted):
    return node.get_state_set().contains(wanted)


def walk(node):
    """The node and all below it that is there, in the order of the tree."""
    try:
        yield node
        for i in range(node.get_child_count()):
            child = node.get_child_at_index(i)
            if child is not None:
                yield from walk(child)
    except GLib.GError:
        return  # it went while it was looked at


def shown(node):
    return state(node, Atspi.StateType.SHOWING)


def texts_of(folder, language):
    names = {}
    with open(f"{folder}/{language}.txt", encoding="utf-8") as lines:
        for line in lines:
            if " = " in line and not line.startswith("#"):
                name, text = line.rstrip("\n").split(" = ", 1)
                names[name] = text
    return names


class Program:
    def __init__(self, texts, pictures, language):
        self.pictures = pictures
        self.language = language
        self.names = texts_of(texts, language)
        self.application = wait_for(self.find, "the program in the accessibility tree")
        wait_for(lambda: MAP_COMMANDS[language][0] in self.named(), "the map's buttons")

    @staticmethod
    def find():
        desktop = Atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(i)
            if application is not None and "velmorant" in application.get_name():
                return application
        return None

    def all(self):
        self.application.clear_cache()
        return list(walk(self.application))

    def commands_of(self, window):
        """The names of a skin's commands: the long name where there is one, else the label."""
        return [text for name, text in self.names.items()
                if name.startswith(window + ".") and name.endswith(".name")]

    @steady
    def named(self, roles=None):
        return {n.get_name() for n in self.all()
                if shown(n) and (roles is None or n.get_role_name() in roles)}

    @steady
    def rows(self):
        cells = [n.get_name() for n in self.all() if n.get_role_name() == "table cell"]
        return [name[:19] for name in cells if name[:2] == "20"]  # without the kind

    @steady
    def focused(self):
        """A page and a list keep the focus of their own when another part of the window gets it, so
        a command with the focus counts before them."""
        found = [n for n in self.all() if shown(n) and state(n, Atspi.StateType.FOCUSED)]
        for roles in (COMMANDS, {"text", "tree", "tree table"}):
            for node in found:
                if node.get_role_name() in roles:
                    return node
        return found[-1] if found else None

    def picture(self, name):
        time.sleep(0.4)
        path = f"{self.pictures}/{name}-{self.language}.png"
        run("import", "-window", "root", path)
        return path

    def tell(self, text):
        print(f"language {self.language}: {text}", flush=True)


class Screen:
    """The whole screen at one moment."""

    def __init__(self):
        self.width = int(run("xdotool", "getdisplaygeometry").split()[0])
        self.bytes = subprocess.run(["import", "-window", "root", "-depth", "8", "rgb:-"],
                                    check=True, capture_output=True).stdout

    def differs(self, other):
        """Bytes that are not the same."""
        return sum(a != b for a, b in zip(self.bytes, other.bytes))

    def part(self, place):
        lines = []
        for y in range(max(place.y - 4, 0), place.y + place.height + 4):
            start = (y * self.width + max(place.x - 4, 0)) * 3
            lines.append(self.bytes[start:start + (place.width + 8) * 3])
        return lines


def ended(process):
    try:
        with open(f"/proc/{process}/stat", encoding="utf-8") as stat:
            return stat.read().rsplit(")", 1)[1].split()[0] == "Z"
    except OSError:
        return True


def window_of(node):
    while node.get_parent() is not None and node.get_parent().get_role_name() != "application":
        node = node.get_parent()
    return node


def is_command(node):
    return (node.get_role_name() in COMMANDS and shown(node)
            and state(node, Atspi.StateType.FOCUSABLE) and state(node, Atspi.StateType.SENSITIVE))


def place_of(node):
    return node and (node.get_name(), node.get_extents(Atspi.CoordType.SCREEN))


@steady
def commands_below(node):
    return {n.get_name() for n in walk(window_of(node)) if is_command(n)}


def reach_all(program, expected, where):
    """The Tab key goes to every command of the window that has the focus, and shows that it did."""
    start = wait_for(program.focused, f"{where}: anything with the focus")
    wanted = commands_below(start)
    check("" not in wanted, f"{where}: a command has no name")
    for name in expected:
        check(name in wanted, f"{where}: no command is named {name!r}")
    reached = {}
    before = None
    for _ in range(2 * len(wanted) + 20):
        now = steady(lambda: place_of(program.focused()))()
        time.sleep(0.2)  # the focus is painted a little later than it is told
        screen = Screen()
        if before is not None and before[0] not in reached:
            reached[before[0]] = before[1].part(before[2]) != screen.part(before[2])
        if wanted <= reached.keys():
            break
        before = now and (now[0], screen, now[1])
        key("Tab")
    for name in sorted(wanted - reached.keys()):
        check(False, f"{where}: the Tab key does not reach {name!r}")
    for name in sorted(name for name in wanted & reached.keys() if not reached[name]):
        check(False, f"{where}: it cannot be seen that {name!r} has the focus")
    program.tell(f"{where}: {len(wanted)} commands reached by Tab")


def focus(program, name):
    for _ in range(120):
        now = steady(lambda: place_of(program.focused()))()
        if now is not None and now[0] == name:
            return
        key("Tab")
    raise TimeoutError(f"the Tab key does not come to {name!r}")


def press(program, name):
    focus(program, name)
    key("space")


def wait_for_names(program, names, where):
    try:
        wait_for(lambda: set(names) <= program.named(), where, 10)
    except TimeoutError:
        check(False, f"{where}: missing {sorted(set(names) - program.named())}")


def wait_until_gone(program, name, where):
    wait_for(lambda: name not in program.named(), f"{where} closed")


def use_dialogs(program):
    names, language = program.names, program.language
    press(program, names["main.setup.name"])
    wait_for_names(program, [names["setup.cmdclose"]], "settings")
    title = wait_for(lambda: steady(lambda: window_of(program.focused()).get_name())(), "a title")
    check(title == names["setup.title"], f"the settings' window is called {title!r}")
    reach_all(program, [names["setup.cancel.name"], names["setup.cmdclose"], names["setup.unit1002"],
                        "English", "\u7e41\u9ad4\u4e2d\u6587"], "settings")
    program.picture("settings")
    key("Escape")
    wait_until_gone(program, names["setup.cmdclose"], "settings")

    press(program, names["main.info.name"])
    web_site = {1: "Web site of the program", 2: "\u7a0b\u5f0f\u7684\u7db2\u7ad9"}[language]
    wait_for_names(program, [web_site], "about")
    title = wait_for(lambda: steady(lambda: window_of(program.focused()).get_name())(), "a title")
    check(title == names["main.info.name"], f"the about window is called {title!r}")
    reach_all(program, [web_site], "about")
    program.picture("about")
    key("Escape")
    wait_until_gone(program, web_site, "about")

    press(program, names["main.delete.name"])
    wait_for_names(program, BOX_BUTTONS[language], "message box")
    reach_all(program, BOX_BUTTONS[language], "message box")
    program.picture("box")
    key("Escape")
    wait_until_gone(program, BOX_BUTTONS[language][0], "message box")
    check(len(program.rows()) == 4, "Escape in the question deletes nothing")

    press(program, names["main.open.name"])
    wait_for_names(program, FILE_DIALOG[language], "file dialog")
    program.picture("open")
    kinds = {name for name in program.named({"table cell", "tree item"})
             if name in ("Folder", "\u8cc7\u6599\u593e")}
    check(kinds <= {{1: "Folder", 2: "\u8cc7\u6599\u593e"}[language]},
          f"file dialog: {kinds} is not in the program's language")
    for text in program.named({"label"}):
        check(language == 1 or not text.startswith(("Look", "File", "Directory")),
              f"file dialog: {text!r} is not in the program's language")
    key("Escape")
    wait_until_gone(program, FILE_DIALOG[language][1], "file dialog")


class Spoken:
    """What a screen reader is told while this lives: the names of what gets a state, the focus for
    example. A popup is no part of the tree, its items are told in this way alone."""

    def __init__(self, wanted="focused", on=True):
        self.names = []
        self.on = on
        self.event = "object:state-changed:" + wanted
        self.listener = Atspi.EventListener.new(self.hear)
        self.listener.register(self.event)

    def hear(self, event):
        if bool(event.detail1) == self.on:
            self.names.append(event.source.get_name())

    def close(self):
        self.listener.deregister(self.event)

    def wait_for(self, name):
        def heard():
            while GLib.MainContext.default().iteration(False):
                pass
            return name in self.names
        try:
            wait_for(heard, name, 5)
        except TimeoutError:
            check(False, f"{self.event}: a screen reader is not told of {name!r}, but of {self.names}")


def open_menu(program, name, items):
    """Opens the menu of what has the focus and goes through all its items."""
    before = Screen()
    spoken = Spoken()
    key("shift+F10")
    wait_for(lambda: Screen().differs(before) > 5000, f"{name}: a menu on the screen")
    for item in items:
        key("Down")
        spoken.wait_for(item)
    program.picture(name)
    spoken.close()
    program.tell(f"{name}: {len(items)} items told")
    return before


def use_menus(program):
    focus(program, program.names["main.info.name"])
    before = open_menu(program, "title-menu", TITLE_MENU[program.language])
    key("Escape")
    wait_for(lambda: Screen().differs(before) < 2000, "the title's menu gone")

    for _ in range(120):
        if steady(lambda: program.focused().get_role_name())() in ("tree", "tree table"):
            break
        key("Tab")
    key("Home")
    key("Down")
    before = open_menu(program, "list-menu", LIST_MENU[program.language])
    key("Escape")
    wait_for(lambda: Screen().differs(before) < 2000, "the list's menu gone")


def use_list(program):
    """The Tab key comes to a cell that says its row, and the space bar tells the new mark. All rows
    are marked, their tracks are there."""
    for _ in range(120):
        now = steady(lambda: program.focused().get_role_name())()
        if now in ("tree", "tree table", "table cell"):
            break
        key("Tab")
    key("Home")
    row = wait_for(lambda: [name for name in program.named({"table cell"}) if name[:2] == "20"],
                   "the rows")
    check(all(row), "list: a row has no name")
    key("End")
    for on in (False, True):
        spoken = Spoken("checked", on)
        key("space")
        try:
            wait_for(lambda: GLib.MainContext.default().iteration(False) or
                     any(name[:2] == "20" for name in spoken.names), "the mark", 5)
        except TimeoutError:
            check(False, f"list: a screen reader is not told that the mark is {on}")
        spoken.close()


@steady
def look_at_roles(program):
    nodes = [n for n in program.all() if shown(n)]
    photo = [n for n in nodes if n.get_name() == program.names["control.photo.name"]]
    check([n.get_role_name() for n in photo] == ["push button"],
          f"the picture of the screen is {[n.get_role_name() for n in photo]}")
    digits = [n for n in nodes if n.get_name() == program.names["control.digits"]
              and n.get_role_name() == "dial"]
    check(len(digits) == 1, f"{len(digits)} things show the digits")
    check(not [n for n in nodes if n.get_name() == "0"], "a digit is a thing of its own")


class SlowFiles(http.server.SimpleHTTPRequestHandler):
    """The map page at the top and the releases below it. A file of a release comes in small pieces,
    so that its window can be used meanwhile."""

    extensions_map = {**http.server.SimpleHTTPRequestHandler.extensions_map, ".asp": "text/html"}

    def translate_path(self, path):
        return super().translate_path(path if path.startswith("/update/") else "/map" + path)

    def copyfile(self, source, outputfile):
        if not self.path.startswith("/update/") or self.path.endswith("remote.rar"):
            super().copyfile(source, outputfile)
            return
        while piece := source.read(20000):
            outputfile.write(piece)
            time.sleep(0.1)

    def log_message(self, format, *args):  # pylint: disable=redefined-builtin
        pass


class Server:
    """The server of the map page, which has a newer release when told so."""

    def __init__(self, folder, program_folder, catalogue):
        self.catalogue = catalogue
        self.program_folder = program_folder
        self.served = os.path.join(folder, "served")
        self.release = os.path.join(folder, "release")
        shutil.copytree(os.path.join(program_folder, "map"), os.path.join(self.served, "map"))
        handler = functools.partial(SlowFiles, directory=self.served)
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
        self.base = f"http://127.0.0.1:{self.server.server_port}/"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    def publish(self, version):
        """One new file; the main program is the same, so that nothing is asked."""
        os.makedirs(os.path.join(self.release, "system"), exist_ok=True)
        shutil.copy2(os.path.join(self.program_folder, MAIN), self.release)
        with open(os.path.join(self.release, "system", "slow.bin"), "wb") as file:
            file.write(version.encode() * 5_000_000)
        run(self.catalogue, "publish", self.release, self.served, "--version", version)

    def withdraw(self):
        for name in os.listdir(self.served):
            if name != "map":
                path = os.path.join(self.served, name)
                shutil.rmtree(path) if os.path.isdir(path) else os.remove(path)


def look_for_updates(program, server):
    """The update's window, while it fetches: named, reached by keys, closed by Escape."""
    title = {1: "Online update", 2: "\u7dda\u4e0a\u66f4\u65b0"}[program.language]
    close = {1: "Close", 2: "\u95dc\u9589"}[program.language]
    server.publish(f"R{program.language}")
    focus(program, program.names["main.info.name"])
    open_menu(program, "title-menu", TITLE_MENU[program.language])
    key("Return")
    wait_for(lambda: any(title in bar for bar in program.named({"progress bar"})),
             "the update's progress in the tree")
    wait_for(lambda: steady(lambda: window_of(program.focused()).get_name())() == title,
             "the focus in the update's window")
    reach_all(program, [close], "update")
    program.picture("update")
    key("Escape")
    wait_until_gone(program, title, "update")
    server.withdraw()


def extract(program):
    title = {1: "Reading tracks", 2: "\u6b63\u5728\u8b80\u53d6\u8ecc\u8de1"}[program.language]
    press(program, program.names["list.all.name"])
    wait_for(lambda: title in program.named(), "the window of the extraction")
    program.picture("extraction")
    wait_for(lambda: title not in program.named(), "the end of the extraction")
    program.picture("main")


def change_language(program, apply):
    names = program.names
    rows = program.rows()
    press(program, names["main.setup.name"])
    wait_for_names(program, [names["setup.cmdclose"]], "settings")
    press(program, "\u7e41\u9ad4\u4e2d\u6587")
    wait_for_names(program, [apply], "settings in the other language")
    press(program, apply)
    yes = wait_for(lambda: program.named() & {"Yes", "\u662f"}, "the restart's question").pop()
    program.picture("restart")
    process = program.application.get_process_id()
    press(program, yes)
    wait_for(lambda: ended(process), "the end of the first program")
    return rows


def use_all(program, server):
    language = program.language
    wait_for(program.focused, "the focus")
    for name in OTHER_NAMES[language]:
        check(name in program.named(), f"main window: nothing is named {name!r}")
    reach_all(program, program.commands_of("main") + program.commands_of("control") +
              program.commands_of("list") + MAP_COMMANDS[language], "main window")
    look_at_roles(program)
    use_dialogs(program)
    use_menus(program)
    look_for_updates(program, server)
    extract(program)
    use_list(program)


def end_by_keys(program):
    process = program.application.get_process_id()
    press(program, program.names["main.close.name"])
    yes = BOX_BUTTONS[program.language][0]
    wait_for_names(program, [yes], "exit question")
    program.picture("exit")
    press(program, yes)
    wait_for(lambda: ended(process), "the end of the program")


def environment_of(folder):
    """A home of the program's own; English to begin with."""
    environment = dict(os.environ, HOME=folder, LANG="en_GB.UTF-8",
                       QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                       VELMORANT_JOURNAL=os.path.join(folder, "journal"))
    for name in ("CONFIG", "DATA", "CACHE"):
        environment[f"XDG_{name}_HOME"] = os.path.join(folder, name.lower())
    return environment


def main():
    program_folder, texts, card, pictures, catalogue = sys.argv[1:6]
    os.makedirs(pictures, exist_ok=True)
    Atspi.init()
    Atspi.get_desktop(0).get_child_count()  # wakes the registry, which the program looks for
    with tempfile.TemporaryDirectory() as folder:
        # A copy, because an update writes into it.
        program_folder = shutil.copytree(program_folder, os.path.join(folder, "program"))
        server = Server(folder, program_folder, catalogue)
        environment = dict(environment_of(folder), VELMORANT_SERVER=server.base)
        for command in (["velmorant-setup"], ["velmorant-list", card]):
            subprocess.run([os.path.join(program_folder, command[0])] + command[1:],
                           env=environment, check=True, stdout=subprocess.DEVNULL)
        manager = subprocess.Popen(["openbox"], env=environment, stderr=subprocess.DEVNULL)
        # A window that is there before the manager would not hear where it is put.
        wait_for(lambda: "window id" in run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "openbox")
        first = subprocess.Popen([os.path.join(program_folder, MAIN)],
                                 env=environment, stderr=subprocess.DEVNULL)
        second = None
        try:
            program = Program(texts, pictures, 1)
            use_all(program, server)
            rows = change_language(program, texts_of(texts, 2)["setup.cmdclose"])
            first.wait(WAIT)
            program = Program(texts, pictures, 2)
            second = program.application.get_process_id()
            check(program.rows() == rows, f"other rows after the restart: {program.rows()}, {rows}")
            use_all(program, server)
            end_by_keys(program)
            second = None
        except TimeoutError as missed:
            check(False, str(missed))
            run("import", "-window", "root", f"{pictures}/missed.png")
        finally:
            for process in (first.poll() is None and first.pid, second, manager.pid):
                if process:
                    os.kill(process, signal.SIGTERM)
    print(f"{len(failures)} failures; pictures in {pictures}")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
