#!/usr/bin/env python3
"""Takes pictures of the map page for looking at: pictures.py FOLDER [LANGUAGE]

World, country, city and street zoom, in the pane's size and in the whole window's, without a
provider, with one, with one that fails half of its answers and with one that hangs.
"""

import os
import sys

from browser import Browser
from serve import Server

PAGE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "resources", "map")
VIEWS = {"world": (20, 60, 1), "country": (24, 121, 6), "city": (25.04, 121.52, 11), "street": (25.0400, 121.5072, 16)}
DRAW = """
function draw(number, longitude, latitude, count) {
    const groups = [];
    for (let i = 0; i < count; i += 1) {
        const a = i / 9;
        const x = (longitude + 0.00012 * i).toFixed(7);
        const y = (latitude + 0.0016 * Math.sin(a / 3) + 0.0003 * Math.sin(a)).toFixed(7);
        groups.push(`+${x}!${y}|`);
    }
    getContentHis(number + groups[0]);
    for (let i = 1; i < count; i += 10) getContentHis(groups.slice(i, i + 10).join(''));
    getContentHis('Over');
}
draw('007', 121.5, 25.04, 180);
draw('008', 121.503, 25.046, 120);
const route = velmorantMap.table.shown.get(7);
MoveCar(`${route.x[60] / 1e7}|${route.y[60] / 1e7}|61|70`);
"""


def main(folder, language):
    os.makedirs(folder, exist_ok=True)
    server = Server(PAGE)
    browser = Browser(language=language)
    try:
        for behaviour in ("plain", "program", "tiles", "half", "hanging"):
            browser.open(server.address(behaviour))
            browser.wait("velmorantMap.baseLayers.base.world !== null")
            browser.run(DRAW)
            browser.run("velmorantMap.view.automatic = false; velmorantMap.view.setFollow(false);")
            for width, height in ((338, 248), (1024, 708)):
                browser.resize(width, height)
                for name, view in VIEWS.items():
                    browser.run("velmorantMap.map.setView([arguments[0], arguments[1]], arguments[2], "
                                "{animate: false})", *view)
                    browser.run("return new Promise((done) => setTimeout(done, 700))")
                    browser.picture(f"{folder}/{behaviour}-{name}-{width}.png")
            browser.resize(338, 248)
    finally:
        browser.end()
        server.end()


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else "en")
