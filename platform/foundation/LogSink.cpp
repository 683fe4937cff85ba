// SPDX-License-Identifier: MIT
#include "platform/foundation/LogSink.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "platform/foundation/Device.h"
#include "platform/foundation/Journal.h"

namespace platform {

void log(const std::string& line) {
    std::string text = line;
    std::ranges::replace_if(text, [](char c) { return c == '\n' || c == '\r'; }, ' ');
    Journal::shared().record("log", {{"text", text}});
    if (const std::shared_ptr<LogSink> sink = Device::current().log) {
        sink->write(text);
    } else {
        std::fputs((text + "\n").c_str(), stderr);
    }
}

}  // namespace platform
