#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Breaks each rule once in a small tree of its own and expects the line that says so."""

import tempfile
import unittest
from pathlib import Path

import check_architecture


class ArchitectureRules(unittest.TestCase):
    def setUp(self):
        self.directory = tempfile.TemporaryDirectory()
        self.addCleanup(self.directory.cleanup)
        self.tree = Path(self.directory.name)
        for number in range(20):
            self.write(f"platform/foundation/Filler{number}.h", "#pragma once\n#include <string>\n")

    def write(self, name, text):
        path = self.tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def breaches(self):
        return "\n".join(check_architecture.check_tree(self.tree))

    def test_soundTree_hasNoBreach(self):
        self.write("shell/base/A.cpp", '#include "platform/foundation/Filler1.h"\n')
        self.assertEqual("", self.breaches())

    def test_foreignLibraryInPlatform_isNamed(self):
        self.write("platform/uikit/A.cpp", "#include <boost/json.hpp>\n")
        self.assertIn("platform/uikit/A.cpp:1: <boost/json.hpp>", self.breaches())

    def test_systemHeaderInPlugin_isNamed(self):
        self.write("shell/root/A.cpp", "#include <unistd.h>\n")
        self.assertIn("the plug-in includes the operating system's <unistd.h>", self.breaches())

    def test_settingsIncludingThePlugin_isNamed(self):
        self.write("shell/base/A.h", "#pragma once\n")
        self.write("settings/program/A.cpp", '#include "shell/base/A.h"\n')
        self.assertIn("settings/ includes", self.breaches())

    def test_upwardDependency_isNamed(self):
        self.write("shell/root/A.h", "#pragma once\n")
        self.write("profile/model/A.cpp", '#include "shell/root/A.h"\n')
        self.assertIn("profile/model may not depend on shell/root", self.breaches())

    def test_screenIncludingAnotherScreen_isNamed(self):
        self.write("profile/hours/A.h", "#pragma once\n")
        self.write("profile/editor/A.cpp", '#include "profile/hours/A.h"\n')
        self.assertIn("profile/editor may not depend on profile/hours", self.breaches())

    def test_pickersOfTheEditor_includeNothingOfEachOther(self):
        pickers = ("calendars", "eventstatus", "networks", "tone")
        for picker in pickers:
            self.write(f"conditions/{picker}/A.h", "#pragma once\n")
        for own in pickers:
            for other in pickers:
                self.write(f"conditions/{own}/B.cpp", f'#include "conditions/{other}/A.h"\n')
                breach = f"conditions/{own} may not depend on conditions/{other}"
                (self.assertNotIn if own == other else self.assertIn)(breach, self.breaches())

    def test_pickersAndWhatTheyShare_dependOneWay(self):
        self.write("conditions/A.h", "#pragma once\n")
        self.write("conditions/tone/A.cpp", '#include "conditions/A.h"\n')
        self.assertEqual("", self.breaches())
        self.write("conditions/tone/B.h", "#pragma once\n")
        self.write("conditions/B.cpp", '#include "conditions/tone/B.h"\n')
        self.assertIn("conditions may not depend on conditions/tone", self.breaches())

    def test_sourceBesideTheRoomsOfSettings_isNamed(self):
        self.write("settings/A.cpp", "#include <string>\n")
        self.assertIn("settings/A.cpp: is in no layer", self.breaches())

    def test_roomsOfSettings_includeNoMoreThanTheirs(self):
        rooms = {
            "program": {"checking", "channels", "channels/server", "application"},
            "checking": {"channels", "application"},
            "channels": {"channels/server", "commands", "state", "application"},
            "channels/server": set(),
            "commands": {"application"},
            "state": {"application"},
            "application": set(),
        }
        for room in rooms:
            self.write(f"settings/{room}/A.h", "#pragma once\n")
        for own, allowed in rooms.items():
            for other in rooms:
                source = f"settings/{own}/B.cpp"
                self.write(source, f'#include "settings/{other}/A.h"\n')
                breach = f"settings/{own} may not depend on settings/{other} ("
                (self.assertNotIn if other in allowed | {own} else self.assertIn)(breach, self.breaches())
                (self.tree / source).unlink()

    def test_roomWithoutADeviceOfItsOwn_mayNotIncludeDevice(self):
        self.write("device/A.h", "#pragma once\n")
        self.write("settings/state/A.cpp", '#include "device/A.h"\n')
        self.assertIn("settings/state may not depend on device", self.breaches())
        self.write("settings/state/A.cpp", '#include "platform/foundation/Filler1.h"\n')
        self.assertEqual("", self.breaches())

    def test_example_includesItsOwnHeadersAndThePlatformsOnly(self):
        self.write("examples/bell/A.h", "#pragma once\n#include <string>\n")
        self.write("examples/bell/A.cpp", '#include "A.h"\n#include "platform/foundation/Filler1.h"\n')
        self.assertEqual("", self.breaches())
        for header in ("velmora/A.h", "shell/base/A.h", "device/A.h", "examples/drum/A.h"):
            self.write(header, "#pragma once\n")
            self.write("examples/bell/A.cpp", f'#include "{header}"\n')
            self.assertIn(f'examples/bell/A.cpp:1: an example includes "{header}"', self.breaches())
        self.write("examples/bell/A.cpp", "#include <unistd.h>\n")
        self.assertIn("examples/bell/A.cpp:1: <unistd.h> is not of the C++ standard library", self.breaches())

    def test_pluginIncludingDevice_isNamed(self):
        self.write("device/A.h", "#pragma once\n")
        self.write("shell/base/A.cpp", '#include "device/A.h"\n')
        self.assertIn("shell/base may not depend on device", self.breaches())

    def test_command_includesTheStoreAndTheDeviceOnly(self):
        for header in ("profile/model/A.h", "shell/base/A.h", "device/A.h", "shell/chrome/A.h", "profile/cells/A.h",
                       "support/misc/A.h", "velmora/A.h", "springboard/A.h", "settings/channels/A.h"):
            self.write(header, "#pragma once\n")
        for header in ("profile/model/A.h", "shell/base/A.h", "device/A.h"):
            self.write("quietrix/A.cpp", f'#include "{header}"\n')
            self.assertEqual("", self.breaches())
        for room in ("shell/chrome", "profile/cells", "support/misc", "velmora", "springboard", "settings/channels"):
            self.write("quietrix/A.cpp", f'#include "{room}/A.h"\n')
            self.assertIn(f"quietrix may not depend on {room} (", self.breaches())

    def test_cycleBetweenFiles_isNamed(self):
        self.write("device/A.h", '#include "device/B.h"\n')
        self.write("device/B.h", '#include "device/A.h"\n')
        self.assertIn("cycle between files: device/A.h -> device/B.h -> device/A.h", self.breaches())

    def test_missingHeader_isNamed(self):
        self.write("device/A.h", '#include "device/Gone.h"\n')
        self.assertIn('"device/Gone.h" is no file of this tree', self.breaches())

    def test_emptyTree_isABreach(self):
        with tempfile.TemporaryDirectory() as empty:
            self.assertIn("only 0 sources", "\n".join(check_architecture.check_tree(Path(empty))))


if __name__ == "__main__":
    unittest.main()
