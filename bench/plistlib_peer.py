# SPDX-License-Identifier: MIT
"""Reads and writes a property list with Python's plistlib, as often as each line of standard input says, and answers
with the processor time that it took, in seconds.

    plistlib_peer.py FILE      lines: "read TIMES", "write TIMES"
"""
import plistlib
import sys
import time

with open(sys.argv[1], "rb") as file:
    data = file.read()
value = None
for line in sys.stdin:
    what, times = line.split()
    if what == "write" and value is None:
        value = plistlib.loads(data)
    begun = time.process_time()
    for _ in range(int(times)):
        if what == "read":
            plistlib.loads(data)
        else:
            plistlib.dumps(value, fmt=plistlib.FMT_BINARY)
    print(time.process_time() - begun, flush=True)
