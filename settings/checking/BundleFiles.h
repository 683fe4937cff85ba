// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "settings/checking/Finding.h"

namespace settings {

/// The languages that the Info list names under "CFBundleLocalizations"; without that its development region
/// alone.
std::vector<std::string> languagesOfBundle(const platform::Bundle& bundle);

/// A text whose placeholders ("%@", "%2$d") are others than those of the same text in the development
/// region's language. Their order counts only where they are not numbered.
void checkPlaceholders(const platform::Bundle& bundle, Findings& findings);

/// The scales of 1 to 3 at which the bundle has no file of that image; all three when there is no such image.
std::vector<int> missingScales(const platform::Bundle& bundle, const std::string& image);
/// An image at the top of the bundle that is there at some scale and not at every one.
void checkImages(const platform::Bundle& bundle, Findings& findings);

}  // namespace settings
