// SPDX-License-Identifier: MIT
#include "settings/checking/BundleCheck.h"

#include <string>
#include <vector>

#include "platform/foundation/PseudoLanguage.h"
#include "platform/preferences/PSViewController.h"
#include "platform/uikit/UIDevice.h"
#include "settings/application/TopScreen.h"
#include "settings/checking/AskedResources.h"
#include "settings/checking/BundleFiles.h"

namespace settings {

using platform::Result;

namespace {

/// Why the first screen cannot be made; nothing when it can.
Result<void> checkOpening(platform::Bundle& bundle) {
    if (const auto loaded = bundle.load(); !loaded) return loaded;
    const auto principal = bundle.principalClass();
    if (!principal) return std::unexpected(principal.error());
    const auto screen =
        platform::ClassRegistry::shared().make<platform::PSViewController>((*principal)->name());
    if (!screen) return std::unexpected(screen.error());
    return {};
}

/// Those that the bundle has, and the pseudo-languages that the phone was given.
std::vector<std::string> languagesToSpeak(const platform::Bundle& bundle) {
    std::vector<std::string> languages = languagesOfBundle(bundle);
    for (const std::string& language : platform::preferredLanguages()) {
        if (platform::pseudoLanguageOfTag(language)) languages.push_back(language);
    }
    return languages;
}

/// The tours of one state of the phone's data.
Result<void> tourDevices(Application& application, ScreenTour& tour, CheckOutcome& outcome,
                         const std::vector<std::string>& languages, const ScreenTour::Observers& observers) {
    for (const std::string& language : languages) {
        for (const char* idiom : {"idiom=phone", "idiom=pad"}) {
            for (const char* mode : {"darkMode=false", "darkMode=true"}) {
                Result<void> changed;
                tour.leave(observers, [&] {
                    const auto done = application.changeDevice({"languages=" + language, idiom, mode});
                    if (!done) changed = std::unexpected(done.error());
                });
                if (!changed) return changed;
                tour.go(language);
                ++outcome.tours;
            }
        }
    }
    return {};
}

}  // namespace

Result<CheckOutcome> checkBundle(Application& application, const std::string& bundlePath,
                                 const CheckOptions& options) {
    const auto bundle = platform::Bundle::bundleWithPath(bundlePath);
    if (!bundle) return platform::failure("There is no bundle \"" + bundlePath + "\".");
    // First, so that it is told once and not by the application's log too.
    if (const auto opened = checkOpening(*bundle); !opened) return std::unexpected(opened.error());
    application.start();
    CheckOutcome outcome;
    checkPlaceholders(*application.bundle(), outcome.findings);
    checkImages(*application.bundle(), outcome.findings);

    AskedResources asked(application.bundle()->bundlePath());
    ScreenTour tour(application, asked, outcome.findings, options.timings);
    // With the first screen open, as it is at each comparison.
    const ScreenTour::Observers observers = tour.observers();
    const std::vector<std::string> languages = languagesToSpeak(*application.bundle());
    if (const auto toured = tourDevices(application, tour, outcome, languages, observers); !toured)
        return std::unexpected(toured.error());
    if (options.bringData) {
        if (const auto brought = options.bringData(); !brought) return std::unexpected(brought.error());
        if (const auto toured = tourDevices(application, tour, outcome, languages, observers); !toured)
            return std::unexpected(toured.error());
    }
    outcome.screens = tour.seen();
    return outcome;
}

}  // namespace settings
