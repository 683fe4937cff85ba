// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/foundation/CalendarSource.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/DeviceFacts.h"
#include "platform/foundation/DynamicLibraries.h"
#include "platform/foundation/FileSystem.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/MailService.h"
#include "platform/foundation/NetworkSource.h"
#include "platform/foundation/NotificationTransport.h"
#include "platform/foundation/Processes.h"
#include "platform/foundation/RandomSource.h"
#include "platform/foundation/ToneSource.h"
#include "platform/foundation/URLOpener.h"

namespace platform {

/// Everything that the phone's frameworks need of the machine they run on. The program installs one before it
/// opens a screen; tests install their own. A member that a program has no use for may be empty: the
/// frameworks then answer as on a phone without it (no file, no library, nothing opened, no calendars, the
/// system's own time and chance).
struct Device {
    std::shared_ptr<FileSystem> files;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<NotificationTransport> notifications;
    std::shared_ptr<DeviceFacts> facts;
    std::shared_ptr<URLOpener> urls;
    std::shared_ptr<DynamicLibraries> libraries;
    std::shared_ptr<CalendarSource> calendars;
    std::shared_ptr<NetworkSource> networks;
    std::shared_ptr<ToneSource> tones;
    std::shared_ptr<MailService> mail;
    std::shared_ptr<Processes> processes;
    std::shared_ptr<LogSink> log;
    std::shared_ptr<RandomSource> random;

    /// The installed device. Installing happens on the main thread while nothing else runs. The installed one
    /// is not destroyed when the process ends: a program installs an empty one last, so that services that
    /// leave traces (a socket in a directory) remove them.
    static const Device& current();
    static void install(Device device);
};

}  // namespace platform
