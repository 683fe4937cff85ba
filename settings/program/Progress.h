// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>

namespace settings {

/// How far something that takes long has come, on standard error, for who sits at a terminal; nothing
/// elsewhere. Wiped away at the end of its life.
class Progress {
  public:
    /// `name` is what is written before the per cent of `whole`.
    Progress(std::string name, std::uintmax_t whole);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(std::uintmax_t done);

  private:
    static constexpr std::chrono::milliseconds every{500};

    std::string name_;
    std::uintmax_t whole_;
    bool isShown_;
    bool hasShown_ = false;
    std::chrono::steady_clock::time_point next_ = std::chrono::steady_clock::now() + every;
};

}  // namespace settings
