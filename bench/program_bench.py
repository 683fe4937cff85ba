#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures the whole program over the drive channel, and prints a line of JSON for each measure:

    program_bench.py PROGRAM BUNDLE FILE_MAKER DISK_DIRECTORY MEMORY_DIRECTORY

DISK_DIRECTORY and MEMORY_DIRECTORY are emptied places for roots, the second on a file system in memory: there the
disk has no part in what is measured.
"""
import json
import os
import shutil
import subprocess
import sys
import time

ROUNDS = 15
PROFILES = "var/mobile/Library/Preferences/com.velmora.quietrix.profiles.plist"
WINDOW = 20


def report(measure, at, peer, unit, rounds, **target):
    """`target` is at_least or at_most."""
    line = {"measure": measure, "at": at, "peer": peer, "unit": unit, "rounds": rounds}
    line.update({key.replace("_", " "): figure for key, figure in target.items()})
    print(json.dumps(line, ensure_ascii=False), flush=True)


def median(figures):
    return sorted(figures)[len(figures) // 2]


class Phone:
    """The program on a root; what it answers is read as bytes, since taking JSON apart is not what is measured."""

    def __init__(self, program, bundle, root):
        self.process = subprocess.Popen([program, "drive", "--root", root, "--bundle", bundle],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait(60)

    def ask(self, **command):
        """The answer's bytes."""
        self.process.stdin.write(json.dumps(command).encode() + b"\n")
        self.process.stdin.flush()
        return self.process.stdout.readline()

    def do(self, **command):
        answer = json.loads(self.ask(**command))
        if not answer["ok"]:
            raise RuntimeError(f"{command}: {answer['error']}")
        return answer["state"]

    def worked(self):
        """The processor time of all its threads so far: no other program is in it."""
        # What clock_getcpuclockid() gives, which Python does not offer for another process.
        return time.clock_gettime(~self.process.pid << 3 | 2)

    def timed(self, **command):
        """The processor time from the command to the answer, and the answer."""
        begun = self.worked()
        answer = self.ask(**command)
        taken = self.worked() - begun
        if not answer.startswith(b'{"ok":true'):
            raise RuntimeError(f"{command}: {answer[:300]}")
        return taken, answer

    def peak(self):
        """The most memory that the process has had, in bytes."""
        with open(f"/proc/{self.process.pid}/status", encoding="utf-8") as status:
            return next(int(line.split()[1]) * 1024 for line in status if line.startswith("VmHWM:"))


def profiles(count):
    return f"{count:,} profiles"


def row(state, **fields):
    return next(each for each in state["screen"]["rows"] if all(each[key] == value for key, value in fields.items()))


