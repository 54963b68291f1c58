#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures the start of the program against that of a bare window: the instructions and the time from the
start to the first painted window, the memory 3 s later, and the activity in 10 s without input. Valgrind
counts the instructions, which hardly depend on the machine and on what else it does.

Usage: bench/startup.py PROGRAM BARE [ROUNDS]

Both run alternately on a separate screen, in the home of an earlier start, with their files in the disk
cache and, as root, without ("cold"). The first start of all, which makes the database, is compared with a
later one; its home is beside PROGRAM, on a disk that has to be waited for. Prints lines of the table of
scripts/bench.
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
INSTRUCTIONS_GOAL, START_GOAL, COLD_GOAL, FIRST_GOAL, MEMORY_GOAL = 1.65, 1.3, 1.45, 1.5, 1.27
DROP_CACHES = "/proc/sys/vm/drop_caches"
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


def drop_caches():
    """Makes the next start read its files from the disk. Only root may."""
    os.sync()
    with open(DROP_CACHES, "w", encoding="ascii") as file:
        file.write("1")


def start(program, home, before=lambda: None):
    """Returns the milliseconds to the first paint, and the memory in MiB when it has come to rest."""
    with screen() as (display, pixels):
        before()
        with shown([program], home, pixels, display) as (process, milliseconds):
            time.sleep(SECONDS_TO_SETTLE)
            return milliseconds, memory_mib(process.pid)


def first_and_later_start(program):
    """Returns the milliseconds to the first paint in a new home, and there once more."""
    with tempfile.TemporaryDirectory(dir=os.path.dirname(program)) as home:
        return start(program, home)[0], start(program, home)[0]


def idle(program, home):
    """Returns the milliseconds of CPU time and the wake-ups of a window at rest."""
    with screen() as (display, pixels), shown([program], home, pixels, display) as (process, _):
        time.sleep(SECONDS_TO_SETTLE)
        ticks, wakes = cpu_ticks(process.pid), wake_ups(process.pid)
        time.sleep(IDLE_SECONDS)
        return ((cpu_ticks(process.pid) - ticks) * 1000 / TICKS_PER_SECOND,
                wake_ups(process.pid) - wakes)


def line(what, ours, floor, goal):
    ratio = f"{ours / floor:8.2f}" if floor else f"{'':8}"
    print(f"{what:<34} {'':>8} {ours:12.4f} {floor:12.4f} {ratio} {goal:8.2f}", flush=True)


def median(results, index=0):
    return statistics.median(result[index] for result in results)


def main():
    program, bare = (os.path.abspath(path) for path in sys.argv[1:3])
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 7
    with tempfile.TemporaryDirectory() as our_home, tempfile.TemporaryDirectory() as bare_home:
        homes = {program: our_home, bare: bare_home}

        def alternately(before=lambda: None):
            results = {program: [], bare: []}
            for _ in range(rounds):
                for path, home in homes.items():
                    results[path].append(start(path, home, before))
            return results[program], results[bare]

        for path, home in homes.items():
            start(path, home)  # makes its files, and loads them into the disk cache
        if shutil.which("valgrind"):
            line("start, million instructions", millions_of_instructions(program),
                 millions_of_instructions(bare), INSTRUCTIONS_GOAL)
        ours, floor = alternately()
        line("start to first paint", median(ours), median(floor), START_GOAL)
        firsts = [first_and_later_start(program) for _ in range(rounds)]
        line("first start of all, of a later", median(firsts), median(firsts, 1), FIRST_GOAL)
        line("memory 3 s later, MiB", median(ours, 1), median(floor, 1), MEMORY_GOAL)
        if os.access(DROP_CACHES, os.W_OK):
            cold, cold_floor = alternately(drop_caches)
            line("start to first paint, cold", median(cold), median(cold_floor), COLD_GOAL)
        cpu, wakes = idle(program, our_home)
        line("CPU used in 10 s idle", cpu, 0, 0)
        line("wake-ups in 10 s idle, number", wakes, 0, 0)


main()
