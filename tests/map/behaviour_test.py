#!/usr/bin/env python3
"""What only a driven browser shows of the map page: real pointer and keys, languages, what is
remembered over a reload, reduced motion, and a network that goes away."""

import os
import sys

import pictures
import run_suite
from browser import Browser
from serve import Server

ENTER = "\ue007"
TAB = "\ue004"
RIGHT = "\ue014"
SPACE = " "


class Checks:
    def __init__(self, browser, server):
        self.browser = browser
        self.server = server
        self.results = []

    def open(self, behaviour="plain"):
        self.browser.open(self.server.address(behaviour))
        self.browser.wait("velmorantMap.baseLayers.base.world !== null")

    def draw(self):
        self.browser.run(pictures.DRAW)
        self.browser.wait("velmorantMap.map.getZoom() > 10 && velmorantMap.view.timer === 0")

    def pause(self, milliseconds):
        self.browser.run(f"return new Promise((done) => setTimeout(done, {milliseconds}))")

    def actions(self, *sources):
        self.browser.request("POST", "/actions", {"actions": list(sources)})

    def keys(self, *keys):
        steps = [{"type": kind, "value": key} for key in keys for kind in ("keyDown", "keyUp")]
        self.actions({"type": "key", "id": "keys", "actions": steps})

    def pointer(self, *steps):
        self.actions({"type": "pointer", "id": "mouse", "parameters": {"pointerType": "mouse"},
                      "actions": list(steps)})

    @staticmethod
    def move(x, y, duration=50):
        return {"type": "pointerMove", "x": int(x), "y": int(y), "duration": duration}

    def place_of(self, index):
        """The pixel where a place of route 7 is shown."""
        return self.browser.run(
            "const r = velmorantMap.table.shown.get(7); const i = arguments[0];"
            "const p = velmorantMap.map.latLngToContainerPoint([r.y[i] / 1e7, r.x[i] / 1e7]);"
            "return [p.x, p.y]", index)

    def check(self, name, good, detail=""):
        self.results.append({"name": name, "ok": bool(good), "detail": str(detail)})

    def spoken(self, languages_names):
        """What a screen reader is told of the page's controls, from the browser's own tree."""
        self.open()
        self.draw()
        self.browser.run("document.getElementById('layers').click()")
        self.browser.protocol("Accessibility.enable", {})
        nodes = self.browser.protocol("Accessibility.getFullAXTree", {})["nodes"]
        self.browser.protocol("Accessibility.disable", {})
        told = [(node["role"]["value"], node.get("name", {}).get("value", ""), {
            property["name"]: property["value"].get("value") for property in node.get("properties", [])})
            for node in nodes if not node.get("ignored") and "role" in node]
        buttons = [name for role, name, _ in told if role in ("button", "toggle button", "ToggleButton")]
        boxes = [name for role, name, _ in told if role.lower() == "checkbox"]
        self.check("every_button_is_named", buttons == languages_names["buttons"], buttons)
        self.check("every_switch_is_named", boxes == languages_names["boxes"], boxes)
        self.check("the_map_is_named", any(
            role == "application" and name == languages_names["map"] for role, name, _ in told), told[:4])
        pressed = {name: values.get("pressed") for _, name, values in told if "pressed" in values}
        self.check("follow_is_told_as_pressed", pressed.get(languages_names["follow"]) == "true", pressed)

    def spoken_english(self):
        self.spoken({"map": "Map of the routes", "follow": "Follow the car", "buttons": [
            "Zoom in", "Zoom out", "Show all routes", "Show this recording", "Follow the car", "Layers",
            "Map in the whole window"],
            "boxes": ["Speed colours", "Place names", "Grid", "Smooth car"]})

    def spoken_chinese(self):
        self.spoken({"map": "路線地圖", "follow": "跟隨車輛", "buttons": [
            "放大", "縮小", "顯示全部路線", "顯示此錄影", "跟隨車輛", "圖層", "地圖放大至整個視窗"],
            "boxes": ["速度顏色", "地名", "經緯線", "車輛平滑移動"]})

    def pointer_and_keys(self):
        self.open()
        self.draw()
        x, y = self.place_of(90)
        self.pointer(self.move(x, y), {"type": "pointerDown", "button": 0}, {"type": "pointerUp", "button": 0})
        picked = self.browser.wait("window.varLocal")
        self.check("says_that_it_takes_whole_routes", self.browser.run("return window.velmorantWholeRoutes") == "yes")
        self.check("a_real_click_picks_a_place", picked.startswith("P121.5"), picked)
        centre = self.browser.run("return velmorantMap.map.getCenter().lng")
        self.pointer(self.move(150, 200), {"type": "pointerDown", "button": 0}, self.move(90, 200, 200),
                     {"type": "pause", "duration": 300}, {"type": "pointerUp", "button": 0})
        self.pause(300)
        after = self.browser.run("return velmorantMap.map.getCenter().lng")
        self.check("dragging_moves_the_map", after > centre, (centre, after))
        self.check("dragging_picks_nothing_more", self.browser.run("return window.varLocal") == picked)
        zoom = self.browser.run("return velmorantMap.map.getZoom()")
        self.browser.run("document.getElementById('zoomIn').focus()")
        self.keys(ENTER)
        self.browser.wait(f"velmorantMap.map.getZoom() === {zoom + 1}")
        self.check("enter_on_a_button_presses_it", True)
        order = []
        self.browser.run("document.activeElement.blur(); velmorantMap.map.getContainer().focus()")
        for _ in range(8):
            self.keys(TAB)
            order.append(self.browser.run("return document.activeElement.id"))
        wanted = ["zoomIn", "zoomOut", "fitAll", "fitActive", "follow", "layers"]
        self.check("tab_reaches_every_button", order[:6] == wanted, order)
        self.browser.run("velmorantMap.map.getContainer().focus()")
        self.keys(RIGHT)
        self.pause(500)
        moved = self.browser.run("return velmorantMap.map.getCenter().lng")
        self.check("arrow_keys_move_the_map", moved > after, (after, moved))
        self.browser.run("document.getElementById('layers').focus()")
        self.keys(SPACE)
        self.check("space_opens_the_layers", self.browser.run(
            "return !document.getElementById('layers-panel').hidden"))

    def remembering(self):
        self.open()
        self.browser.run("document.getElementById('follow').click()")
        self.browser.run("document.getElementById('layers').click(); document.getElementById('grid').click()")
        self.open()
        self.check("follow_is_remembered", self.browser.run("return velmorantMap.view.follow") is False)
        self.check("layers_are_remembered", self.browser.run(
            "return velmorantMap.baseLayers.graticule.visible") is False)
        self.browser.run("localStorage.clear()")

    def reduced_motion(self):
        self.open()
        self.draw()
        self.browser.protocol("Emulation.setEmulatedMedia",
                              {"features": [{"name": "prefers-reduced-motion", "value": "reduce"}]})
        target = self.browser.run(
            "const r = velmorantMap.table.shown.get(7);"
            "MoveCar(`${r.x[61] / 1e7}|${r.y[61] / 1e7}|62|70`);"
            "return [velmorantMap.car.marker.getLatLng().lng, r.x[61] / 1e7]")
        self.check("the_car_does_not_glide_with_reduced_motion", abs(target[0] - target[1]) < 1e-6, target)
        self.browser.protocol("Emulation.setEmulatedMedia", {"features": []})

    def without_network(self):
        self.open("tiles")
        self.draw()
        self.browser.protocol("Network.enable", {})
        self.browser.protocol("Network.emulateNetworkConditions", {
            "offline": True, "latency": 0, "downloadThroughput": -1, "uploadThroughput": -1})
        self.browser.run("velmorantMap.view.userMoved(); velmorantMap.map.setView([48.85, 2.35], 8, {animate: false})")
        painted = self.browser.wait(
            "(() => { const b = velmorantMap.baseLayers.ground.front;"
            "const d = b.context.getImageData(b.canvas.width / 2, b.canvas.height / 2, 9, 9).data;"
            "return d.some((v, i) => i % 4 === 3 && v > 0); })()", 10)
        self.check("the_map_is_not_blank_without_a_network", painted)
        self.browser.wait("document.getElementById('source').textContent === velmorantMap.texts.get('tilesFailing')")
        self.check("the_page_says_that_tiles_do_not_come", True)
        self.browser.protocol("Network.emulateNetworkConditions", {
            "offline": False, "latency": 0, "downloadThroughput": -1, "uploadThroughput": -1})
        self.browser.wait("document.querySelector('#source a') !== null && "
                          "document.querySelectorAll('.leaflet-tile-loaded').length > 0", 70)
        self.check("tiles_come_back_by_themselves", True)

    def resizing(self):
        self.open()
        self.draw()
        small = self.browser.run("return velmorantMap.map.getZoom()")
        self.browser.resize(1024, 708)
        self.browser.wait(f"velmorantMap.map.getZoom() > {small} && velmorantMap.map.getSize().x === 1024")
        self.check("the_routes_fill_an_enlarged_map", True)
        self.browser.resize(338, 248)
        self.browser.wait(f"velmorantMap.map.getZoom() === {small}")
        self.check("and_fit_the_small_one_again", True)

    def chinese(self):
        self.open()
        names = self.browser.run(
            "return [...document.querySelectorAll('.controls button')].map((b) => b.getAttribute('aria-label'))")
        self.check("the_page_speaks_the_browsers_language",
                   "放大" in names and self.browser.run("return document.documentElement.lang") == "zh-Hant", names)


def main():
    server = Server(run_suite.PAGE)
    good = True
    try:
        for language, parts in (("en", ["spoken_english", "pointer_and_keys", "remembering", "reduced_motion", "resizing", "without_network"]),
                                ("zh-TW", ["chinese", "spoken_chinese"])):
            browser = Browser(language=language)
            checks = Checks(browser, server)
            try:
                for part in parts:
                    try:
                        getattr(checks, part)()
                    except RuntimeError as error:
                        checks.check(part, False, error)
            finally:
                browser.end()
            good = run_suite.report(f"behaviour, {language}", checks.results) and good
    finally:
        server.end()
    return 0 if good else 1


if __name__ == "__main__":
    os.environ.setdefault("LC_ALL", "C.UTF-8")
    sys.exit(main())
