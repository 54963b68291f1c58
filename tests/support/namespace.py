# SPDX-License-Identifier: MIT
"""Gives a test script its own network and mounts, so that real system services can run in it without
access to the host.

Call enter_namespace() before any other import: it restarts the script, and everything that the first one
has started would be left behind.
"""
import os
import shutil
import subprocess
import sys

MARK = "TROLLEO_TEST_NAMESPACE"
NETWORK = os.readlink("/proc/self/ns/net")
SKIPPED = 77  # the exit code of a test that cannot run here

# The operations that the fixtures need. A namespace may be created although it does not permit all of
# them.
PROBE = """
{ip} link set lo up &&
{ip} link add name probe type veth peer name probe-peer &&
mount -t sysfs -o ro sysfs /sys &&
mount -t tmpfs tmpfs /run
"""


def is_inside():
    """Returns whether this process runs in another network than the first call of enter_namespace()."""
    return os.environ.get(MARK, NETWORK) != NETWORK


def enter_namespace():
    """Returns inside a namespace whose loopback is up; outside it restarts the script and never returns."""
    # desktop.py is not used here, because importing it starts a session bus.
    ip = shutil.which("ip", path=f"{os.environ['PATH']}:/usr/sbin:/sbin")
    if ip is None:
        raise FileNotFoundError("ip is missing; install the package iproute2")
    if is_inside():
        subprocess.run([ip, "link", "set", "lo", "up"], check=True)
        return

    enter = ["unshare", "--net", "--mount"]
    if os.geteuid() != 0:
        enter[1:1] = ["--user", "--map-root-user"]
    probe = subprocess.run([*enter, "sh", "-c", PROBE.format(ip=ip)], stdin=subprocess.DEVNULL,
                           stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    if probe.returncode != 0:
        reason = f"no namespace of its own for the test: {probe.stderr.strip()}"
        if "CI" in os.environ:
            sys.exit(f"error: {reason}")
        print(f"skipped: {reason}", file=sys.stderr)
        sys.exit(SKIPPED)
    os.environ[MARK] = NETWORK
    sys.stdout.flush()
    os.execvp(enter[0], [*enter, sys.executable, *sys.orig_argv[1:]])
