// SPDX-License-Identifier: MIT
#include "conditions/tone/QuietrixUIToneController.h"

#include <utility>

#include "platform/foundation/LogSink.h"
#include "profile/model/QXUtils.h"

namespace quietrix {

using platform::Class;
using platform::ClassRegistry;
using platform::TKTonePickerViewController;

PLATFORM_REGISTER_CLASS(QuietrixUIToneController)

namespace {

[[maybe_unused]] const bool loaded =
    (ClassRegistry::shared().runAtLoad(QuietrixUIToneController::staticClass(),
                                       QuietrixUIToneController::load),
     true);

}  // namespace

// The superclass

void QuietrixUIToneController::load() {
    const auto standOn = [](const char* name) {
        const Class* cls = ClassRegistry::shared().find(name);
        if (cls != nullptr) ClassRegistry::setSuperclass(staticClass(), *cls);
        return cls != nullptr;
    };
    if (!QXUtils::isIOS9()) {
        standOn("ToneController");
        return;
    }
    if (standOn("PSUIToneController") || standOn("SHSToneController")) return;
    platform::log("############ ALERT NO SUPER TONE CONTROLLER CLASS #################");
}

QuietrixUIToneController::QuietrixUIToneController() {
    const Class& superclass = *staticClass().superclass();
    if (&superclass == &PSViewController::staticClass()) return;
    if (auto screen = ClassRegistry::shared().make<platform::ToneScreen>(superclass.name())) {
        toneScreen_ = std::move(*screen);
    } else {
        platform::log("QuietrixUIToneController: " + screen.error().localizedDescription);
    }
}

void QuietrixUIToneController::setSpecifier(std::shared_ptr<platform::PSSpecifier> specifier) {
    PSViewController::setSpecifier(specifier);
    if (toneScreen_) toneScreen_->setSpecifier(std::move(specifier));
}

std::shared_ptr<TKTonePickerViewController> QuietrixUIToneController::tonePickerViewController() {
    return toneScreen_ ? toneScreen_->tonePickerViewController() : nullptr;
}

void QuietrixUIToneController::setTonePickerViewController(
    std::shared_ptr<TKTonePickerViewController> picker) {
    if (toneScreen_) toneScreen_->setTonePickerViewController(std::move(picker));
}

void QuietrixUIToneController::loadView() {
    // One view for both: what the superclass puts on its view is this screen's content.
    if (toneScreen_) {
        setView(toneScreen_->view());
    } else {
        PSViewController::loadView();
    }
}

}  // namespace quietrix
