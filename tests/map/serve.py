"""Stands in for the program that serves the map page: the page's folder, config.json, recordings'
data and street tiles, each of which can be absent or misbehave.

Behaviour is chosen by the first part of the path, so that one server serves every case:
  /plain/...    the folder alone, as on a web server
  /program/...  config.json without a provider, track/N.json
  /tiles/...    also street tiles
  /half/...     half of the tiles fail the first time they are asked for
  /hanging/...  tiles are never answered (until the server ends)
"""

import http.server
import json
import os
import struct
import sys
import threading
import zlib

TYPES = {
    ".asp": "text/html; charset=utf-8",
    ".js": "text/javascript; charset=utf-8",
    ".css": "text/css",
    ".json": "application/json",
}
UNIT = {"factor": 1.0, "label": "km/h"}
PROVIDER = {"maxZoom": 19, "attribution": "© Loopback Street Map", "link": "http://127.0.0.1/copyright"}


def png(pixel_row):
    """A picture of 256 x 256; pixel_row(y) gives its RGB bytes."""

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    rows = b"".join(b"\0" + pixel_row(y) for y in range(256))
    header = struct.pack(">IIBBBBB", 256, 256, 8, 2, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 1))
            + chunk(b"IEND", b""))


def street_tile(x, y):
    """Blocks between two streets, the ground a little different from tile to tile."""
    ground = bytes((228 + (x % 2) * 8, 224, 214 + (y % 2) * 8))
    street = bytes((255, 255, 255))
    across = street * 256
    between = street * 10 + ground * 118 + street * 6 + ground * 122
    return png(lambda row: across if row < 10 or 128 <= row < 134 else between)


def track(number):
    """The data of a recording: speeds that rise and fall, no fix in seconds 20 to 25."""
    count = 180
    return {
        "number": number,
        "name": f"10{number:04d}.MP4",
        "kind": "locked" if number % 2 else "normal",
        "utcStart": "2012-09-07T08:05:09Z",
        "second": list(range(count)),
        "speed": [abs((i * 2) % 220 - 110) for i in range(count)],
        "fix": [0 if 20 <= i < 26 else 1 for i in range(count)],
    }


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def do_GET(self):
        path = self.path.split("?")[0]
        _, behaviour, rest = (path + "//").split("/", 2)
        rest = rest.rstrip("/")
        self.server.asked.append(self.path)
        if behaviour != "plain" and self.answer_as_program(behaviour, rest):
            return
        name = os.path.normpath(os.path.join(self.server.folder, rest))
        if not name.startswith(self.server.folder) or not os.path.isfile(name):
            self.reply(404, "text/plain", b"not found")
            return
        with open(name, "rb") as file:
            self.reply(200, TYPES.get(os.path.splitext(name)[1], "application/octet-stream"), file.read())

    def answer_as_program(self, behaviour, rest):
        if rest == "config.json":
            values = {"unit": UNIT, "commands": ["whole-window"],
                      "wholeWindow": self.server.whole_window}
            if behaviour != "program":
                values["tiles"] = PROVIDER
            self.reply_json(values)
        elif rest.startswith("track/"):
            self.reply_json(track(int(rest[len("track/"):-len(".json")])))
        elif rest == "command/whole-window":
            self.server.whole_window = self.path.endswith("on=1")
            self.reply_json({"wholeWindow": self.server.whole_window})
        elif rest.startswith("tile/"):
            self.answer_tile(behaviour, rest)
        else:
            return False
        return True

    def answer_tile(self, behaviour, rest):
        _, _, x, y = rest.split("/")
        x, y = int(x), int(y)
        if behaviour == "hanging":
            self.server.ended.wait()
            return
        first = (behaviour, rest) not in self.server.tiles_asked
        self.server.tiles_asked.add((behaviour, rest))
        if behaviour == "program" or (behaviour == "half" and first and (x + y) % 2):
            self.reply(503, "text/plain", b"not now")
            return
        self.reply(200, "image/png", street_tile(x, y))

    def reply_json(self, value):
        self.reply(200, "application/json", json.dumps(value).encode())

    def reply(self, status, kind, body):
        try:
            self.send_response(status)
            self.send_header("Content-Type", kind)
            self.send_header("Content-Length", str(len(body)))
            self.send_header("Cache-Control", "no-store")
            self.end_headers()
            self.wfile.write(body)
        except (BrokenPipeError, ConnectionResetError):
            pass

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True
    block_on_close = False

    def __init__(self, folder):
        super().__init__(("127.0.0.1", 0), Handler)
        self.folder = os.path.abspath(folder)
        self.asked = []
        self.tiles_asked = set()
        self.whole_window = False
        self.ended = threading.Event()
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def address(self, behaviour):
        return f"http://127.0.0.1:{self.server_address[1]}/{behaviour}/DeskMap.asp?LangID=1028"

    def handle_error(self, request, client_address):
        """A browser that ends in the middle of a request is no error of this server."""
        if not isinstance(sys.exc_info()[1], ConnectionError):
            super().handle_error(request, client_address)

    def end(self):
        self.ended.set()
        self.shutdown()
        self.server_close()
