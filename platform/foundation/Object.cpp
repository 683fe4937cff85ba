// SPDX-License-Identifier: MIT
#include "platform/foundation/Object.h"

namespace platform {

// Not made by name: an Object that is nothing more is of no use to whoever asks the registry for a class.
const Class& Object::staticClass() {
    static const Class cls("Object", nullptr, nullptr);
    return cls;
}

[[maybe_unused]] static const bool registeredObject = ClassRegistry::shared().add(Object::staticClass());

}  // namespace platform
