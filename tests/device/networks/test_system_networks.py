#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The networks tool against a mocked network manager on a system bus of this test's own.

Usage: test_system_networks.py NETWORKS_TOOL
"""

import os
import signal
import socket
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import dbus
import dbusmock

TOOL = sys.argv.pop(1)
SERVICE = "org.freedesktop.NetworkManager"
SETTINGS = "/org/freedesktop/NetworkManager/Settings"
SETTINGS_INTERFACE = "org.freedesktop.NetworkManager.Settings"
CONNECTION_INTERFACE = "org.freedesktop.NetworkManager.Settings.Connection"
COMPLAINT = "The network manager's Wi-Fi networks could not be had: "
# Far beyond what the tool takes; it only keeps a broken one from hanging the tests.
PATIENCE = 60


def ask(**environment):
    """The names and the log's lines."""
    done = subprocess.run([TOOL], env={**os.environ, **environment}, stdin=subprocess.DEVNULL, capture_output=True,
                          timeout=PATIENCE, check=True)
    return done.stdout.decode().splitlines(), done.stderr.decode().splitlines()


class NetworkManager(dbusmock.DBusTestCase):
    @classmethod
    def setUpClass(cls):
        # The mock's module leaves a directory behind for each bus that it starts.
        directory = tempfile.TemporaryDirectory(prefix="system-networks-")
        cls.addClassCleanup(directory.cleanup)
        cls.addClassCleanup(setattr, tempfile, "tempdir", tempfile.tempdir)
        tempfile.tempdir = directory.name
        cls.start_system_bus()
        cls.bus = cls.get_dbus(system_bus=True)

    def setUp(self):
        self.mock, self.manager = self.spawn_server_template("networkmanager", {}, stdout=subprocess.DEVNULL)
        self.settings = self.bus.get_object(SERVICE, SETTINGS)

    def tearDown(self):
        self.mock.send_signal(signal.SIGCONT)
        self.mock.terminate()
        self.mock.wait()

    def add(self, settings):
        return self.settings.AddConnection(settings, dbus_interface=SETTINGS_INTERFACE)

    def add_wireless(self, name, ssid):
        return self.add({"connection": {"id": name, "uuid": name, "type": "802-11-wireless"},
                         "802-11-wireless": {"ssid": dbus.ByteArray(ssid), "mode": "infrastructure"}})

    def test_no_connection(self):
        self.assertEqual(ask(), ([], []))

    def test_names_in_the_managers_order(self):
        for name in ("Zebra", "Café", "antelope", "Zebra"):
            self.add_wireless(name, name.encode())
        self.assertEqual(ask(), (["Zebra", "Café", "antelope", "Zebra"], []))

    def test_bytes_that_are_no_text_stay_apart(self):
        for ssid in (b"caf\xe9", b"caf\xe8", rb"caf\xE9", rb"a\b", b"\xff\\"):
            self.add_wireless("x", ssid)
        self.assertEqual(ask(), ([r"caf\xE9", r"caf\xE8", r"caf\x5CxE9", r"a\b", r"\xFF\x5C"], []))

    def test_other_kinds_are_left_out(self):
        self.add({"connection": {"id": "wire", "uuid": "1", "type": "802-3-ethernet"},
                  "802-3-ethernet": {"mtu": dbus.UInt32(1500)}})
        self.add_wireless("air", b"air")
        # A connection over a wire may carry such a group all the same.
        self.add({"connection": {"id": "tunnel", "uuid": "2", "type": "vpn"},
                  "802-11-wireless": {"ssid": dbus.ByteArray(b"tunnel")}})
        self.assertEqual(ask(), (["air"], []))

    def test_a_connection_without_a_name_is_left_out_and_logged(self):
        self.add({"connection": {"id": "x", "uuid": "1", "type": "802-11-wireless"},
                  "802-11-wireless": {"ssid": "a text"}})
        self.add_wireless("air", b"air")
        names, log = ask()
        self.assertEqual(names, ["air"])
        self.assertEqual(len(log), 1, log)
        self.assertIn("has no network's name", log[0])

    def test_a_connection_that_cannot_be_read_is_left_out_and_logged(self):
        path = self.add_wireless("gone", b"gone")
        self.add_wireless("air", b"air")
        self.bus.get_object(SERVICE, path).AddMethod(
            CONNECTION_INTERFACE, "GetSettings", "", "a{sa{sv}}",
            "raise dbus.exceptions.DBusException('no', name='org.freedesktop.NetworkManager.PermissionDenied')",
            dbus_interface=dbusmock.MOCK_IFACE)
        names, log = ask()
        self.assertEqual(names, ["air"])
        self.assertEqual(len(log), 1, log)
        self.assertIn(f'"{path}" could not be read', log[0])

    def test_hundreds_of_connections(self):
        expected = [f"network {number}" for number in range(200)]
        for name in expected:
            self.add_wireless(name, name.encode())
        self.assertEqual(ask(), (expected, []))

    def assert_one_complaint(self, answer):
        names, log = answer
        self.assertEqual(names, [])
        self.assertEqual(len(log), 1, log)
        self.assertTrue(log[0].startswith(COMPLAINT), log)

    def test_a_manager_that_never_answers(self):
        self.add_wireless("air", b"air")
        self.mock.send_signal(signal.SIGSTOP)
        self.assert_one_complaint(ask())

    def test_a_connection_that_never_answers(self):
        self.add_wireless("air", b"air")
        path = self.add_wireless("stuck", b"stuck")
        self.bus.get_object(SERVICE, path).AddMethod(
            CONNECTION_INTERFACE, "GetSettings", "", "a{sa{sv}}", "import threading; threading.Event().wait()",
            dbus_interface=dbusmock.MOCK_IFACE)
        self.add_wireless("behind", b"behind")
        names, log = ask()
        self.assertEqual(names, ["air"])
        self.assertEqual(len(log), 1, log)
        self.assertIn("are incomplete, 1 of 3 saved connections were read", log[0])

    def test_an_answer_of_another_type(self):
        self.settings.AddMethod(SETTINGS_INTERFACE, "ListConnections", "", "s", "ret = 'none'",
                                dbus_interface=dbusmock.MOCK_IFACE)
        self.assert_one_complaint(ask())

    def test_no_manager(self):
        self.mock.terminate()
        self.mock.wait()
        self.assert_one_complaint(ask())

    def test_no_bus(self):
        self.assert_one_complaint(ask(DBUS_SYSTEM_BUS_ADDRESS="unix:path=/nowhere/at/all"))
        self.assert_one_complaint(ask(DBUS_SYSTEM_BUS_ADDRESS="nonsense"))

    def test_a_bus_that_never_answers(self):
        with tempfile.TemporaryDirectory() as directory, socket.socket(socket.AF_UNIX) as silent:
            path = Path(directory) / "bus"
            silent.bind(str(path))
            silent.listen()
            self.assert_one_complaint(ask(DBUS_SYSTEM_BUS_ADDRESS=f"unix:path={path}"))


if __name__ == "__main__":
    unittest.main()
