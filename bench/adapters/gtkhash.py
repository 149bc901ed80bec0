#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""usage: gtkhash.py FUNCTION SCALE FILE

Lets GtkHash, which has the C code of MD6's authors, hash one file, and prints how many seconds of processor time its
hashing thread took, times SCALE. GtkHash has a window only, so it wants a display; the thread that draws does not count.
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import time

TICKS = os.sysconf("SC_CLK_TCK")
POLL = 0.2
STARTING, SETTLED = 15, 5  # polls without any work until it is given up, or done


def seconds_of(task):
    """Processor time of a thread, 0 when it has just ended."""
    try:
        fields = (task / "stat").read_text(encoding="ascii").rsplit(")", 1)[1].split()
    except OSError:
        return 0.0
    return (int(fields[11]) + int(fields[12])) / TICKS


def seconds_of_threads(process):
    """Processor time of every thread but the first, which draws."""
    return [seconds_of(task) for task in pathlib.Path(f"/proc/{process}/task").iterdir() if task.name != str(process)]


def hashing_seconds(process):
    """The time of the busiest thread once it does nothing more."""
    busiest, idle = 0.0, 0
    while idle < (SETTLED if busiest > 0 else STARTING):
        time.sleep(POLL)
        now = max(seconds_of_threads(process), default=0.0)
        idle = 0 if now > busiest else idle + 1
        busiest = max(busiest, now)
    return busiest


def main():
    function, scale, path = sys.argv[1:]
    with tempfile.TemporaryDirectory(prefix="fyrn-gtkhash-") as home:
        settings = pathlib.Path(home, "glib-2.0", "settings")
        settings.mkdir(parents=True)
        (settings / "keyfile").write_text(f"[org/gtkhash]\nhash-functions=['{function}']\n", encoding="ascii")
        environment = {**os.environ, "XDG_CONFIG_HOME": home, "GSETTINGS_BACKEND": "keyfile", "NO_AT_BRIDGE": "1"}
        any_digest = "0" * 64  # with a digest to compare with it starts by itself
        command = ["gtkhash", "--function", function, "--check", any_digest, path]
        with subprocess.Popen(command, env=environment, stderr=subprocess.DEVNULL) as gtkhash:
            try:
                seconds = hashing_seconds(gtkhash.pid)
            finally:
                gtkhash.kill()
    print(seconds * float(scale))
    return 0 if seconds > 0 else 1


if __name__ == "__main__":
    sys.exit(main())
