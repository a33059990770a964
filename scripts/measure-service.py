#!/usr/bin/env python3
"""Measures the background service as a user would run it: time from start to ready, wake-ups
while idle, CPU time while a 125 Hz three-finger stream plays through `run --replay`, and resident
memory. Everything runs in a scratch home; nothing of the user's is read or written.

usage: scripts/measure-service.py [PATH/TO/ostrelle-cli] [--stream-seconds N] [--idle-seconds N]
Targets: ready < 50 ms, 0 wake-ups in 10 idle seconds, < 0.5 % of one core, < 10 MB resident.
"""
import argparse
import os
import shutil
import signal
import socket
import subprocess
import tempfile
import time

FRAME_INTERVAL = 1 / 125  # seconds: the report rate of a typical touchpad


def scratch_environment(root):
    env = {"PATH": os.environ.get("PATH", "/usr/bin:/bin"), "TMPDIR": root}
    for variable, name in [("HOME", "home"), ("XDG_CONFIG_HOME", "config"), ("XDG_STATE_HOME", "state"),
                           ("XDG_DATA_HOME", "data"), ("XDG_CACHE_HOME", "cache"), ("XDG_RUNTIME_DIR", "runtime")]:
        path = os.path.join(root, name)
        os.makedirs(path, mode=0o700, exist_ok=True)
        env[variable] = path
    return env


def write_stream(path, seconds):
    """Three fingers that swipe back and forth across the pad, lifting between strokes."""
    with open(path, "w") as out:
        t, frame, finger_id = 0.0, 0, 1
        while t < seconds:
            phase = frame % 100  # 80 frames moving, 20 lifted: 0.8 s strokes
            if phase < 80:
                x = 0.2 + 0.6 * phase / 80 if (frame // 100) % 2 == 0 else 0.8 - 0.6 * phase / 80
                touches = [[finger_id + i, round(x + 0.05 * i, 4), 0.5] for i in range(3)]
                out.write('{"t": %.4f, "touches": %s}\n' % (t, str(touches)))
            elif phase == 80:
                out.write('{"t": %.4f, "touches": []}\n' % t)
                finger_id += 3
            frame += 1
            t = frame * FRAME_INTERVAL


def proc_status(pid):
    with open(f"/proc/{pid}/status") as status:
        return dict(line.rstrip("\n").split(":\t", 1) for line in status if ":\t" in line)


def context_switches(pid):
    total = 0
    for task in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{task}/status") as status:
            for line in status:
                if "ctxt_switches" in line:
                    total += int(line.split(":")[1])
    return total


def start(command, env, root):
    """Starts a program that tells systemd when it is ready; returns it and the seconds until it
    said READY=1."""
    notify_path = os.path.join(root, "notify.sock")
    if os.path.exists(notify_path):
        os.unlink(notify_path)
    notify = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    notify.bind(notify_path)
    notify.settimeout(10)
    began = time.monotonic()
    process = subprocess.Popen(command, env={**env, "NOTIFY_SOCKET": notify_path},
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    while b"READY=1" not in notify.recv(512):
        pass
    ready = time.monotonic() - began
    notify.close()
    return process, ready


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("cli", nargs="?", default="build/ostrelle-cli")
    parser.add_argument("--stream-seconds", type=float, default=60)
    parser.add_argument("--idle-seconds", type=float, default=10)
    options = parser.parse_args()
    root = tempfile.mkdtemp(prefix="ostrelle-measure-")
    try:
        env = scratch_environment(root)
        idle_recording = os.path.join(root, "idle.jsonl")
        with open(idle_recording, "w") as out:
            out.write('{"t": 0, "touches": []}\n{"t": 100000, "touches": []}\n')

        readies = []
        for _ in range(5):
            process, ready = start([options.cli, "run", "--replay", idle_recording], env, root)
            readies.append(ready)
            process.send_signal(signal.SIGTERM)
            process.wait()
        print(f"ready after start: median {sorted(readies)[2] * 1000:.1f} ms (of 5; target < 50 ms)")

        process, _ = start([options.cli, "run", "--replay", idle_recording], env, root)
        time.sleep(0.2)  # let start-up work settle before counting
        before = context_switches(process.pid)
        time.sleep(options.idle_seconds)
        wakeups = context_switches(process.pid) - before
        process.send_signal(signal.SIGTERM)
        process.wait()
        print(f"wake-ups in {options.idle_seconds:g} idle seconds: {wakeups} (target 0)")

        stream = os.path.join(root, "stream.jsonl")
        write_stream(stream, options.stream_seconds)
        began = time.monotonic()
        process, _ = start([options.cli, "run", "--replay", stream], env, root)
        # Read from /proc while it runs and once it has ended but is not yet reaped: the rusage
        # of wait4 would also count this script's memory, which the child had before its exec.
        peak_kb, cpu = 0, 0.0
        while True:
            status = proc_status(process.pid)
            peak_kb = max(peak_kb, int(status.get("VmHWM", "0 kB").split()[0]))
            if status["State"].startswith("Z"):
                with open(f"/proc/{process.pid}/stat") as stat:
                    fields = stat.read().rsplit(")", 1)[1].split()
                cpu = (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
                break
            time.sleep(0.2)
        elapsed = time.monotonic() - began
        process.wait()
        print(f"125 Hz three-finger stream for {elapsed:.1f} s: CPU {cpu:.2f} s = "
              f"{100 * cpu / elapsed:.2f} % of one core (target < 0.5 %)")
        print(f"peak resident memory: {peak_kb / 1024:.1f} MB (target < 10 MB)")
    finally:
        shutil.rmtree(root, ignore_errors=True)


if __name__ == "__main__":
    main()
