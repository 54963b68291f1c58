# SPDX-License-Identifier: MIT
"""Real programs that Trolleo communicates with: a gpsd that plays a recorded walk, and a sound server
whose output is recorded."""
import array
import contextlib
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import tempfile
import threading
import time

from desktop import PACKAGES, is_listening, stop, tool, wait_for

PACKAGES.update({
    "gpsd": "gpsd",
    "gpsfake": "gpsd-clients",
    "pactl": "pulseaudio-utils",
    "parec": "pulseaudio-utils",
    "pulseaudio": "pulseaudio",
})


def wake_ups(pid):
    """Returns how often each thread of a process has gone to sleep so far."""
    counts = {}
    for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
        with contextlib.suppress(FileNotFoundError):  # it has just ended
            counts[task.name] = sum(int(line.split()[1])
                                    for line in (task / "status").read_text().splitlines()
                                    if line.startswith("voluntary_ctxt_switches"))
    return counts


def woken(before, after):
    """Returns the number of wake-ups between two such counts. Threads that ended between them are left
    out."""
    return sum(count - before.get(task, 0) for task, count in after.items())


def children_of(parent, name):
    """Returns the ids of the running child processes with that name."""
    children = []
    for process in pathlib.Path("/proc").glob("[1-9]*"):
        with contextlib.suppress(FileNotFoundError, ProcessLookupError):  # it has just ended
            # Process id, name in parentheses, state, and the parent's process id.
            before, rest = (process / "stat").read_text().rsplit(") ", 1)
            state, its_parent = rest.split()[:2]
            if before.endswith(f"({name}") and state != "Z" and int(its_parent) == parent:
                children.append(int(process.name))
    return children


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class NmeaHost:
    """A receiver on the network: each client gets a walk from its beginning."""

    def __init__(self, walk, seconds_per_sentence):
        self.lines = walk.splitlines(keepends=True)
        self.seconds_per_sentence = seconds_per_sentence
        self.server = socket.create_server(("127.0.0.1", 0))
        self.port = self.server.getsockname()[1]
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        while True:
            try:
                connection, _ = self.server.accept()
            except OSError:
                return  # it was stopped
            threading.Thread(target=self.play, args=[connection], daemon=True).start()

    def play(self, connection):
        with connection, contextlib.suppress(OSError):
            for line in self.lines:
                connection.sendall(line.encode())
                time.sleep(self.seconds_per_sentence)

    def stop(self):
        self.server.close()


class Receiver:
    """A gpsd that plays a walk, one sentence at each interval, and records the time of each sentence.
    With several walks it has as many receivers."""

    def __init__(self, walks, port, seconds_per_sentence, again_and_again=False):
        walks = [walks] if isinstance(walks, str) else walks
        tool("gpsd")
        self.port = port
        self.said = []  # (time, line)
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="trolleo-walk-"))
        files = [self.folder / f"walk-{index}.nmea" for index in range(len(walks))]
        for file, walk in zip(files, walks):
            file.write_text(walk)
        self.process = subprocess.Popen(
            [tool("gpsfake"), *([] if again_and_again else ["-1"]), "-q", "-P", str(port),
             "-c", str(seconds_per_sentence), *map(str, files)],
            env=dict(os.environ, TMPDIR=str(self.folder)),  # a killed gpsd leaves a socket behind
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True,
        )
        wait_for("gpsd to listen", self.listens)
        self.listener = threading.Thread(target=self.listen, daemon=True)
        self.listener.start()
        # gpsd does not answer clients while it opens what it takes for a serial line. If it has missed
        # the beginning, it tries other speeds first.
        wait_for("the walk to begin", lambda: any(line.startswith("$") for _, line in self.said), 90)

    @property
    def address(self):
        return f"127.0.0.1:{self.port}"

    def listens(self):
        return is_listening(("127.0.0.1", self.port))

    def listen(self):
        try:
            with socket.create_connection(("127.0.0.1", self.port)) as connection:
                connection.sendall(b'?WATCH={"enable":true,"nmea":true};\n')
                for line in connection.makefile("r", errors="replace"):
                    self.said.append((time.monotonic(), line))
        except OSError:
            pass  # it was killed

    def kill(self):
        """Kills gpsd and the process that feeds it."""
        if self.process.poll() is not None:
            return
        os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()
        wait_for("the port to be free", lambda: not self.listens())
        shutil.rmtree(self.folder, ignore_errors=True)


class SoundServer:
    """A PulseAudio without a device, whose output is recorded."""

    RATE = 44100  # samples per second

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="trolleo-sound-"))
        self.address = f"unix:{self.folder}/native"
        self.environment = dict(os.environ, HOME=str(self.folder), PULSE_SERVER=self.address)
        self.file = self.folder / "monitor.raw"
        self.start()

    def start(self):
        self.server = subprocess.Popen(
            [tool("pulseaudio"), "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
             "--disallow-exit", "-L", "module-null-sink sink_name=nowhere rate=44100", "-L",
             f"module-native-protocol-unix auth-anonymous=1 socket={self.folder}/native"],
            env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        )
        wait_for("the sound server", lambda: is_listening(f"{self.folder}/native"))
        self.record()

    def record(self):
        with open(self.file, "wb") as output:
            self.recorder = subprocess.Popen(
                [tool("parec"), "--device=nowhere.monitor", "--format=s16le", "--channels=1",
                 f"--rate={self.RATE}", "--latency-msec=10", "--raw"],
                env=self.environment, stdout=output, stderr=subprocess.DEVNULL,
            )
        wait_for("the recording", lambda: self.recorded() > 0)

    def end(self):
        stop(self.recorder)
        stop(self.server)

    def restart(self, away):
        """Ends the server, and starts another one at the same address after `away` seconds. The
        recording begins anew."""
        self.end()
        time.sleep(away)
        self.start()

    def replace_device(self):
        """Removes the device, which ends its streams, and adds another one. The recording begins anew."""
        stop(self.recorder)
        for command in (["unload-module", "module-null-sink"],
                        ["load-module", "module-null-sink", "sink_name=nowhere", "rate=44100"]):
            subprocess.run([tool("pactl"), *command], env=self.environment, stdout=subprocess.DEVNULL,
                           check=True)
        self.record()

    def recorded(self):
        """Returns the duration of the recording in seconds."""
        return self.file.stat().st_size / 2 / self.RATE

    def loudness(self, begin, end=None):
        """Returns the highest level, 0 to 1, in every hundredth of a second of a part of the recording."""
        samples = array.array("h")
        data = self.file.read_bytes()
        samples.frombytes(data[:len(data) // 2 * 2])
        step = self.RATE // 100
        last = len(samples) if end is None else int(end * self.RATE)
        return [max(map(abs, samples[index:index + step])) / 32768
                for index in range(int(max(0, begin) * self.RATE), last - step, step)]

    def roles(self):
        """Returns the media roles of the streams that are playing."""
        lines = subprocess.run([tool("pactl"), "list", "sink-inputs"], env=self.environment,
                               capture_output=True, text=True, check=True).stdout.splitlines()
        return [line.split('"')[1] for line in lines if "media.role" in line]

    def freeze(self):
        """Suspends the server's process, so that it no longer answers."""
        self.server.send_signal(signal.SIGSTOP)

    def stop(self):
        self.server.send_signal(signal.SIGCONT)
        self.end()
        shutil.rmtree(self.folder, ignore_errors=True)
