// SPDX-License-Identifier: MIT
#pragma once

#include "usage/Usage.h"

namespace console {

/// What the manual has beside the texts of the command line.
usage::Manual programManual();

/// What shells offer for values: profiles by their titles, and keys.
usage::Candidates programCandidates();

}  // namespace console
