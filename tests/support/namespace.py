# SPDX-License-Identifier: MIT
"""Gives a test script a network and mounts of its own, so that services of the system can run in it
for real and reach nothing of the machine.

Call enter_namespace() before anything else is imported: it starts the script anew, and whatever the
first one had already started would stay behind.
"""
import os
import shutil
import subprocess
import sys

MARK = "TROLLEO_TEST_NAMESPACE"
NETWORK = os.readlink("/proc/self/ns/net")
SKIPPED = 77  # the exit code by which a test says that it could not run here

# What the fixtures need in there; a namespace that can be made does not yet permit all of it.
PROBE = """
{ip} link set lo up &&
{ip} link add name probe type veth peer name probe-peer &&
mount -t sysfs -o ro sysfs /sys &&
mount -t tmpfs tmpfs /run
"""


def is_inside():
    """Whether this runs in a network other than the one enter_namespace() was first called in."""
    return os.environ.get(MARK, NETWORK) != NETWORK


def enter_namespace():
    """Returns inside a namespace with a loopback that is up; from outside it never returns."""
    # Not by way of desktop.py, which starts a session bus when it is imported.
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
