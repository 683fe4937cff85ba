// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/Class.h"
#include "platform/foundation/Error.h"
#include "platform/foundation/Value.h"

namespace platform {

/// The version of the interface between this platform and the bundles built against it. A bundle says in its
/// Info property list ("PlatformInterfaceVersion") which one it was built for; another one is not loaded.
inline constexpr std::int64_t platformInterfaceVersion = 1;

/// A directory of code, texts and images: "Info.plist", "LANG.lproj/TABLE.strings", images as "NAME.png",
/// "NAME@2x.png", "NAME@3x.png". Main thread only.
class Bundle {
  public:
    /// The bundle at that directory of the phone, or empty when there is no directory. Made anew at each
    /// call.
    static std::shared_ptr<Bundle> bundleWithPath(std::string_view path);
    /// The program's own bundle; never empty (with no directory set, it has no texts and no images).
    static std::shared_ptr<Bundle> mainBundle();
    static void setMainBundlePath(std::string path);
    /// The bundle that brought the class; the main bundle for the program's own classes.
    static std::shared_ptr<Bundle> bundleForClass(const Class& cls);
    /// Programs that link a bundle's code rather than loading it (unit tests) say here which bundle
    /// bundleForClass answers for all classes that no loaded bundle brought. Empty: the main bundle again.
    static void setBundlePathForLinkedClasses(std::string path);

    explicit Bundle(std::string path) : path_(std::move(path)) {}

    const std::string& bundlePath() const { return path_; }
    /// The Info property list, read once for each Bundle; empty when it is missing or unreadable.
    const Dictionary& infoDictionary() const;

    /// The phone path of the resource NAME.TYPE at the top of the bundle, or "" when there is none.
    std::string pathForResource_ofType(std::string_view name, std::string_view type) const;

    /// The text under the key in the first preferred language that the bundle has a table for (else its
    /// development region's, which is English when the Info list names none). Language matching: the exact
    /// tag, then the tag without its last piece, and so on; of a pseudo-language (see PseudoLanguage.h) each
    /// text is made from the development region's. A table that cannot be read is logged and passed over.
    /// When there is no such key: the default value, or, when that is empty, the key itself. An empty table
    /// name means "Localizable".
    std::string localizedStringForKey_value_table(std::string_view key, std::string_view value,
                                                  std::string_view table) const;

    /// Opens the bundle's code, runs its load-time constructors and takes over its classes. The same code, by
    /// whatever path it is reached, is opened once and stays for the life of the process; a second call
    /// answers as the first did. The errors name the bundle and tell apart: no Info list, no executable
    /// named, another interface version, code that the loader refuses (with its reason; this can be tried
    /// again), a class name that is taken.
    Result<void> load();
    /// The class that the Info list names as the first screen's ("NSPrincipalClass"), after load(). Errors:
    /// none named, no such class.
    Result<const Class*> principalClass() const;

  private:
    std::string path_;
    mutable std::unique_ptr<const Dictionary> info_;
};

}  // namespace platform
