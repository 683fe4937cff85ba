// SPDX-License-Identifier: MIT
// Any lines at all, one session's after another, over a screen with a row of every kind. Each is answered by
// one line of JSON that tells how it went and what is shown.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "device/DeviceOptions.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"
#include "platform/preferences/PSEditableListController.h"
#include "settings/application/Application.h"
#include "settings/application/TopScreen.h"
#include "settings/channels/JSON.h"
#include "settings/channels/Session.h"

namespace {

using platform::method;
using platform::PSCellType;
using platform::PSSpecifier;
using platform::Value;

class FuzzedList : public platform::PSEditableListController {
    PLATFORM_CLASS(FuzzedList, platform::PSEditableListController)

  public:
    platform::SpecifierArray specifiers() override {
        if (specifiers_) return specifiers_;
        specifiers_ = std::make_shared<platform::SpecifierList>();
        for (const auto kind : {PSCellType::Group, PSCellType::Link, PSCellType::Slider, PSCellType::Switch,
                                PSCellType::EditText, PSCellType::Button}) {
            specifiers_->push_back(PSSpecifier::preferenceSpecifierNamed_target_set_get_detail_cell_edit(
                "Row", shared(this), method("set:", &FuzzedList::set), method("get:", &FuzzedList::get),
                "FuzzedList", kind, {}));
        }
        return specifiers_;
    }
    std::int64_t tableView_editingStyleForRowAtIndexPath(
        const std::shared_ptr<platform::UITableView>& /*table*/, platform::IndexPath /*path*/) override {
        return platform::UITableViewCellEditingStyleDelete;
    }
    void set(const Value& value, const std::shared_ptr<PSSpecifier>& /*specifier*/) { value_ = value; }
    Value get(const std::shared_ptr<PSSpecifier>& /*specifier*/) { return value_; }

  private:
    Value value_;
};

PLATFORM_REGISTER_CLASS(FuzzedList)

class SilentLog : public platform::LogSink {
  public:
    void write(const std::string& /*line*/) override {}
};

/// Takes every change of the device that the command line would, and stays as it is.
class FuzzedPhone : public settings::RunningPhone {
  public:
    platform::Result<void> checkDevice(const std::vector<std::string>& pairs) const override {
        const auto checked = device::DeviceOptions::parse(pairs);
        if (!checked) return std::unexpected(checked.error());
        return {};
    }
    platform::Result<void> changeDevice(const std::vector<std::string>& pairs) override {
        return checkDevice(pairs);
    }
    std::vector<std::string> devicePairs() const override { return {}; }
    std::shared_ptr<device::VirtualClock> clock() const override { return clock_; }
    std::shared_ptr<platform::FileSystem> files() const override { return nullptr; }
    device::Faults& faults() override { return faults_; }

  private:
    std::shared_ptr<device::VirtualClock> clock_ = std::make_shared<device::VirtualClock>(platform::Date{0});
    device::Faults faults_;
};

void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedPhone phone;
    platform::Device device;
    device.clock = phone.clock();
    device.log = std::make_shared<SilentLog>();
    platform::Device::install(std::move(device));
    {
        settings::Application application("/Library/PreferenceBundles/Absent.bundle", &phone);
        application.start();
        settings::TopScreen::now().navigation->pushViewController_animated(std::make_shared<FuzzedList>(),
                                                                           false);
        settings::Session session(application, std::chrono::milliseconds(0));
        std::string_view lines(reinterpret_cast<const char*>(data), size);
        while (!lines.empty()) {
            const std::size_t end = std::min(lines.find('\n'), lines.size());
            const std::string answer = session.answer(lines.substr(0, end));
            require(answer.find('\n') == std::string::npos);
            const auto json = settings::parseJSON(answer);
            require(json && (*json)["ok"].boolean() && (*json)["state"].dictionary());
            require((*json)["ok"] == Value(true) || (*json)["error"].string());
            lines.remove_prefix(std::min(end + 1, lines.size()));
        }
    }
    platform::RunLoop::main().reset();
    return 0;
}
