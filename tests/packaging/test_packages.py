# SPDX-License-Identifier: MIT
"""The Debian packages, installed and used in a bare Debian 12: test_packages.py PACKAGES SOURCE_TREE CACHE.

As root. PACKAGES holds the two packages, CACHE keeps the bare system and what was downloaded for the next time. It runs
itself in mounts and processes of its own, of which nothing is left however it ends; what it writes goes into a layer above the bare
system and is thrown away. The system takes its packages from where this machine does.
"""
import glob
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import urllib.request
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path[:0] = [str(HERE / "../settings/channels/server"), str(HERE / "../settings/program")]
from loopback_client import PATIENCE, WebSocket  # noqa: E402
from test_open import ADDRESS, Address  # noqa: E402

PACKAGES = TREE = CACHE = Path()
SYSTEM = "bookworm"
USER = "tester"
HOME = f"/home/{USER}"


def run(*command, **options):
    done = subprocess.run(list(map(str, command)), text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(map(str, command))}: {done.returncode}\n{done.stdout[-4000:]}")
    return done.stdout


def mirror():
    """Where this machine has the system's packages from."""
    listed = run("apt-get", "indextargets", "--format", "$(REPO_URI)", "Created-By: Packages", f"Codename: {SYSTEM}", "Component: main")
    return listed.split()[0] if listed.split() else None


def bare_system():
    """A directory with the bare system, made once."""
    base = CACHE / SYSTEM
    if base.is_dir():
        return base
    making = CACHE / f"{SYSTEM}.part"
    shutil.rmtree(making, ignore_errors=True)
    making.mkdir(parents=True)
    source = mirror()
    run("debootstrap", "--variant=minbase", "--include=ca-certificates", SYSTEM, making, *([source] if source else []))
    run("chroot", making, "useradd", "-m", "-s", "/bin/bash", USER)
    making.rename(base)
    return base


def use_this_machines_sources(root):
    """How packages are got here, proxies and certificates included."""
    for name in ("resolv.conf", "hosts"):
        shutil.copy(f"/etc/{name}", root / "etc" / name)
    (root / "etc/apt/sources.list").unlink(missing_ok=True)
    for name in [*glob.glob("/etc/apt/sources.list"), *glob.glob("/etc/apt/sources.list.d/*.sources"), *glob.glob("/etc/apt/sources.list.d/*.list")]:
        shutil.copy(name, root / name.lstrip("/"))
    settings = [line for line in run("apt-config", "dump").splitlines() if line.startswith("Acquire::")]
    (root / "etc/apt/apt.conf.d/99machine").write_text("\n".join(settings) + "\n", encoding="utf-8")
    shutil.copy("/etc/ssl/certs/ca-certificates.crt", root / "etc/ssl/certs")


def older(package, version):
    """The same package under another version."""
    with tempfile.TemporaryDirectory(dir=CACHE) as directory:
        run("dpkg-deb", "-R", package, directory + "/tree")
        control = Path(directory, "tree/DEBIAN/control")
        control.write_text(re.sub(r"^Version: .*$", f"Version: {version}", control.read_text(encoding="utf-8"), flags=re.MULTILINE), encoding="utf-8")
        result = Path(tempfile.gettempdir(), f"older-{os.getpid()}.deb")
        run("dpkg-deb", "-b", "-Znone", "--root-owner-group", directory + "/tree", result)
        return result


