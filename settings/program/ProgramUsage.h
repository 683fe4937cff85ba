// SPDX-License-Identifier: MIT
#pragma once

#include "usage/Usage.h"

namespace settings {

/// What the manual has beside the texts of the command line.
usage::Manual programManual();

/// What shells offer for values.
usage::Candidates programCandidates();

}  // namespace settings
