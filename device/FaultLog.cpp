// SPDX-License-Identifier: MIT
#include "device/FaultLog.h"

#include <utility>

#include "platform/foundation/LogSink.h"

namespace device {

void FaultLog::report(const std::string& line, const std::string& state) {
    std::string fault = line;
    fault.append(1, '\0').append(state);
    const bool isNews = !before_.contains(fault);
    if (now_.insert(std::move(fault)).second && isNews) platform::log(line);
}

void FaultLog::endQuestion() {
    before_ = std::exchange(now_, {});
}

}  // namespace device
