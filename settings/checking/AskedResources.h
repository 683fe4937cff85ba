// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <utility>

#include "platform/foundation/ResourceWatch.h"

namespace settings {

/// What the bundle is asked for while this object lives, gathered until it is looked at. One at a time; main
/// thread.
class AskedResources : public platform::ResourceWatch {
  public:
    /// `bundlePath` is the phone path of the bundle that is checked; what others are asked for does not
    /// count.
    explicit AskedResources(std::string bundlePath) : bundlePath_(std::move(bundlePath)) { set(this); }
    ~AskedResources() override { set(nullptr); }
    AskedResources(const AskedResources&) = delete;
    AskedResources& operator=(const AskedResources&) = delete;

    void textAsked(const std::string& bundlePath, std::string_view key, std::string_view table) override;
    void imageAsked(const std::string& bundlePath, std::string_view name) override;

    /// The texts and images of one bundle that somebody asked for, there or not.
    struct Asked {
        /// Keys with their tables.
        std::set<std::pair<std::string, std::string>> texts;
        std::set<std::string> images;
    };
    /// What was asked for since the last call.
    Asked take() { return std::exchange(asked_, {}); }

    /// Whether the bundle has the text in that very language, or in one that it is a kind of.
    bool hasText(const std::string& language, const std::string& key, const std::string& table) const;

  private:
    std::string bundlePath_;
    Asked asked_;
};

}  // namespace settings
