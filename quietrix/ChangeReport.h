// SPDX-License-Identifier: MIT
#pragma once

#include <boost/json/value.hpp>
#include <cstddef>
#include <string>
#include <vector>

#include "profile/model/ProfilesDifference.h"
#include "quietrix/Outcome.h"
#include "quietrix/ProfileDifference.h"
#include "quietrix/ProfileReference.h"

namespace console {

/// What became, or would become, of each profile when many are brought in at once.
struct ChangeReport {
    struct Named {
        std::string identifier;
        std::string title;
    };
    struct Changed : Named {
        std::vector<ValueChange> changes;
    };
    struct Refused : Named {
        /// Where it stands among those brought in, from 1.
        std::size_t number = 0;
        std::string reason;
    };

    std::vector<Named> added;
    std::vector<Changed> changed;
    std::vector<Named> removed;
    std::size_t unchanged = 0;
    std::vector<Refused> refused;

    static Named named(const quietrix::QXProfile& profile);
    /// {"added": […], "changed": […], "removed": […], "unchanged": N, "refused": […]}
    boost::json::value json() const;
    /// A line for each, and one that counts them.
    std::string text() const;
};

/// The same of two states of the file.
ChangeReport changeReport(const quietrix::ProfilesDifference& difference);

}  // namespace console
