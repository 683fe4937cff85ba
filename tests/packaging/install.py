# SPDX-License-Identifier: MIT
"""Installs a build, and moves what was installed: install.py CMAKE BUILD FIRST MOVED."""
import os
import shutil
import subprocess
import sys

cmake, build, first, moved = sys.argv[1:]
for directory in (first, moved):
    shutil.rmtree(directory, ignore_errors=True)
subprocess.run([cmake, "--install", build, "--prefix", first], check=True, stdout=subprocess.DEVNULL)
os.rename(first, moved)
