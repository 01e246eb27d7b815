#!/usr/bin/env python3
"""Runs the map page's suite in Debian's Chromium: run_suite.py [ADDRESS]

Without an address it runs against a stand-in for the program (serve.py): as a plain folder, with the
program's answers, with street tiles, with tiles of which half fail, and with tiles that hang.
"""

import glob
import json
import os
import sys

from browser import Browser
from serve import Server

HERE = os.path.dirname(os.path.abspath(__file__))
PAGE = os.path.join(HERE, "..", "..", "resources", "map")
FIRST = ["harness.js", "routes.js"]


def suite_files(behaviour):
    names = sorted(os.path.basename(name) for name in glob.glob(os.path.join(HERE, "suite", "*.js")))
    # How a text is read does not depend on the tiles.
    extra = {"protocolTests.js": behaviour in ("plain", "program"),
             "programTests.js": behaviour == "program",
             "tileTests.js": behaviour in ("tiles", "half"),
             "hangingTests.js": behaviour == "hanging"}
    return FIRST + [name for name in names if name not in FIRST and extra.get(name, True)]


def run(browser, address, behaviour):
    """The results of the suite on the page at the address, which remembers nothing."""
    browser.open(address)
    browser.run("localStorage.clear()")
    browser.open(address)
    browser.wait("typeof window.getContentHis === 'function' && velmorantMap.baseLayers.base.world !== null")
    for name in suite_files(behaviour):
        with open(os.path.join(HERE, "suite", name), encoding="utf-8") as file:
            browser.run(file.read())
    browser.run("velmorantSuite.start()")
    results = json.loads(browser.wait("velmorantSuiteResults", 300))
    for entry in browser.console():
        # Absent answers are part of the plan; anything else that the console shows is not.
        if entry["level"] == "SEVERE" and "Failed to load resource" not in entry["message"] \
                and "Content Security Policy" not in entry["message"]:
            results.append({"name": "console", "ok": False, "detail": entry["message"]})
    return results


def report(title, results):
    failed = [result for result in results if not result["ok"]]
    for result in failed:
        print(f"FAILED {title}: {result['name']}: {result['detail']}")
    print(f"{title}: {len(results) - len(failed)} passed, {len(failed)} failed")
    return not failed and bool(results)


def main(addresses):
    server = Server(PAGE)
    good = True
    try:
        cases = [(address, "plain", address) for address in addresses] or [
            (behaviour, behaviour, server.address(behaviour))
            for behaviour in ("plain", "program", "tiles", "half", "hanging")]
        browser = Browser()
        try:
            for title, behaviour, address in cases:
                good = report(title, run(browser, address, behaviour)) and good
        finally:
            browser.end()
    finally:
        server.end()
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
