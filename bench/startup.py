#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures the start of the program against that of a bare window: the instructions and the time from the
start to the first painted window, the memory 3 s later, and the activity in 10 s without input. Valgrind
counts the instructions, which hardly depend on the machine and on what else it does.

Usage: bench/startup.py PROGRAM BARE [ROUNDS]

Both run alternately on a separate screen, each time in a new home, with their files in the disk cache.
Prints lines of the table of scripts/bench.
"""
import contextlib
import glob
import mmap
import os
import re
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time

WIDTH, HEIGHT = 800, 480
COLOURS_OF_A_PAINTED_WINDOW = 8
INSTRUCTIONS_GOAL, START_GOAL, MEMORY_GOAL = 1.65, 1.5, 1.6
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


@contextlib.contextmanager
def shown(command, home, pixels, display, seconds=30):
    """Runs a program in a home, and provides its process once it has painted its window."""
    environment = {
        "PATH": os.environ["PATH"], "HOME": home, "DISPLAY": display, "LC_ALL": "C.UTF-8",
        "XDG_RUNTIME_DIR": home, "QT_QPA_PLATFORM": "xcb",
        "TROLLEO_TILE_SERVER": "http://127.0.0.1:9", "TROLLEO_GPSD": "127.0.0.1:9",
        "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",
        "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent",
    }
    start = time.monotonic()
    process = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    try:
        while not is_painted(pixels):
            if process.poll() is not None or time.monotonic() - start > seconds:
                raise RuntimeError(f"{command} shows nothing")
            time.sleep(0.0005)
        yield process, (time.monotonic() - start) * 1000
    finally:
        process.kill()
        process.wait()


def millions_of_instructions(program):
    """Returns the instructions of a second start, in the home of a first one, until the window has come
    to rest."""
    with tempfile.TemporaryDirectory() as home:
        with screen() as (display, pixels), shown([program], home, pixels, display):
            pass
        log = os.path.join(home, "log")
        count = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={home}/calls",
                 f"--log-file={log}", program]
        with screen() as (display, pixels), shown(count, home, pixels, display, 200) as (process, _):
            time.sleep(SECONDS_TO_SETTLE)
            # A signal that ends both programs at once, so that no end is counted.
            process.send_signal(signal.SIGALRM)
            process.wait()
        with open(log, encoding="utf-8") as file:
            return int(re.search(r"Collected : (\d+)", file.read()).group(1)) / 1e6


def run(program, idle):
    """Returns the milliseconds to the first paint, the memory in MiB, and with `idle` the milliseconds
    of CPU time and the wake-ups."""
    with tempfile.TemporaryDirectory() as home, screen() as (display, pixels):
        with shown([program], home, pixels, display) as (process, milliseconds):
            time.sleep(SECONDS_TO_SETTLE)
            memory = memory_mib(process.pid)
            before = cpu_ticks(process.pid), wake_ups(process.pid)
            if not idle:
                return milliseconds, memory, 0, 0
            time.sleep(IDLE_SECONDS)
            ticks = cpu_ticks(process.pid) - before[0]
            return (milliseconds, memory, ticks * 1000 / TICKS_PER_SECOND,
                    wake_ups(process.pid) - before[1])


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
    if shutil.which("valgrind"):
        line("start, million instructions", millions_of_instructions(program),
             millions_of_instructions(bare), INSTRUCTIONS_GOAL)
    start = [statistics.median(result[0] for result in results) for results in (ours, floor)]
    memory = [statistics.median(result[1] for result in results) for results in (ours, floor)]
    line("start to first paint", *start, START_GOAL)
    line("memory 3 s later, MiB", *memory, MEMORY_GOAL)
    _, _, cpu, wakes = run(program, True)
    line("CPU used in 10 s idle", cpu, 0, 0)
    line("wake-ups in 10 s idle, number", wakes, 0, 0)


main()
