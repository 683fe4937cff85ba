// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/PropertyList.h"
#include "profile/model/QXProfilesManager.h"
#include "tests/doubles/Phone.h"
#include "tests/doubles/Required.h"

/// A phone of doubles with a fresh store on it.
class StoreFixture : public testing::Test {
  protected:
    using Values = platform::Dictionary;

    static platform::Data bytesOf(const platform::Value& value, platform::PropertyListFormat format =
                                                                    platform::PropertyListFormat::Binary) {
        return platform::PropertyListSerialization::dataWithPropertyList(value, format).value();
    }
    static platform::Value fileOf(platform::Array profiles, Values more = {}) {
        more.insert_or_assign("format", 1);
        more.insert_or_assign("profiles", std::move(profiles));
        return more;
    }
    static std::shared_ptr<quietrix::QXProfile> profile(const std::string& identifier,
                                                        const std::string& title = "") {
        auto made = std::make_shared<quietrix::QXProfile>();
        made->setIdentifier(identifier);
        made->setTitle(title);
        return made;
    }
    static std::vector<std::string> identifiersOf(
        const std::vector<std::shared_ptr<quietrix::QXProfile>>& profiles) {
        std::vector<std::string> identifiers;
        for (const auto& each : profiles) identifiers.push_back(each->identifier());
        return identifiers;
    }

    /// Puts the file there as another process would.
    void putFile(const platform::Value& value) { phone_.files->put(path_, bytesOf(value)); }
    platform::Data rawFile() const { return phone_.files->read(path_).value_or(platform::Data()); }
    platform::Value file() const {
        return platform::PropertyListSerialization::propertyListWithData(rawFile()).value_or(
            platform::Value());
    }
    platform::Value storedProfile(std::size_t position) const {
        return doubles::required(file()["profiles"].array())->at(position);
    }
    std::size_t storedCount() const {
        return file()["profiles"].array() ? file()["profiles"].array()->size() : 0;
    }

    /// What became of a change: "success", or the error's sentence.
    using Operation = void (quietrix::QXProfilesManager::*)(const std::shared_ptr<quietrix::QXProfile>&,
                                                            quietrix::QXProfilesManager::Success,
                                                            quietrix::QXProfilesManager::Failure);
    std::string run(Operation operation, const std::shared_ptr<quietrix::QXProfile>& record) {
        std::string outcome = "no callback";
        (store_.get()->*operation)(
            record, [&] { outcome = "success"; },
            [&](const platform::Error& error) { outcome = error.localizedDescription; });
        phone_.drain();
        return outcome;
    }
    std::string add(const std::shared_ptr<quietrix::QXProfile>& record) {
        return run(&quietrix::QXProfilesManager::addProfile_success_failure, record);
    }
    std::string update(const std::shared_ptr<quietrix::QXProfile>& record) {
        return run(&quietrix::QXProfilesManager::updateProfile_success_failure, record);
    }
    std::string remove(const std::shared_ptr<quietrix::QXProfile>& record) {
        return run(&quietrix::QXProfilesManager::deleteProfile_success_failure, record);
    }
    std::shared_ptr<quietrix::QXProfile> stored(const std::string& identifier) {
        return store_->profileByIdentifier_shouldReload(identifier, false);
    }

    const std::string path_{quietrix::profilesPath};
    doubles::Phone phone_;
    std::shared_ptr<quietrix::QXProfilesManager> store_ = std::make_shared<quietrix::QXProfilesManager>();
};
