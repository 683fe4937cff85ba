// SPDX-License-Identifier: MIT
// Another process that changes the profiles of a root: `store-writer ROOT PREFIX COUNT` adds COUNT profiles
// whose identifiers begin with PREFIX and renames each of them once. Ends with status 0 when every change
// succeeded. With "others-go-back" behind it a profile may be gone by the time it is renamed.
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include "device/RootFileSystem.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/RunLoop.h"
#include "profile/model/QXProfilesManager.h"

int main(int argc, char** argv) {
    if (argc != 4 && argc != 5) return 2;
    const bool othersGoBack = argc == 5;
    platform::Device phone;
    phone.files = std::make_shared<device::RootFileSystem>(argv[1]);
    platform::Device::install(phone);
    const std::string prefix = argv[2];
    const int count = std::atoi(argv[3]);
    const auto store = quietrix::QXProfilesManager::sharedManager();
    int status = 0;
    // A lock that was not had in time is tried for again: on a machine that is busy enough that is no mistake
    // of anybody's.
    const auto change = [&](auto operation, const std::shared_ptr<quietrix::QXProfile>& profile) {
        for (bool again = true; again;) {
            again = false;
            ((*store).*operation)(profile, nullptr, [&](const platform::Error& error) {
                again = error.localizedDescription.find("could not be locked within") != std::string::npos;
                if (again) return;
                if (othersGoBack && error.localizedDescription.ends_with("; it may have been deleted."))
                    return;
                std::cerr << error.localizedDescription << '\n';
                status = 1;
            });
            platform::RunLoop::main().drain();
        }
    };
    for (int i = 0; i < count; ++i) {
        const auto profile = std::make_shared<quietrix::QXProfile>();
        profile->setIdentifier(prefix + std::to_string(i));
        change(&quietrix::QXProfilesManager::addProfile_success_failure, profile);
        profile->setTitle("renamed");
        change(&quietrix::QXProfilesManager::updateProfile_success_failure, profile);
    }
    return status;
}