class Bench:
    def __init__(self, program, bundle, maker, disk, memory):
        self.program, self.bundle, self.maker, self.disk, self.memory = program, bundle, maker, disk, memory

    def open(self, root):
        return Phone(self.program, self.bundle, root)

    def root(self, directory, count):
        """A root that has been in use, its switch on, with that many profiles."""
        root = os.path.join(directory, str(count))
        if not os.path.isdir(root):
            with self.open(root) as phone:
                enabled = row(phone.do(do="state"), name="Enabled")
                phone.do(do="set", key=enabled["key"], value=True)
        file = os.path.join(root, PROFILES)
        if count > 0 and not os.path.exists(file):
            subprocess.run([self.maker, str(count), file], check=True)
        return root

    def start(self):
        """From the start of the program to its first answer, beside `true`."""
        def run(arguments, given):
            begun = time.perf_counter()
            process = subprocess.Popen(arguments, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL)
            if given:
                process.stdin.write(given)
                process.stdin.flush()
            process.stdout.readline()
            taken = time.perf_counter() - begun
            process.stdin.close()
            process.stdout.close()
            process.wait(60)
            return taken

        for kind in ("fresh", "existing"):
            figures = []
            for _ in range(ROUNDS):
                root = self.root(self.disk, 0) if kind == "existing" else os.path.join(self.disk, "fresh")
                ours = run([self.program, "drive", "--root", root, "--bundle", self.bundle], b'{"do":"state"}\n')
                figures.append((ours - run(["true"], None)) * 1000)
                if kind == "fresh":
                    shutil.rmtree(root)
            report("Program start to first answer", f"{kind} root", "true", "ms more", figures, at_most=30)

    def command_list(self):
        """The command `quietrix list`, from its start to its end, beside `true`."""
        command = os.path.join(os.path.dirname(self.program), "../quietrix/quietrix")
        root = self.root(self.memory, 10)

        def run(*arguments):
            begun = time.perf_counter()
            subprocess.run(arguments, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
            return (time.perf_counter() - begun) * 1000

        figures = [run(command, "--root", root, "list") - run("true") for _ in range(ROUNDS)]
        report("`quietrix list`", profiles(10), "true", "ms more", figures, at_most=20)

    def root_list(self):
        """The store must read the file anew each time: another program has written it."""
        opening = {}
        for count in (10, 1_000, 100_000):
            root = self.root(self.memory, count)
            file = os.path.join(root, PROFILES)
            with self.open(root) as phone:
                phone.do(do="state", count=WINDOW)
                own = phone.do(do="back", count=WINDOW)
                bundle = own["screen"]["rows"][1]["key"] if own["screen"]["rows"][0]["kind"] == 0 else own["screen"]["rows"][0]["key"]
                took, read = [], []
                for _ in range(ROUNDS if count < 100_000 else 7):
                    shutil.copyfile(file, file + ".new")
                    os.rename(file + ".new", file)
                    begun = time.process_time()
                    with open(file, "rb") as stream:
                        stream.read()
                    read.append(time.process_time() - begun)
                    taken, answer = phone.timed(do="tap", key=bundle, count=WINDOW)
                    if json.loads(answer)["state"]["screen"]["count"] < count:
                        raise RuntimeError("the root list lacks profiles")
                    took.append(taken)
                    phone.do(do="back", count=WINDOW)
            opening[count] = median(took)
            if count == 10:
                report("Root list opened, 20 rows answered", profiles(count), "", "ms", [each * 1000 for each in took])
            else:
                figures = [(taken - opening[10] - reading) / count * 1e6 for taken, reading in zip(took, read)]
                report("Root list opened, 20 rows answered", profiles(count), "10 profiles, and the file read once",
                       "µs a profile more", figures, at_most=1.5)

    def editor_switch(self):
        """Turn by turn on two phones."""
        few, many = (self.open(self.root(self.memory, count)) for count in (10, 10_000))
        with few, many:
            keys = {}
            for phone in (few, many):
                first = next(each for each in phone.do(do="state", count=WINDOW)["screen"]["rows"]
                             if each["detail"] and each["userInfo"])
                editor = phone.do(do="tap", key=first["key"])
                keys[phone] = row(editor, name="Vibrate")["key"]
            times = {few: [], many: []}
            for turn in range(2 * ROUNDS):
                for phone in (few, many):
                    times[phone].append(phone.timed(do="set", key=keys[phone], value=turn % 2 == 0)[0])
        report("Switch on the editor, command to answer", profiles(10), "", "ms", [each * 1000 for each in times[few]])
        report("Switch on the editor, command to answer", profiles(10_000), "10 profiles", "times as long",
               [more / less for less, more in zip(times[few], times[many])], at_most=1.5)

    def enabled(self):
        """The answer without events, in bytes, beside one that only shows the same rows."""
        with self.open(self.root(self.memory, 10_000)) as phone:
            state = phone.do(do="state", count=WINDOW, events=False)
            key = row(state, name="Enabled")["key"]
            figures, times = [], []
            for turn in range(ROUNDS):
                taken, answer = phone.timed(do="set", key=key, value=turn % 2 == 1, count=WINDOW)
                times.append(taken * 1000)
                figures.append(len(answer) / len(phone.ask(do="state", count=WINDOW)))
        report("\"Enabled\" moved, size of the answer", profiles(10_000), "the same rows looked at", "times the bytes",
               figures, at_most=1.1)
        report("\"Enabled\" moved, command to answer", profiles(10_000), "", "ms", times)

    def memory_peak(self):
        count = 100_000
        size = os.path.getsize(os.path.join(self.root(self.memory, count), PROFILES))
        figures = []
        for _ in range(3):
            peaks = {}
            for each in (0, count):
                with self.open(self.root(self.memory, each)) as phone:
                    phone.do(do="state", count=WINDOW)
                    peaks[each] = phone.peak()
            figures.append((peaks[count] - peaks[0]) / size)
        report("Peak memory, root list open", profiles(count), "bytes of the file", "times as much", figures, at_most=4)


def main():
    bench = Bench(*sys.argv[1:6])
    bench.start()
    bench.command_list()
    bench.root_list()
    bench.editor_switch()
    bench.enabled()
    bench.memory_peak()


if __name__ == "__main__":
    main()
