// SPDX-License-Identifier: MIT
// The bundle of test_watch.py, which compiles it itself. How it goes wrong stands in its Info list, so that
// most tests need no compiler.
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "platform/foundation/Bundle.h"
#include "platform/preferences/PSListController.h"

namespace {

constexpr const char* shownText = "first text";

}  // namespace

class WatchedScreen : public platform::PSListController {
    PLATFORM_CLASS(WatchedScreen, platform::PSListController)

  protected:
    std::string told(const char* key) const {
        const auto bundle = platform::Bundle::bundleForClass(getClass());
        const auto entry = bundle->infoDictionary().find(key);
        return entry == bundle->infoDictionary().end() ? "" : entry->second.stringOr();
    }
    /// As it was when the program began: the one before goes on as it is.
    const std::string& mode() const {
        static const std::string atBegin = told("Mode");
        return atBegin;
    }
    std::shared_ptr<platform::PSSpecifier> row(const std::string& name, platform::PSCellType kind,
                                               const char* detail = "") {
        auto made = platform::PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
            name, shared(this), platform::method("set:specifier:", &WatchedScreen::set),
            platform::method("get:", &WatchedScreen::get), detail, kind, {});
        made->setIdentifier(name);
        return made;
    }
    platform::Value get(const std::shared_ptr<platform::PSSpecifier>& /*specifier*/) { return ""; }
    void set(const platform::Value& value, const std::shared_ptr<platform::PSSpecifier>& /*specifier*/) {
        std::ofstream(told("Typed"), std::ios::app) << value.stringOr() << '\n';
    }
};

PLATFORM_REGISTER_CLASS(WatchedScreen)

class WatchedController : public WatchedScreen {
    PLATFORM_CLASS(WatchedController, WatchedScreen)

  public:
    platform::SpecifierArray specifiers() override {
        if (mode() == "abort") std::abort();
        if (mode() == "hang") {
            for (;;) continue;
        }
        if (!specifiers_) {
            specifiers_ = std::make_shared<platform::SpecifierList>(
                platform::SpecifierList{platform::PSSpecifier::emptyGroupSpecifier(),
                                        row("Inner", platform::PSCellType::Link, "WatchedInnerController")});
        }
        return specifiers_;
    }
};

PLATFORM_REGISTER_CLASS(WatchedController)

class WatchedInnerController : public WatchedScreen {
    PLATFORM_CLASS(WatchedInnerController, WatchedScreen)

  public:
    platform::SpecifierArray specifiers() override {
        if (mode() == "abortInner") std::abort();
        if (!specifiers_) {
            specifiers_ = std::make_shared<platform::SpecifierList>(platform::SpecifierList{
                platform::PSSpecifier::emptyGroupSpecifier(), row("Typed", platform::PSCellType::EditText),
                row(shownText, platform::PSCellType::StaticText),
                row(told("Text"), platform::PSCellType::StaticText)});
        }
        return specifiers_;
    }
};

PLATFORM_REGISTER_CLASS(WatchedInnerController)
