#!/usr/bin/env python3
"""Long tests of the update against a real web server.

  endurance.py kill DRIVER CATALOGUE [RUNS]    kills a run of 40 files at random moments
  endurance.py full DRIVER CATALOGUE           a disk (a small tmpfs) that becomes full, one that
                                               may only be read, and a file that cannot be replaced;
                                               needs root
  endurance.py speed DRIVER CATALOGUE [FILES]  the time against curl for the same list

Each ends with 0 when all was well, and prints what it counted."""
import contextlib
import os
import random
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

MAIN = "Velmorant DVR Tools"


@contextlib.contextmanager
def web_server(root):
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        port = probe.getsockname()[1]
    temporary = "".join(f"{kind}_temp_path {root}/tmp_{kind};\n"
                        for kind in ("client_body", "proxy", "fastcgi", "uwsgi", "scgi"))
    user = "user root;\n" if os.geteuid() == 0 else ""
    configuration = os.path.join(root, "nginx.conf")
    with open(configuration, "w", encoding="utf-8") as file:
        file.write(f"{user}daemon off;\npid {root}/nginx.pid;\nevents {{}}\nhttp {{\n{temporary}"
                   f"access_log off;\nkeepalive_requests 10000;\nserver {{\n"
                   f"listen 127.0.0.1:{port};\nroot {root};\n}}\n}}\n")
    program = shutil.which("nginx") or "/usr/sbin/nginx"
    server = subprocess.Popen([program, "-c", configuration, "-e", f"{root}/error.log"])
    try:
        for _ in range(200):
            with socket.socket() as client:
                if client.connect_ex(("127.0.0.1", port)) == 0:
                    break
            time.sleep(0.025)
        yield f"http://127.0.0.1:{port}/"
    finally:
        server.terminate()
        server.wait()


