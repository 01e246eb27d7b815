#!/usr/bin/env python3
"""Starts nginx on loopback with the operator's configuration (server/velmorant-map.conf), checks what
it serves, and runs the map page's suite against it."""

import os
import shutil
import socket
import subprocess
import sys
import tempfile
import time
import urllib.error
import urllib.request

import run_suite
from browser import Browser

ROOT = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
CATALOGUE = b"catalogue of the update folder"


def free_port():
    with socket.socket() as listener:
        listener.bind(("127.0.0.1", 0))
        return listener.getsockname()[1]


class Nginx:
    def __init__(self, site):
        self.folder = tempfile.mkdtemp(prefix="velmorant-nginx-")
        shutil.copytree(os.path.join(ROOT, "resources", "map"), f"{self.folder}/srv/map")
        os.makedirs(f"{self.folder}/srv/update")
        with open(f"{self.folder}/srv/update/remote.rar", "wb") as file:
            file.write(CATALOGUE)
        port = free_port()
        self.base = f"http://127.0.0.1:{port}/"
        with open(site, encoding="utf-8") as file:
            text = file.read()
        if "listen 80;" not in text or "/srv/velmorant/" not in text:
            raise RuntimeError("the configuration no longer names what this test replaces")
        text = text.replace("listen 80;", f"listen 127.0.0.1:{port};")
        text = text.replace("/srv/velmorant/", f"{self.folder}/srv/")
        user = "user root;" if os.geteuid() == 0 else ""
        with open(f"{self.folder}/nginx.conf", "w", encoding="utf-8") as file:
            file.write(f"{user} pid {self.folder}/pid; error_log {self.folder}/error.log;\n"
                       "events {}\nhttp { include /etc/nginx/mime.types; access_log off;\n"
                       f"client_body_temp_path {self.folder}/body; proxy_temp_path {self.folder}/proxy;\n"
                       f"fastcgi_temp_path {self.folder}/fastcgi; uwsgi_temp_path {self.folder}/uwsgi;\n"
                       f"scgi_temp_path {self.folder}/scgi;\n{text}\n}}\n")
        command = ["nginx", "-p", self.folder, "-c", f"{self.folder}/nginx.conf",
                   "-e", f"{self.folder}/error.log", "-g", "daemon off;"]
        subprocess.run(command + ["-t"], check=True, stderr=subprocess.PIPE)
        self.process = subprocess.Popen(command)
        self.wait()

    def wait(self):
        for _ in range(100):
            try:
                if self.get("DeskMap.asp")[0] == 200:
                    return
            except urllib.error.URLError:
                time.sleep(0.1)
        raise RuntimeError("nginx does not answer")

    def get(self, path, method="GET"):
        request = urllib.request.Request(self.base + path, method=method,
                                         data=b"" if method == "POST" else None)
        try:
            with urllib.request.urlopen(request, timeout=10) as answer:
                return answer.status, answer.headers, answer.read()
        except urllib.error.HTTPError as error:
            return error.code, error.headers, error.read()

    def end(self):
        self.process.terminate()
        self.process.wait(20)
        shutil.rmtree(self.folder, ignore_errors=True)


def checks(nginx):
    def served(name, path, status, kind=None, body=None, method="GET"):
        got = nginx.get(path, method)
        detail = ""
        if got[0] != status:
            detail = f"status {got[0]} instead of {status}"
        elif kind is not None and not (got[1].get("Content-Type") or "").startswith(kind):
            detail = f"type {got[1].get('Content-Type')} instead of {kind}"
        elif body is not None and got[2] != body:
            detail = f"{len(got[2])} other bytes"
        return {"name": name, "ok": detail == "", "detail": detail}

    with open(os.path.join(ROOT, "resources", "map", "DeskMap.asp"), "rb") as file:
        page = file.read()
    policy = nginx.get("DeskMap.asp")[1].get("Content-Security-Policy") or ""
    return [
        served("page_is_html", "DeskMap.asp?LangID=1028", 200, "text/html; charset=utf-8", page),
        served("scripts_are_scripts", "js/main.js", 200, "application/javascript"),
        served("world_is_json", "vendor/world-atlas/countries-50m.json", 200, "application/json"),
        served("update_catalogue_is_served_as_it_is", "update/remote.rar", 200, "application/octet-stream",
               CATALOGUE),
        served("absent_update_is_not_found", "update/other.exe", 404),
        served("recordings_are_not_found", "track/7.json", 404),
        served("commands_are_not_found", "command/whole-window?on=1", 404),
        served("folders_are_not_listed", "js/", 404),
        served("update_folder_is_not_listed", "update/", 403),
        served("nothing_outside_the_folders", "update/..%2f..%2fnginx.conf", 400),
        served("only_reading", "DeskMap.asp", 403, method="POST"),
        {"name": "policy_forbids_foreign_scripts",
         "ok": "default-src 'none'" in policy and "script-src 'self';" in policy, "detail": policy},
    ]


def main():
    nginx = Nginx(os.path.join(ROOT, "server", "velmorant-map.conf"))
    try:
        good = run_suite.report("nginx", checks(nginx))
        browser = Browser()
        try:
            address = f"{nginx.base}DeskMap.asp?LangID=1028"
            good = run_suite.report("page on nginx", run_suite.run(browser, address, "plain")) and good
        finally:
            browser.end()
    finally:
        nginx.end()
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
