#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures the start of the program against that of a bare window: the time from the start to the first
painted window, the memory 3 s later, and the activity in 10 s without input.

Usage: bench/startup.py PROGRAM BARE [ROUNDS]

Both run alternately on a separate screen, each time in a new home, with their files in the disk cache.
Prints three lines of the table of scripts/bench.
"""
import contextlib
import glob
import mmap
import os
import statistics
import subprocess
import sys
import tempfile
import time

WIDTH, HEIGHT = 800, 480
COLOURS_OF_A_PAINTED_WINDOW = 8
START_GOAL, MEMORY_GOAL = 1.5, 1.6
SECONDS_TO_SETTLE, IDLE_SECONDS = 3, 10
TICKS_PER_SECOND = os.sysconf("SC_CLK_TCK")


@contextlib.contextmanager
def screen():
    """Starts an invisible X server. Provides its name, and its pixels as a memory map of 4-byte values."""
    with tempfile.TemporaryDirectory() as folder:
        read_end, write_end = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{WIDTH}x{HEIGHT}x24",
             "-fbdir", folder, "-nolisten", "tcp", "-noreset"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        try:
            with open(read_end, encoding="ascii") as pipe:
                display = ":" + pipe.readline().strip()
            with open(f"{folder}/Xvfb_screen0", "rb") as file:
                memory = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
            pixels = memoryview(memory)[-WIDTH * HEIGHT * 4:].cast("I")
            yield display, pixels
            pixels.release()
        finally:
            server.kill()
            server.wait()


def is_painted(pixels):
    return len(set(pixels[::7])) > COLOURS_OF_A_PAINTED_WINDOW


def memory_mib(pid):
    """Returns the memory of the process in MiB; shared pages are divided among the processes that share
    them."""
    with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
        for line in file:
            if line.startswith("Pss:"):
                return int(line.split()[1]) / 1024
    raise RuntimeError("the kernel tells no memory")


def cpu_ticks(pid):
    with open(f"/proc/{pid}/stat", encoding="ascii") as file:
        fields = file.read().rpartition(")")[2].split()
    return int(fields[11]) + int(fields[12])


def wake_ups(pid):
    """Returns the wake-ups of all threads since the start."""
    count = 0
    for status in glob.glob(f"/proc/{pid}/task/*/status"):
        with contextlib.suppress(FileNotFoundError), open(status, encoding="ascii") as file:
            count += sum(int(line.split()[1]) for line in file
                         if line.startswith("voluntary_ctxt_switches"))
    return count


def run(program, idle):
    """Returns the milliseconds to the first paint, the memory in MiB, and with `idle` the milliseconds
    of CPU time and the wake-ups."""
    with screen() as (display, pixels), tempfile.TemporaryDirectory() as home:
        environment = {
            "PATH": os.environ["PATH"], "HOME": home, "DISPLAY": display, "LC_ALL": "C.UTF-8",
            "XDG_RUNTIME_DIR": home, "QT_QPA_PLATFORM": "xcb",
            "TROLLEO_TILE_SERVER": "http://127.0.0.1:9", "TROLLEO_GPSD": "127.0.0.1:9",
            "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",
            "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent",
        }
        start = time.monotonic()
        process = subprocess.Popen([program], env=environment, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        try:
            while not is_painted(pixels):
                if process.poll() is not None or time.monotonic() - start > 30:
                    raise RuntimeError(f"{program} shows nothing")
                time.sleep(0.0005)
            milliseconds = (time.monotonic() - start) * 1000
            time.sleep(SECONDS_TO_SETTLE)
            memory = memory_mib(process.pid)
            before = cpu_ticks(process.pid), wake_ups(process.pid)
            if not idle:
                return milliseconds, memory, 0, 0
            time.sleep(IDLE_SECONDS)
            ticks = cpu_ticks(process.pid) - before[0]
            return (milliseconds, memory, ticks * 1000 / TICKS_PER_SECOND,
                    wake_ups(process.pid) - before[1])
        finally:
            process.kill()
            process.wait()


def line(what, ours, floor, goal):
    ratio = f"{ours / floor:8.2f}" if floor else f"{'':8}"
    print(f"{what:<34} {'':>8} {ours:12.4f} {floor:12.4f} {ratio} {goal:8.2f}", flush=True)


def main():
    program, bare = sys.argv[1:3]
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 7
    for path in (program, bare):
        run(path, False)  # loads its files into the disk cache
    ours, floor = [], []
    for _ in range(rounds):
        ours.append(run(program, False))
        floor.append(run(bare, False))
    start = [statistics.median(result[0] for result in results) for results in (ours, floor)]
    memory = [statistics.median(result[1] for result in results) for results in (ours, floor)]
    line("start to first paint", *start, START_GOAL)
    line("memory 3 s later, MiB", *memory, MEMORY_GOAL)
    _, _, cpu, wakes = run(program, True)
    line("CPU used in 10 s idle", cpu, 0, 0)
    line("wake-ups in 10 s idle, number", wakes, 0, 0)


main()
