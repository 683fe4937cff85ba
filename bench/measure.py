#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the benchmarks of a build directory and writes their figures into the table of a document; see ./measure.

    measure.py BUILD_DIRECTORY DOCUMENT [NAME…]
"""
import datetime
import os
import platform
import shutil
import subprocess
import sys
import tempfile
import time

import table

HERE = os.path.dirname(os.path.abspath(__file__))
# Bounds a benchmark that hangs.
LONGEST = 300


class Places:
    """Directories for what the benchmarks write, on the disk and in memory, and a message bus of their own."""

    def __init__(self):
        self.disk = tempfile.mkdtemp(prefix="quietrix-measure-", dir=os.environ.get("TMPDIR", "/var/tmp"))
        self.memory = tempfile.mkdtemp(prefix="quietrix-measure-", dir="/dev/shm")
        self.bus = None

    def bus_address(self):
        if not self.bus:
            self.bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address",
                                         f"--address=unix:path={self.memory}/bus"],
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
            self.address = self.bus.stdout.readline().strip()
        return self.address

    def close(self):
        if self.bus:
            self.bus.terminate()
            self.bus.wait()
            self.bus.stdout.close()
        for directory in (self.disk, self.memory):
            shutil.rmtree(directory, ignore_errors=True)


def commands(build, places):
    """The runs by their names."""
    programs = os.path.join(build, "bench")
    # The posters and receivers make their directories in it themselves.
    notifications = os.path.join(places.memory, "notifications")
    return {
        "property-list": [[f"{programs}/property-list-bench", sys.executable, f"{HERE}/plistlib_peer.py"]],
        "notification": [[f"{programs}/notification-bench"]],
        "profiles-store": [[f"{programs}/profiles-store-bench", places.disk]],
        "darwin": [[f"{programs}/darwin-bench", count, f"{notifications}-{count}", places.bus_address]
                   for count in ("1", "8")],
        "program": [[sys.executable, "-B", f"{HERE}/program_bench.py", f"{build}/settings/quietrix-settings",
                     f"{build}/share/QuietrixPreferences.bundle", f"{programs}/profiles-file-maker",
                     places.disk, places.memory]],
    }


def run(command):
    """The measures of one program, each shown when it is there."""
    arguments = [part() if callable(part) else part for part in command]
    measures = []
    with subprocess.Popen(["timeout", str(LONGEST), *arguments], stdout=subprocess.PIPE, text=True) as process:
        for output in process.stdout:
            for measure in table.parsed(output):
                measures.append(measure)
                print(table.line(measure).strip("| "), flush=True)
    if process.returncode != 0:
        raise SystemExit(f"{os.path.basename(arguments[0])} ended with status {process.returncode}; no figure was written.")
    return measures


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        model = next((row.split(":", 1)[1].strip() for row in file if row.startswith("model name")), platform.machine())
    return f"{os.cpu_count()} cores, {model}, Linux {platform.release().split('-')[0]}"


def main():
    build, document, *names = sys.argv[1:]
    begun = time.monotonic()
    busy = os.getloadavg()[0]
    places = Places()
    try:
        known = commands(build, places)
        if unknown := [each for each in names if each not in known]:
            raise SystemExit(f"./measure: unknown: {' '.join(unknown)} (there are {' '.join(known)})")
        measures = [measure for each in names or known for command in known[each] for measure in run(command)]
    finally:
        places.close()
    when = (f"{datetime.date.today().isoformat()}, {machine()}, load {busy:.1f} before"
            f"{', only ' + ' '.join(names) if names else ''}; {time.monotonic() - begun:.0f} s.")
    with open(document, encoding="utf-8") as file:
        text = table.rewritten(file.read(), measures, when)
    with open(document, "w", encoding="utf-8") as file:
        file.write(text)
    print(f"The table of {document} is written.")


if __name__ == "__main__":
    main()
