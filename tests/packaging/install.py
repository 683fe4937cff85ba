# SPDX-License-Identifier: MIT
"""Installs a build over an older one, and moves what was installed: install.py CMAKE BUILD FIRST MOVED."""
import os
import shutil
import subprocess
import sys
from pathlib import Path

cmake, build, first, moved = sys.argv[1:]
for directory in (first, moved):
    shutil.rmtree(directory, ignore_errors=True)
# What the older one had beside.
older = ["lib/quietrix/QuietrixPreferences.bundle/xx.lproj/Old.strings", "share/quietrix/Settings/root/Old.png"]
if Path(build, "share/page").is_dir():
    older += ["share/quietrix/page/parts/chunk-OLD.js", "share/quietrix/page/old/old.js"]
for name in older:
    Path(first, name).parent.mkdir(parents=True, exist_ok=True)
    Path(first, name).touch()
subprocess.run([cmake, "--install", build, "--prefix", first], check=True, stdout=subprocess.DEVNULL)
os.rename(first, moved)
