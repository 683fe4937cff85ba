// SPDX-License-Identifier: MIT
#include "device/BrowserURLOpener.h"

#include <algorithm>
#include <cstdio>

#include "platform/foundation/Journal.h"

namespace device {

namespace {

/// The scheme in small letters; "" when there is none.
std::string scheme(const std::string& url) {
    std::string result = url.substr(0, url.find("://"));
    if (result.size() == url.size()) return {};
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return result;
}

}  // namespace

bool BrowserURLOpener::canOpenURL(const std::string& url) const {
    const bool printable =
        std::ranges::all_of(url, [](char c) { return static_cast<unsigned char>(c) > 32 && c != 127; });
    if (!printable) return false;
    const std::string name = scheme(url);
    return name == "http" || name == "https" ||
           (name == "twitter" && twitter_ == TwitterApplication::Installed);
}

bool BrowserURLOpener::openURL(const std::string& url) {
    if (!canOpenURL(url)) return false;
    platform::Journal::shared().record("open", {{"url", url}});
    if (desktop_ == Desktop::IsLeftAlone) return true;
    const auto print = [url] { std::fputs(("Please open " + url + "\n").c_str(), stderr); };
    if (!startDesktopProgram("xdg-open", url, print)) print();
    return true;
}

}  // namespace device
