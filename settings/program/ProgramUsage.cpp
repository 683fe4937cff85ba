// SPDX-License-Identifier: MIT
#include "settings/program/ProgramUsage.h"

#include <sstream>
#include <string>

#include "device/DeviceOptions.h"

namespace settings {

usage::Manual programManual() {
    return {
        .version = QUIETRIX_VERSION,
        .sections =
            {
                {"FILES",
                 "$XDG_DATA_HOME/quietrix/phone, or ~/.local/share/quietrix/phone: the phone's files, "
                 "unless \"--root\" names others.\n\n"
                 "$XDG_RUNTIME_DIR/quietrix-settings: addresses of servers that run, and secrets that "
                 "outlive them. Nobody else can read them."},
                {"ENVIRONMENT",
                 "DISPLAY, WAYLAND_DISPLAY: without both nothing is opened on the desktop, and addresses are "
                 "printed instead.\n\n"
                 "LISTEN_PID, LISTEN_FDS: a socket that the service manager listens on, which \"serve\" "
                 "takes "
                 "in the place of a port."},
                {"EXIT STATUS",
                 "0 when all went well, 2 when the program could not begin. \"check\" ends with 1 "
                 "when there are mistakes, \"replay\" with 1 when an answer is different."},
                {"SEE ALSO", "quietrix(1)"},
            },
    };
}

usage::Candidates programCandidates() {
    // The words that the help begins its lines with.
    std::istringstream help(device::DeviceOptions::help());
    std::string keys;
    for (std::string line; std::getline(help, line);) {
        if (const std::size_t end = line.find(':'); end != std::string::npos)
            keys += " " + line.substr(0, end);
    }
    return {{"KEY=VALUE", "printf '%s\\n'" + keys}};
}

}  // namespace settings
