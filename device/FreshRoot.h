// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/foundation/Error.h"

namespace device {

/// Makes a directory ready to be the phone's root. One that does not exist or is empty is filled like a
/// freshly set-up phone on which the product was just installed:
///
/// - "/System/Library/PrivateFrameworks/PreferencesUI.framework": the images of the folder "root" in
///   `resourceDirectory`
/// - "/var/mobile/Library/Calendars": what is in the folder "calendars" of that one
/// - "/var/mobile/Library/Preferences/com.velmora.quietrix.plist": the product switched off
/// - "/tmp": empty
///
/// While that goes on the root holds the file ".filling"; killed in the middle, the next call fills it again,
/// and a second process that comes meanwhile waits. Any other root is left as it is, but for a settings file
/// that is damaged (MainSettingsFile). Then, each time, "/Library/PreferenceBundles" gets a link to
/// `bundleDirectory` under that directory's own name, in place of an older link. A lock is waited for only
/// where there is something to do. All three are host paths. The error is one sentence for the user.
platform::Result<void> prepareRoot(const std::string& rootDirectory, const std::string& resourceDirectory,
                                   const std::string& bundleDirectory);

/// Whether that would fill the root: it is not there, it is empty, or a filling did not come to its end.
platform::Result<bool> isUnfilledRoot(const std::string& rootDirectory);

}  // namespace device
