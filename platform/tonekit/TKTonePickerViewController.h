// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/Error.h"
#include "platform/uikit/UIViewController.h"

namespace platform {

class TKTonePickerViewController;

/// What a tone picker tells its delegate.
class TKTonePickerViewControllerDelegate {
  public:
    virtual ~TKTonePickerViewControllerDelegate() = default;

    /// Empty when the user chose the "None" entry.
    virtual void tonePickerViewController_selectedToneWithIdentifier(
        const std::shared_ptr<TKTonePickerViewController>& picker,
        const std::optional<std::string>& identifier) = 0;
};

/// The phone's list of tones, of which one is selected. The tones are the device's, asked for anew by whoever
/// draws the list. Its delegate is held weakly. Main thread.
class TKTonePickerViewController : public UIViewController {
    PLATFORM_CLASS(TKTonePickerViewController, UIViewController)

  public:
    /// The alert type says what the tone is for; every type offers all tones.
    explicit TKTonePickerViewController(std::int64_t alertType) : alertType_(alertType) {}
    TKTonePickerViewController() = default;

    std::int64_t alertType() const { return alertType_; }
    /// Whether it has the method of that name. "setShowsToneStore:" is the one that some versions lack.
    bool respondsToSelector(std::string_view selector) const;
    /// Says of the phone's class whether it has "setShowsToneStore:". It has, unless this was called. For the
    /// whole process.
    static void setHasToneStore(bool has) { hasToneStore_ = has; }

    bool showsVibrations() const { return showsVibrations_; }
    void setShowsVibrations(bool shows) { showsVibrations_ = shows; }
    bool showsStoreButtonInNavigationBar() const { return showsStoreButton_; }
    void setShowsStoreButtonInNavigationBar(bool shows) { showsStoreButton_ = shows; }
    bool noneAtTop() const { return noneAtTop_; }
    void setNoneAtTop(bool atTop) { noneAtTop_ = atTop; }
    bool showsToneStore() const { return showsToneStore_; }
    /// Not to be called where the class lacks it: logged, and nothing changes.
    void setShowsToneStore(bool shows);

    /// Empty for "None".
    const std::optional<std::string>& selectedToneIdentifier() const { return selected_; }
    void setSelectedToneIdentifier(std::optional<std::string> identifier) {
        selected_ = std::move(identifier);
    }
    const std::string& defaultToneIdentifier() const { return default_; }
    void setDefaultToneIdentifier(std::string identifier) { default_ = std::move(identifier); }
    void setDelegate(const std::shared_ptr<Object>& delegate) { delegate_ = delegate; }

    /// What the user's tap on a tone (empty: "None") does: selects it and tells the delegate, also when it
    /// was selected already. The error says that there is no such entry.
    Result<void> userChoseTone(const std::optional<std::string>& identifier);

  private:
    static inline bool hasToneStore_ = true;

    std::int64_t alertType_ = 0;
    bool showsVibrations_ = true;
    bool showsStoreButton_ = false;
    bool noneAtTop_ = false;
    bool showsToneStore_ = true;
    std::optional<std::string> selected_;
    std::string default_;
    std::weak_ptr<Object> delegate_;
};

}  // namespace platform
