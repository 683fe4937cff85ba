// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/preferences/PSViewController.h"
#include "platform/tonekit/TKTonePickerViewController.h"

namespace platform {

/// A screen whose content is a tone picker.
class TonePickerHost {
  public:
    virtual ~TonePickerHost() = default;

    /// Null while there is none.
    virtual std::shared_ptr<TKTonePickerViewController> tonePickerViewController() = 0;
};

/// The Settings application's own tone screen. Its class has another name from one system version to the
/// next, so there are as many classes of it as a phone is said to have; see makeToneScreenClassExist. Main
/// thread.
class ToneScreen : public PSViewController, public TonePickerHost {
  public:
    explicit ToneScreen(const Class& cls) : cls_(cls) {}

    const Class& getClass() const override { return cls_; }
    std::shared_ptr<TKTonePickerViewController> tonePickerViewController() override { return picker_; }
    /// Makes the picker the screen's content, in place of the one before.
    void setTonePickerViewController(std::shared_ptr<TKTonePickerViewController> picker);

  private:
    const Class& cls_;
    std::shared_ptr<TKTonePickerViewController> picker_;
};

/// From now on the class registry knows a tone screen of that name, under PSViewController. Names that it
/// knows already are left as they are. Before the bundles are loaded that look for it, or do so again.
void makeToneScreenClassExist(const std::string& name);
/// Takes those that were made so out of the registry again. Nothing made of them may be left.
void forgetToneScreenClasses();

}  // namespace platform
