// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/FileSystem.h"
#include "platform/foundation/Value.h"

namespace settings {

/// The phone paths of the property lists in which the bundle keeps what its user sets, by the names that its
/// Info list gives them under "StoredFiles", a dictionary of texts. Main thread.
std::map<std::string, std::string> storedFilePaths(const platform::Bundle& bundle);

/// What is in them just now: by name a property list, or nil for one that is not there or cannot be read.
/// "settings" and "profiles" are always among the names, and "log" is the end of the system's log, as text.
/// Under "problems", by name, stands what is wrong with those that are there. `bundle` may be null.
platform::Dictionary storedFiles(const std::shared_ptr<platform::Bundle>& bundle,
                                 const platform::FileSystem& files);

}  // namespace settings
