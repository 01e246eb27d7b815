"""Debian's Chromium through its driver, by the WebDriver protocol over HTTP."""

import base64
import json
import shutil
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

ARGUMENTS = [
    "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
    "--disable-background-networking", "--disable-component-update", "--disable-sync",
    "--hide-scrollbars",
]


class Browser:
    def __init__(self, width=338, height=248, language="en"):
        self.folder = tempfile.mkdtemp(prefix="velmorant-map-")
        self.log = open(f"{self.folder}/driver.log", "w+", encoding="utf-8")
        self.driver = subprocess.Popen(
            ["chromedriver", "--port=0"], stdout=self.log, stderr=subprocess.STDOUT)
        try:
            self.base = f"http://127.0.0.1:{self.port()}"
            options = {
                "args": ARGUMENTS + [f"--user-data-dir={self.folder}/profile",
                                     f"--accept-lang={language}", f"--lang={language}"],
                "prefs": {"intl.accept_languages": language},
            }
            wanted = {"browserName": "chrome", "goog:chromeOptions": options,
                      "goog:loggingPrefs": {"browser": "ALL"}}
            answer = self.request("POST", "/session", {"capabilities": {"alwaysMatch": wanted}})
            self.base += f"/session/{answer['sessionId']}"
            self.resize(width, height)
        except BaseException:
            self.end()
            raise

    def port(self):
        for _ in range(300):
            self.log.seek(0)
            for line in self.log:
                if "started successfully on port" in line:
                    return int(line.split("on port")[1].strip(" .\n"))
            time.sleep(0.1)
        raise RuntimeError("chromedriver does not start")

    def request(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        request = urllib.request.Request(
            self.base + path, data, {"Content-Type": "application/json"}, method=method)
        try:
            with urllib.request.urlopen(request, timeout=180) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise RuntimeError(error.read().decode()[:2000]) from error

    def protocol(self, command, parameters):
        return self.request("POST", "/goog/cdp/execute", {"cmd": command, "params": parameters})

    def resize(self, width, height):
        self.protocol("Emulation.setDeviceMetricsOverride",
                      {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})

    def open(self, address):
        self.request("POST", "/url", {"url": address})

    def run(self, script, *arguments):
        return self.request("POST", "/execute/sync", {"script": script, "args": list(arguments)})

    def wait(self, script, seconds=60):
        """The first true value of the script's expression."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            value = self.run(f"return {script}")
            if value:
                return value
            time.sleep(0.05)
        raise RuntimeError(f"waited {seconds} s for: {script}")

    def picture(self, name):
        with open(name, "wb") as file:
            file.write(base64.b64decode(self.request("GET", "/screenshot")))

    def console(self):
        return self.request("POST", "/se/log", {"type": "browser"})

    def end(self):
        try:
            if "/session/" in getattr(self, "base", ""):
                self.request("DELETE", "")
        finally:
            self.driver.terminate()
            self.driver.wait(20)
            self.log.close()
            shutil.rmtree(self.folder, ignore_errors=True)
