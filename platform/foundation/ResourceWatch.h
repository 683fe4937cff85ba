// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Is told of what bundles are asked for, whether they have it or not: for tools that look for what is
/// missing. Main thread.
class ResourceWatch {
  public:
    virtual ~ResourceWatch() = default;

    /// The key of a text, and the name of its table ("Localizable" where the caller named none).
    virtual void textAsked(const std::string& bundlePath, std::string_view key, std::string_view table) = 0;
    /// The name of an image, without scale and extension.
    virtual void imageAsked(const std::string& bundlePath, std::string_view name) = 0;

    /// Null, as it is at the start, for none.
    static ResourceWatch* current();
    /// The watch stays the caller's, who takes it away before it goes.
    static void set(ResourceWatch* watch);
};

}  // namespace platform
