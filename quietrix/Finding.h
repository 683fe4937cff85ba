// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace console {

/// What was looked at in a root, and how it is.
struct Finding {
    std::string check;
    bool isOk;
    /// A sentence or two.
    std::string detail;
    /// What to do about it; empty where all is well.
    std::string mend;

    static Finding well(std::string check, std::string detail) {
        return {std::move(check), true, std::move(detail), ""};
    }
    static Finding ill(std::string check, std::string detail, std::string mend) {
        return {std::move(check), false, std::move(detail), std::move(mend)};
    }
};

using Findings = std::vector<Finding>;

/// "1 profile", "2 profiles"
inline std::string counted(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace console
