// SPDX-License-Identifier: MIT
#pragma once

#include "platform/preferences/PSSpecifier.h"

namespace platform {

/// A button row that asks before it acts: selecting it shows the prompt with the ok and the cancel button,
/// and only the ok button sends the row's action.
class PSConfirmationSpecifier : public PSSpecifier {
    PLATFORM_CLASS(PSConfirmationSpecifier, PSSpecifier)

  public:
    static std::shared_ptr<PSConfirmationSpecifier> preferenceSpecifierNamed_target_set_get_detail_cell_edit(
        std::string_view name, const std::shared_ptr<Object>& target, Setter set, Getter get,
        std::string_view detail, PSCellType cell, std::string_view edit);

    const std::string& prompt() const { return prompt_; }
    void setPrompt(std::string prompt) { prompt_ = std::move(prompt); }
    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }
    const std::string& okButton() const { return okButton_; }
    void setOkButton(std::string title) { okButton_ = std::move(title); }
    const std::string& cancelButton() const { return cancelButton_; }
    void setCancelButton(std::string title) { cancelButton_ = std::move(title); }

  private:
    std::string prompt_;
    std::string title_;
    std::string okButton_;
    std::string cancelButton_;
};

}  // namespace platform
