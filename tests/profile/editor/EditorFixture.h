// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "profile/editor/QuietrixProflePreferencesController.h"
#include "tests/doubles/ProfileScreenFixture.h"

namespace quietrix {

inline constexpr const char* statusBarLibrary =
    "/Library/MobileSubstrate/DynamicLibraries/libstatusbar.dylib";

/// The profile editor above another screen, or presented for a new profile. The profile is enabled, has hours
/// and an alert, and the phone has the status-bar library: all of the editor's rows are there.
class EditorFixture : public doubles::ProfileScreenFixture<QuietrixProflePreferencesController> {
  protected:
    EditorFixture() {
        phone_.libraries->present.insert(statusBarLibrary);
        profile_->setTitle("Work");
        profile_->setEnabled(true);
        profile_->setAllDay(false);
        profile_->setStartTime("9:00 AM");
        profile_->setEndTime("5:00 PM");
        profile_->setPlayAlert(true);
    }
    void open(std::shared_ptr<QuietrixProflePreferencesController> screen =
                  std::make_shared<QuietrixProflePreferencesController>()) {
        storeProfile();
        makeOpeningRow(profile_->title(), profile_);
        openScreen(profile_->isNewProfile() ? doubles::Place::Presented : doubles::Place::AboveAnother,
                   std::move(screen));
    }
    /// The store's and the rows' events in order: "update ok", "insert 6 Active Hours animated".
    std::string happened() {
        std::string text;
        for (const auto& event : phone_.takeEvents()) {
            const platform::Value value(event);
            const std::string kind = value["event"].stringOr();
            std::string line;
            if (kind == "store") line = value["call"].stringOr() + (value["ok"].isTrue() ? " ok" : " failed");
            if (kind == "insert" || kind == "remove") {
                line = kind + " " + value["index"].description() + " " + value["name"].stringOr("-") +
                       (value["animated"].isTrue() ? " animated" : "");
            }
            if (line.empty()) continue;
            text += (text.empty() ? "" : "; ") + line;
        }
        return text;
    }
};

}  // namespace quietrix