def write(folder, name, content):
    path = os.path.join(folder, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(content)


def read(folder, name):
    try:
        with open(os.path.join(folder, name), "rb") as file:
            return file.read()
    except FileNotFoundError:
        return None


def make_release(folder, files, size, word):
    """The names of a release and their contents; the main program never changes."""
    contents = {f"data/{i % 7}/file{i}.bin": (f"{word} {i} ".encode() * size)[:size - i % 50]
                for i in range(files)}
    contents[MAIN] = b"program"
    for name, content in contents.items():
        write(folder, name, content)
    return contents


def publish(catalogue, release, served, version):
    subprocess.run([catalogue, "publish", release, served, "--version", version], check=True,
                   stdout=subprocess.DEVNULL)
    subprocess.run([catalogue, "check", served], check=True, stdout=subprocess.DEVNULL)


def run_whole(driver, program, base):
    subprocess.run([driver, program, base], check=True, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL)


def broken_files(program, old, new):
    return [name for name in old if read(program, name) not in (old[name], new[name])]


def kill(driver, catalogue, runs=50):
    with tempfile.TemporaryDirectory() as ground:
        served, program = f"{ground}/served", f"{ground}/program"
        os.makedirs(served)
        old = make_release(f"{ground}/old", 40, 200_000, "old")
        new = make_release(f"{ground}/new", 40, 200_000, "new")
        publish(catalogue, f"{ground}/old", served, "R1")
        with web_server(served) as base:
            shutil.copytree(f"{ground}/old", program)
            run_whole(driver, program, base)
            old_catalogue = read(program, "config.mp4")
            publish(catalogue, f"{ground}/new", served, "R2")
            shutil.copytree(program, f"{ground}/state")
            start = time.monotonic()
            run_whole(driver, program, base)
            whole = time.monotonic() - start
            new_catalogue = read(program, "config.mp4")
            tried, interrupted, faults, mixed = 0, 0, [], 0
            while interrupted < runs and tried < 10 * runs:
                tried += 1
                shutil.rmtree(program)
                shutil.copytree(f"{ground}/state", program)
                process = subprocess.Popen([driver, program, base], stdout=subprocess.DEVNULL,
                                           stderr=subprocess.DEVNULL)
                time.sleep(random.uniform(0, whole))
                process.send_signal(signal.SIGKILL)
                interrupted += process.wait() == -signal.SIGKILL
                faults += broken_files(program, old, new)
                present = read(program, "config.mp4")
                replaced = sum(read(program, name) == new[name] for name in new)
                mixed += 1 < replaced < len(new)
                if present not in (old_catalogue, new_catalogue):
                    faults.append("config.mp4")
                if present == new_catalogue and replaced < len(new):
                    faults.append("catalogue before its files")
                run_whole(driver, program, base)
                faults += [name for name in new if read(program, name) != new[name]]
                faults += [name for _, _, names in os.walk(program) for name in names
                           if name.endswith(".part~")]
            print(f"{tried} runs of 40 files, {interrupted} killed, {mixed} of them between two "
                  f"renames; a whole run takes {whole * 1000:.0f} ms; faults: {len(faults)} {faults[:5]}")
            return not faults and interrupted == runs


def in_private_mounts(command, driver, catalogue):
    """Calls this program again where its mounts are seen by nobody else and end with it."""
    code = subprocess.run(["unshare", "--mount", "--propagation", "private", sys.executable,
                           os.path.abspath(__file__), command, driver, catalogue],
                          check=False).returncode
    return code == 0


def full(driver, catalogue):
    return in_private_mounts("full-mounted", driver, catalogue)


def mount(*arguments):
    subprocess.run(["mount", *arguments], check=True)


def full_mounted(driver, catalogue):
    with tempfile.TemporaryDirectory() as ground:
        served, program = f"{ground}/served", f"{ground}/program"
        os.makedirs(served)
        os.makedirs(program)
        mount("-t", "tmpfs", "-o", "size=6m", "tmpfs", program)
        try:
            old = make_release(f"{ground}/old", 20, 100_000, "old")
            new = make_release(f"{ground}/new", 20, 600_000, "new")
            shutil.copytree(f"{ground}/old", program, dirs_exist_ok=True)
            publish(catalogue, f"{ground}/new", served, "R2")
            steps, faults = [], []
            with web_server(served) as base:
                def step(name, says):
                    run = subprocess.run([driver, program, base], check=False,
                                         stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
                    told = run.stderr.decode().strip().splitlines()[-1:]
                    print(f"{name}: ended with {run.returncode} {told}")
                    steps.append(run.returncode == (1 if says else 0)
                                 and (not says or says in "".join(told)))
                    faults.extend(broken_files(program, old, new))
                    if says and read(program, "config.mp4") is not None:
                        faults.append("catalogue")

                step("full disk", "No space left")
                mount("-o", "remount,size=64m,ro", program)
                step("disk that may only be read", "package manager")
                mount("-o", "remount,rw", program)
                busy = f"{program}/data/1/file1.bin"
                mount("--bind", busy, busy)
                step("file that cannot be replaced", "Device or resource busy")
                subprocess.run(["umount", busy], check=True)
                step("with room", "")
                faults += [name for name in new if read(program, name) != new[name]]
            print(f"faults: {len(faults)} {faults[:5]}")
            return all(steps) and not faults
        finally:
            subprocess.run(["umount", program], check=True)


def speed(driver, catalogue, files=500):
    with tempfile.TemporaryDirectory() as ground:
        served = f"{ground}/served"
        os.makedirs(served)
        make_release(f"{ground}/new", files, 2000, "new")
        publish(catalogue, f"{ground}/new", served, "R1")
        with web_server(served) as base:
            names = sorted(os.listdir(f"{served}/update/files"))
            lines = [f'url = "{base}update/files/{name}"\noutput = "{name}"\n' for name in names]
            write(ground, "list", "".join(lines).encode())
            ours, inside, theirs = [], [], []
            for i in range(7):
                target = f"{ground}/curl{i}"
                os.makedirs(target)
                start = time.monotonic()
                subprocess.run(["curl", "-s", "-K", f"{ground}/list"], cwd=target, check=True)
                theirs.append(time.monotonic() - start)
                program = f"{ground}/program{i}"
                os.makedirs(program)
                write(program, MAIN, b"program")
                start = time.monotonic()
                told = subprocess.run([driver, program, base], check=True,
                                      stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
                ours.append(time.monotonic() - start)
                inside.append(int(told))
        update, curl = sorted(ours)[3], sorted(theirs)[3]
        print(f"{files} files: update {update * 1000:.0f} ms ({sorted(inside)[3]} ms from opening "
              f"to end), curl {curl * 1000:.0f} ms, ratio {update / curl:.2f} (medians of 7)")
        return update / curl <= 1.5


def main():
    commands = {"kill": kill, "full": full, "full-mounted": full_mounted, "speed": speed}
    if len(sys.argv) < 4 or sys.argv[1] not in commands:
        print(__doc__, file=sys.stderr)
        return 2
    driver, catalogue = (os.path.abspath(path) for path in sys.argv[2:4])
    return 0 if commands[sys.argv[1]](driver, catalogue, *map(int, sys.argv[4:])) else 1


if __name__ == "__main__":
    sys.exit(main())