class PackagesTest(unittest.TestCase):
    """The tests are one story in the order of their names."""

    @classmethod
    def setUpClass(cls):
        # All of it is in the namespace of this process's mounts and goes with it.
        CACHE.mkdir(parents=True, exist_ok=True)
        layers = Path(tempfile.mkdtemp(prefix="layers-", dir=CACHE))
        cls.addClassCleanup(shutil.rmtree, layers, ignore_errors=True)
        base = bare_system()
        for name in ("upper", "work", "root"):
            (layers / name).mkdir()
        cls.root = layers / "root"
        run("mount", "-t", "overlay", "overlay", "-o", f"lowerdir={base},upperdir={layers}/upper,workdir={layers}/work", cls.root)
        cls.addClassCleanup(run, "umount", "-R", "-l", cls.root)
        run("mount", "-t", "proc", "proc", cls.root / "proc")
        run("mount", "--rbind", "/dev", cls.root / "dev")
        run("mount", "-t", "tmpfs", "tmpfs", cls.root / "tmp")
        archives = CACHE / "archives"
        archives.mkdir(exist_ok=True)
        run("mount", "--bind", archives, cls.root / "var/cache/apt/archives")
        use_this_machines_sources(cls.root)
        cls.program, cls.development = (next(PACKAGES.glob(f"{name}_*.deb")) for name in ("quietrix-settings", "libquietrix-platform-dev"))
        cls.older = older(cls.program, "0.9-1")
        cls.addClassCleanup(cls.older.unlink)
        for package in (cls.program, cls.development, cls.older):
            shutil.copy(package, cls.root / "tmp" / package.name)
        cls.apt("update")

    @classmethod
    def inside(cls, *command, user="root", **options):
        return run("chroot", f"--userspec={user}", cls.root, "env", "-i", "PATH=/usr/sbin:/usr/bin:/sbin:/bin", "LANG=C.UTF-8",
                   "DEBIAN_FRONTEND=noninteractive", f"HOME={HOME}", f"XDG_RUNTIME_DIR={HOME}/run", *command, **options)

    @classmethod
    def apt(cls, *arguments):
        return cls.inside("apt-get", "-y", "-q", "-o", "APT::Keep-Downloaded-Packages=true", *arguments)

    def as_user(self, *command, **options):
        return self.inside(*command, user=USER, **options)

    def versions(self):
        listed = self.inside("dpkg-query", "-W", "-f", "${Package} ${Version} ${db:Status-Status}\n")
        return [line for line in listed.splitlines() if "quietrix" in line and line.endswith(" installed")]

    def test_1_upgradeAndBack_leaveTheRunningServerAndItsDataAlone(self):
        self.apt("install", "--no-install-recommends", f"/tmp/{self.older.name}")
        self.inside("mkdir", "-m", "700", f"{HOME}/run")
        self.inside("chown", f"{USER}:", f"{HOME}/run")
        # An open list goes on showing the switch as it was.
        self.as_user("quietrix", "on")
        command = ["chroot", f"--userspec={USER}", str(self.root), "env", "-i", f"HOME={HOME}", f"XDG_RUNTIME_DIR={HOME}/run",
                   "LANG=C.UTF-8", "/usr/bin/quietrix-settings", "serve"]
        server = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        self.addCleanup(server.stdout.close)
        self.addCleanup(server.wait)
        self.addCleanup(server.kill)
        address = Address(server.stdout.readline().rstrip("\n"))
        page = WebSocket(address)
        self.addCleanup(page.__exit__)

        def ask(**command):
            page.send(json.dumps({**command, "id": 1}))
            while (message := json.loads(page.receive()[1])).get("id") != 1:
                pass
            self.assertTrue(message["ok"], message.get("error"))
            return {row["name"] for row in message["state"]["screen"]["rows"]}

        titles = []
        for version, package in (("older", None), ("upgrade", self.program), ("back", self.older)):
            with self.subTest(version):
                if package:
                    self.apt("install", "--no-install-recommends", "--allow-downgrades", f"/tmp/{package.name}")
                titles.append(f"Made at {version}")
                self.as_user("quietrix", "add", titles[-1])
                self.assertLessEqual(set(titles), ask(do="state"), "the page that is open sees what the new command does")
                self.assertEqual(self.as_user("quietrix", "list", "--titles").splitlines(), titles)
                with urllib.request.urlopen(f"http://{address.host}/", timeout=PATIENCE) as answer:
                    self.assertEqual(answer.status, 200)
        self.assertIn("quietrix-settings 0.9-1 installed", self.versions())
        server.terminate()
        self.assertEqual(server.wait(PATIENCE), 0)

    def test_2_programs_areUsedByAFreshUser(self):
        self.apt("install", "--no-install-recommends", f"/tmp/{self.program.name}")
        for program in ("quietrix-settings", "quietrix"):
            self.assertRegex(self.as_user(program, "--version"), rf"^{program} \d+\.\d+\.\d+\n$")
            self.assertIn("Usage:", self.as_user(program, "--help"))
        # It goes on, also when the package goes.
        shown = self.as_user("quietrix-settings", "open")
        self.assertRegex(shown.rstrip("\n"), ADDRESS)
        self.assertEqual(self.as_user("quietrix-settings", "open"), shown)
        answer = json.loads(self.as_user("quietrix-settings", "drive", input='{"do":"state"}\n'))
        self.assertEqual(answer["state"]["screen"]["class"], "QuietrixPreferencesController")
        self.assertIn("SpringBoard", [event.get("name") for event in answer["state"]["events"] if event["event"] == "process"])

    def test_3_command_doesHereWhatItDoesInTheTree(self):
        self.apt("install", "--no-install-recommends", "python3")
        tests = self.root / HOME.lstrip("/") / "tests"
        for folder in ("drive", "quietrix"):
            shutil.copytree(TREE / "tests" / folder, tests / folder)
        self.inside("chown", "-R", f"{USER}:", f"{HOME}/tests")
        command, phone, bundle = "/usr/bin/quietrix", "/usr/bin/quietrix-settings", "/usr/lib/quietrix/QuietrixPreferences.bundle"
        for name, arguments in (("commands", [command]), ("together", [command, phone, bundle, ""]), ("history", [command, phone, bundle])):
            with self.subTest(name):
                told = self.as_user("env", f"PYTHONPATH={HOME}/tests/drive", "python3", "-B", f"{HOME}/tests/quietrix/test_{name}.py",
                                    *arguments)
                self.assertRegex(told, r"Ran [1-9]\d* tests")

    def test_4_ringer_isBuiltFromTheDevelopmentPackageAlone(self):
        self.apt("install", "--no-install-recommends", f"/tmp/{self.development.name}", "cmake", "g++", "make")
        shutil.copytree(TREE / "examples/ringer", self.root / HOME.lstrip("/") / "ringer")
        self.inside("chown", "-R", f"{USER}:", f"{HOME}/ringer")
        self.as_user("cmake", "-S", f"{HOME}/ringer", "-B", f"{HOME}/ringer/build")
        self.as_user("cmake", "--build", f"{HOME}/ringer/build", "-j", str(os.cpu_count()))
        bundle = f"{HOME}/ringer/build/Ringer.bundle"
        self.assertIn("0 findings, 0 accepted", self.as_user("quietrix-settings", "check", bundle))
        answer = json.loads(self.as_user("quietrix-settings", "drive", "--bundle", bundle, input='{"do":"state"}\n'))
        self.assertEqual(answer["state"]["screen"]["class"], "RingerController")

    def test_5_purge_leavesTheUsersDataAlone(self):
        self.apt("purge", "quietrix-settings", "libquietrix-platform-dev")
        self.assertEqual(self.versions(), [])
        left = self.inside("find", "/", "-xdev", "-path", "/home", "-prune", "-o", "-path", "/tmp", "-prune", "-o", "-path",
                           "/var/cache/apt", "-prune", "-o", "-iname", "*quietrix*", "-print")
        self.assertEqual(left, "")
        self.inside("test", "-s", f"{HOME}/.local/share/quietrix/phone/var/mobile/Library/Preferences/com.velmora.quietrix.profiles.plist")


if __name__ == "__main__":
    if os.environ.get("QUIETRIX_OWN_MOUNTS") != "yes":
        os.execvpe("unshare", ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", "--propagation", "private",
                               sys.executable, "-B", *sys.argv], {**os.environ, "QUIETRIX_OWN_MOUNTS": "yes"})
    PACKAGES, TREE, CACHE = (Path(sys.argv.pop(1)).resolve() for _ in range(3))
    unittest.main(failfast=True)
