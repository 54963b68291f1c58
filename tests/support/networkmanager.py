# SPDX-License-Identifier: MIT
"""A real NetworkManager on a separate system bus, with virtual cables. It needs the namespace that
enter_namespace() creates: outside it would control the network of the host."""
import os
import pathlib
import shutil
import subprocess
import tempfile

from desktop import DEADLINE, PACKAGES, stop, tool, wait_for
from namespace import is_inside
from systembus import SystemBus

PACKAGES.update({
    "NetworkManager": "network-manager",
    "ip": "iproute2",
    "nmcli": "network-manager",
})

DENIAL = """
  <policy context="default">
    <deny send_interface="org.freedesktop.NetworkManager" send_member="{method}"/>
  </policy>
"""
CONFIGURATION = """
[main]
plugins=keyfile
auth-polkit=false
no-auto-default=*
dns=none
rc-manager=unmanaged
dhcp=internal

[keyfile]
path={folder}/profiles
unmanaged-devices=interface-name:*-peer

[connectivity]
enabled=false
"""
# A newly mounted, read-only /sys shows the devices of this namespace, and NetworkManager then does not
# wait for udev to announce them. The other folders hold NetworkManager's state, which cannot be
# configured; all of /run is mounted, since its own folder does not exist before the first start.
MOUNTS = {
    "/sys": "sysfs",
    "/run": "tmpfs",
    "/etc/NetworkManager": "tmpfs",
    "/var/lib/NetworkManager": "tmpfs",
}


class NetworkManager:
    def __init__(self, denied=None):
        """`denied` is a method of NetworkManager's main interface that the bus refuses."""
        if not is_inside():
            raise RuntimeError("a NetworkManager for tests runs only in a namespace of its own")
        tool("NetworkManager")  # its package contains folders that are mount points
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="trolleo-network-"))
        self.address = f"unix:path={self.folder}/bus"
        self.environment = dict(os.environ, DBUS_SYSTEM_BUS_ADDRESS=self.address, LC_ALL="C.UTF-8")
        self.log = self.folder / "log"
        self.links = []
        self.mounts = []
        self.bus = self.process = None
        try:
            for place, kind in MOUNTS.items():
                options = "ro" if kind == "sysfs" else "mode=755"
                self.run("mount", "-t", kind, "-o", options, kind, place)
                self.mounts.append(place)
            (self.folder / "profiles").mkdir()
            (self.folder / "main.conf").write_text(CONFIGURATION.format(folder=self.folder))
            self.bus = SystemBus(self.folder, DENIAL.format(method=denied) if denied else "")
            self.start()
        except BaseException:
            self.stop()
            raise

    def start(self):
        # --debug: it does not become a daemon, and logs to its output and not to the host's log.
        with open(self.log, "a") as log:
            self.process = subprocess.Popen(
                [tool("NetworkManager"), "--debug", f"--config={self.folder}/main.conf",
                 f"--config-dir={self.folder}/none", f"--system-config-dir={self.folder}/none",
                 f"--intern-config={self.folder}/intern.conf", f"--state-file={self.folder}/state",
                 f"--pid-file={self.folder}/pid"],
                env=self.environment, stdout=log, stderr=log)
        wait_for("NetworkManager", self.is_ready)

    def is_ready(self):
        if self.process.poll() is not None:
            raise RuntimeError(f"NetworkManager ended with {self.process.returncode}:\n"
                               + self.log.read_text()[-2000:])
        try:
            return self.nmcli("-g", "STARTUP", "general") == "started"
        except RuntimeError:
            return False  # not running yet

    def run(self, program, *arguments):
        """Returns the output of a program. If it fails, the exception contains its error output."""
        done = subprocess.run([program, *arguments], env=self.environment, text=True, check=False,
                              stdin=subprocess.DEVNULL, capture_output=True)
        if done.returncode != 0:
            raise RuntimeError(f"{program} {' '.join(arguments)}: {done.stderr.strip()}")
        return done.stdout.strip()

    def nmcli(self, *arguments):
        return self.run(tool("nmcli"), "--wait", str(DEADLINE), *arguments)

    def ip(self, *arguments):
        return self.run(tool("ip"), *arguments)

    def add_link(self, name):
        """Adds a network card with a cable: the link has a carrier, but no host answers."""
        self.ip("link", "add", "name", name, "type", "veth", "peer", "name", f"{name}-peer")
        self.links.append(name)
        self.ip("link", "set", f"{name}-peer", "up")
        self.ip("link", "set", name, "up")
        wait_for(f"NetworkManager to manage {name}", lambda: self.state(name) == "disconnected")

    def state(self, name):
        """Returns NetworkManager's name for the state of a link."""
        states = self.nmcli("-g", "DEVICE,STATE", "device").splitlines()
        return dict(line.split(":", 1) for line in states).get(name)

    def plug(self, name, is_plugged):
        """Plugs or unplugs the cable of a link."""
        self.ip("link", "set", f"{name}-peer", "up" if is_plugged else "down")

    def add_profile(self, name, device, address, autoconnect=False):
        """Adds a profile with a fixed address, such as 10.0.0.1/24. Returns its UUID."""
        self.nmcli("connection", "add", "type", "ethernet", "con-name", name, "ifname", device,
                   "autoconnect", "yes" if autoconnect else "no", "ipv4.method", "manual",
                   "ipv4.addresses", address, "ipv6.method", "disabled")
        return self.nmcli("-g", "connection.uuid", "connection", "show", "id", name)

    def up(self, name):
        self.nmcli("connection", "up", "id", name)

    def down(self, name):
        self.nmcli("connection", "down", "id", name)

    def delete(self, name):
        self.nmcli("connection", "delete", "id", name)

    def active(self):
        """Returns the UUIDs of the activated profiles, without the one that NetworkManager creates for
        the loopback."""
        lines = self.nmcli("-g", "UUID,TYPE,STATE", "connection", "show", "--active").splitlines()
        rows = [line.split(":") for line in lines]
        return {uuid for uuid, kind, state in rows if state == "activated" and kind != "loopback"}

    def uuid_of(self, device):
        """Returns the UUID of the profile that is active on a device, or None."""
        lines = self.nmcli("-g", "DEVICE,UUID", "connection", "show", "--active").splitlines()
        return dict(line.split(":") for line in lines).get(device)

    def kill(self):
        """Kills NetworkManager; the links remain unchanged."""
        self.process.kill()
        self.process.wait()

    def restart(self):
        stop(self.process)
        self.start()

    def stop(self):
        if self.process is not None:
            stop(self.process)
        if self.bus is not None:
            self.bus.stop()
        for name in self.links:
            if pathlib.Path("/sys/class/net", name).exists():
                self.ip("link", "delete", name)
        for place in reversed(self.mounts):
            self.run("umount", "--lazy", place)
        shutil.rmtree(self.folder, ignore_errors=True)
