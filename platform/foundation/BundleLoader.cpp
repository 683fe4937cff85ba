// SPDX-License-Identifier: MIT
#include "platform/foundation/BundleLoader.h"

#include <dlfcn.h>

#include <filesystem>
#include <system_error>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Class.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/LogSink.h"

namespace platform {

namespace {

std::string theBundle(const std::string& bundlePath) {
    return "The bundle \"" + bundlePath + "\"";
}

Result<void> checkVersion(const std::string& bundlePath, const Dictionary& info) {
    const auto named = info.find("PlatformInterfaceVersion");
    const auto version = named == info.end() ? std::nullopt : named->second.integer();
    if (version == platformInterfaceVersion) return {};
    const std::string own = std::to_string(platformInterfaceVersion);
    if (!version) {
        return failure(theBundle(bundlePath) +
                       " does not say for which interface version it was built; this system has version " +
                       own + ".");
    }
    return failure(theBundle(bundlePath) + " was built for interface version " + std::to_string(*version) +
                   "; this system has version " + own + ": build it anew for that.");
}

Result<std::string> executableName(const std::string& bundlePath, const Dictionary& info) {
    const auto named = info.find("CFBundleExecutable");
    std::string name = named == info.end() ? std::string() : named->second.stringOr();
    if (name.empty()) return failure(theBundle(bundlePath) + " names no executable in its Info list.");
    if (name.find('/') != std::string::npos) {
        return failure(theBundle(bundlePath) + " names \"" + name +
                       "\" as its executable, which is no file of its own.");
    }
    return name;
}

// Links are resolved, so that one file reached by two paths is one piece of code.
std::string resolved(const std::string& path) {
    std::error_code error;
    const std::filesystem::path canonical = std::filesystem::canonical(path, error);
    return error ? path : canonical.string();
}

}  // namespace

BundleLoader& BundleLoader::shared() {
    static BundleLoader loader;
    return loader;
}

Result<void> BundleLoader::load(const std::string& bundlePath, const Dictionary& info) {
    const Result<std::string> executable = executableName(bundlePath, info);
    if (!executable) return std::unexpected(executable.error());
    // Before the loader sees the file: code of another version must not run at all, its constructors
    // included.
    if (auto checked = checkVersion(bundlePath, info); !checked) return checked;
    const auto& files = Device::current().files;
    if (!files) return failure(theBundle(bundlePath) + " cannot be loaded: the device has no file system.");

    const std::string hostPath =
        resolved(files->hostPath(stringByAppendingPathComponent(bundlePath, *executable)));
    if (const auto known = opened_.find(hostPath); known != opened_.end()) return known->second;
    return open(bundlePath, hostPath);
}

Result<void> BundleLoader::open(const std::string& bundlePath, const std::string& hostPath) {
    ClassRegistry& registry = ClassRegistry::shared();
    // What is left from before is nothing that this bundle brings.
    for (const std::string& name : registry.takeDuplicates()) {
        log("The class \"" + name + "\" is there more than once; the first one is used.");
    }
    registry.beginLoading(bundlePath);
    const void* const handle = ::dlopen(hostPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    registry.endLoading();
    if (handle == nullptr) {
        const char* const reason = ::dlerror();
        return failure(theBundle(bundlePath) +
                       " cannot be loaded: " + (reason != nullptr ? reason : "unknown") + ".");
    }
    Result<void> outcome;
    if (const std::vector<std::string> taken = registry.takeDuplicates(); !taken.empty()) {
        outcome = failure(theBundle(bundlePath) + " brings a class named \"" + taken.front() +
                          "\", but there is one already.");
    }
    opened_.insert_or_assign(hostPath, outcome);
    return outcome;
}

}  // namespace platform
