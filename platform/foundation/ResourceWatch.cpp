// SPDX-License-Identifier: MIT
#include "platform/foundation/ResourceWatch.h"

namespace platform {

namespace {

ResourceWatch*& installed() {
    static ResourceWatch* watch = nullptr;
    return watch;
}

}  // namespace

ResourceWatch* ResourceWatch::current() {
    return installed();
}

void ResourceWatch::set(ResourceWatch* watch) {
    installed() = watch;
}

}  // namespace platform
