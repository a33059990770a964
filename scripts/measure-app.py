#!/usr/bin/env python3
"""Measures the desktop application as a user would run it, in a real tray (trayer on a private
Xvfb): time from start to the tray icon shown (the program says READY=1 once its event loop runs
with the icon up), wake-ups while idle with the window closed, and resident memory with the window
closed (opened and closed once first). Everything runs in a scratch home; nothing of the user's is read or written.

usage: scripts/measure-app.py [PATH/TO/ostrelle] [--idle-seconds N]
Targets: tray icon < 300 ms, 0 wake-ups while idle, < 60 MB resident.
"""
import argparse
import importlib.machinery
import os
import shutil
import signal
import subprocess
import tempfile
import time

here = os.path.dirname(os.path.abspath(__file__))
service = importlib.machinery.SourceFileLoader("measure_service", os.path.join(here, "measure-service.py")).load_module()


def start_display(env):
    """A private X server and a tray host on it; returns both processes."""
    read, write = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten", "tcp"],
                              pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(write)
    with os.fdopen(read) as display_number:
        env["DISPLAY"] = ":" + display_number.readline().strip()
    tray = subprocess.Popen(["trayer", "--edge", "top"], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    time.sleep(1.0)  # trayer claims the tray selection within moments of starting
    return server, tray


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("app", nargs="?", default="build/ostrelle")
    parser.add_argument("--idle-seconds", type=float, default=10)
    options = parser.parse_args()
    root = tempfile.mkdtemp(prefix="ostrelle-measure-app-")
    server = tray = None
    try:
        env = service.scratch_environment(root)
        server, tray = start_display(env)
        idle = os.path.join(root, "idle.jsonl")
        with open(idle, "w") as out:
            out.write('{"t": 0, "touches": []}\n{"t": 100000, "touches": []}\n')
        arguments = ["--dry-run", "--replay", idle]

        readies = []
        for _ in range(5):
            process, ready = service.start([options.app, *arguments], env, root)
            readies.append(ready)
            process.send_signal(signal.SIGTERM)
            process.wait()
        print(f"tray icon shown after start: median {sorted(readies)[2] * 1000:.1f} ms (of 5; target < 300 ms)")

        process, _ = service.start([options.app, *arguments], env, root)
        # The window opened and closed again (Ctrl+W), as after a visit to the settings.
        subprocess.run([options.app, "--open"], env=env, check=True)
        window = subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", "^Ostrelle$"], env=env,
                                capture_output=True, text=True, check=True).stdout.split()[0]
        subprocess.run(["xdotool", "windowfocus", "--sync", window, "key", "ctrl+w"], env=env, check=True)
        for _ in range(500):
            visible = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Ostrelle$"], env=env,
                                     capture_output=True, text=True).stdout.split()
            if not visible:
                break
            time.sleep(0.01)
        else:
            raise SystemExit("the window did not close")
        time.sleep(1.0)  # let the window's going settle before counting
        before = service.context_switches(process.pid)
        time.sleep(options.idle_seconds)
        wakeups = service.context_switches(process.pid) - before
        resident = int(service.proc_status(process.pid)["VmRSS"].split()[0])
        process.send_signal(signal.SIGTERM)
        process.wait()
        print(f"wake-ups in {options.idle_seconds:g} idle seconds, window closed: {wakeups} (target 0)")
        print(f"resident memory, window closed: {resident / 1024:.1f} MB (target < 60 MB)")
    finally:
        for process in (tray, server):
            if process:
                process.terminate()
                process.wait()
        shutil.rmtree(root, ignore_errors=True)


if __name__ == "__main__":
    main()
