// SPDX-License-Identifier: MIT
#include "platform/tonekit/TKTonePickerViewController.h"

#include <algorithm>

#include "platform/foundation/Device.h"
#include "platform/foundation/LogSink.h"

namespace platform {

PLATFORM_REGISTER_CLASS(TKTonePickerViewController)

bool TKTonePickerViewController::respondsToSelector(std::string_view selector) const {
    return hasToneStore_ && selector == "setShowsToneStore:";
}

void TKTonePickerViewController::setShowsToneStore(bool shows) {
    if (!hasToneStore_) {
        log(getClass().name() + ": there is no \"setShowsToneStore:\".");
        return;
    }
    showsToneStore_ = shows;
}

Result<void> TKTonePickerViewController::userChoseTone(const std::optional<std::string>& identifier) {
    if (!identifier) {
        if (!noneAtTop_) return failure("This tone picker has no \"None\" entry.");
    } else {
        const auto& source = Device::current().tones;
        const auto tones = source ? source->tones() : std::vector<ToneEntry>();
        if (std::ranges::find(tones, *identifier, &ToneEntry::identifier) == tones.end())
            return failure("There is no tone \"" + *identifier + "\".");
    }
    // The delegate may take the picker off the screen.
    const auto self = shared(this);
    selected_ = identifier;
    const auto delegate = delegate_.lock();
    if (auto* told = dynamic_cast<TKTonePickerViewControllerDelegate*>(delegate.get()))
        told->tonePickerViewController_selectedToneWithIdentifier(self, identifier);
    return {};
}

}  // namespace platform
