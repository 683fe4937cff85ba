// SPDX-License-Identifier: MIT
#include "quietrix/ProgramUsage.h"

namespace console {

usage::Manual programManual() {
    return {
        .version = QUIETRIX_VERSION,
        .sections =
            {
                {"FILES",
                 "$XDG_DATA_HOME/quietrix/phone, or ~/.local/share/quietrix/phone: the phone's files, "
                 "unless \"--root\" names others."},
                {"ENVIRONMENT", "NO_COLOR: set to anything, it keeps colours from a terminal."},
                {"SEE ALSO", "quietrix-settings(1)"},
            },
    };
}

usage::Candidates programCandidates() {
    return {{"PROFILE", "quietrix $root list --titles"}};
}

}  // namespace console
