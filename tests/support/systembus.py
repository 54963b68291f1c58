# SPDX-License-Identifier: MIT
"""A separate system bus for a test, with all operations allowed."""
import subprocess

from desktop import is_listening, stop, tool, wait_for

CONFIGURATION = """
<busconfig>
  <type>system</type>
  <listen>{address}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_type="method_call"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow receive_sender="*" eavesdrop="true"/>
  </policy>
  {more}
</busconfig>
"""


class SystemBus:
    def __init__(self, folder, more="", **options):
        """It uses a folder of the caller. `more` is appended to its configuration, and `options` are
        passed to its process."""
        self.address = f"unix:path={folder}/bus"
        (folder / "bus.conf").write_text(CONFIGURATION.format(address=self.address, more=more))
        options = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL} | options
        self.process = subprocess.Popen(
            [tool("dbus-daemon"), f"--config-file={folder}/bus.conf", "--nofork"], **options)
        try:
            wait_for("the system bus", lambda: is_listening(f"{folder}/bus"))
        except BaseException:
            self.stop()
            raise

    def stop(self):
        stop(self.process)
