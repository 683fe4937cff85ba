// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/preferences/PSEditingPane.h"
#include "platform/uikit/UIDatePicker.h"
#include "platform/uikit/UITableView.h"

namespace ringer {

/// The times of the day's first and last bell: a row each, and one wheel for the row that was tapped last. It
/// stands on the framework's own detail screen, which makes it when the row names it as its pane.
class RingerTimesPane : public platform::PSEditingPane,
                        public platform::UITableViewDataSource,
                        public platform::UITableViewDelegate {
    PLATFORM_CLASS(RingerTimesPane, platform::PSEditingPane)

  public:
    using Table = std::shared_ptr<platform::UITableView>;

    using PSEditingPane::PSEditingPane;
    ~RingerTimesPane() override;

    /// The first call, once the pane has its owner, makes what is on it.
    void setPreferenceSpecifier(std::shared_ptr<platform::PSSpecifier> specifier) override;
    void layoutSubviews() override;

    std::int64_t numberOfSectionsInTableView(const Table& table) override;
    std::int64_t tableView_numberOfRowsInSection(const Table& table, std::int64_t section) override;
    std::shared_ptr<platform::UITableViewCell> tableView_cellForRowAtIndexPath(
        const Table& table, platform::IndexPath path) override;
    void tableView_didSelectRowAtIndexPath(const Table& table, platform::IndexPath path) override;
    /// The wheel's action: stores the time of the row that it stands for.
    void timeChosen(const std::shared_ptr<platform::Object>& sender);

  private:
    void build();
    void edit(std::int64_t row);

    Table rows_;
    /// Its tag is the row that it edits.
    std::shared_ptr<platform::UIDatePicker> wheel_;
};

}  // namespace ringer
