// SPDX-License-Identifier: MIT
#include "settings/application/ListedServices.h"

#include <algorithm>
#include <string>

#include "settings/application/Pickers.h"

namespace settings {

namespace {

ListedService serviceNamed(const std::string& name) {
    if (name == "calendars") return ListedService::Calendars;
    if (name == "networks") return ListedService::Networks;
    if (name == "tones") return ListedService::Tones;
    return ListedService::None;
}

ListedService serviceOf(const platform::Bundle& bundle, const std::string& screenClass) {
    const auto entries = bundle.infoDictionary().find("ListedServices");
    if (entries == bundle.infoDictionary().end() || entries->second.array() == nullptr)
        return ListedService::None;
    for (const auto& entry : *entries->second.array()) {
        if (entry["Screen"].stringOr() == screenClass) return serviceNamed(entry["Service"].stringOr());
    }
    return ListedService::None;
}

bool showsAnyOf(ListedService service, const TopScreen& top) {
    if (service == ListedService::Tones) return tonePickerOf(top.screen) != nullptr;
    const auto list = top.list();
    if (!list) return true;
    const auto rows = list->specifiers();
    return std::ranges::any_of(*rows, [](const auto& row) { return !row->userInfo().isNil(); });
}

}  // namespace

ListedService missingService(const std::shared_ptr<platform::Bundle>& bundle, const TopScreen& top) {
    if (!bundle || !top.screen) return ListedService::None;
    const ListedService service = serviceOf(*bundle, top.screen->getClass().name());
    if (service == ListedService::None || showsAnyOf(service, top)) return ListedService::None;
    return service;
}

}  // namespace settings
