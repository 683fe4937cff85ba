// SPDX-License-Identifier: MIT
#include "platform/uikit/CallNote.h"

#include "platform/uikit/UIViewController.h"

namespace platform {

CallNote::CallNote(Told told, const Object& receiver, const std::string& selector, std::uint64_t row)
    : receiver_(receiver),
      selector_(selector),
      row_(row),
      isScreen_(dynamic_cast<const UIViewController*>(&receiver) != nullptr) {
    if (told == Told::Always) note();
}

Dictionary CallNote::fields() const {
    return {{"class", receiver_.getClass().name()},
            {"selector", selector_},
            {"row", row_ == 0 ? Value() : Value(row_)}};
}

}  // namespace platform
