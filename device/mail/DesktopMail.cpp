// SPDX-License-Identifier: MIT
#include "device/mail/DesktopMail.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <ctime>

#include "device/PhonePaths.h"
#include "device/UniversalTime.h"
#include "device/mail/MailMessage.h"
#include "platform/foundation/Calendar.h"
#include "platform/foundation/Device.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/Hexadecimal.h"
#include "platform/foundation/LogSink.h"
#include "platform/foundation/RandomSource.h"

namespace device {

using platform::FileManager;
using platform::MailDraft;
using platform::Result;

namespace {

constexpr double referenceSince1970 = 978'307'200;

/// The time for those who look into the folder, and enough chance that no two are alike.
std::string newFileName(platform::Date date) {
    const auto seconds =
        static_cast<std::time_t>(std::floor(date.secondsSinceReference + referenceSince1970));
    std::string name = universalTimeText(seconds, "%Y%m%dT%H%M%SZ-");
    std::array<std::uint8_t, 8> chance{};
    platform::fillWithRandomBytes(chance);
    for (const std::uint8_t byte : chance) {
        name += platform::hexadecimalDigits[byte >> 4];
        name += platform::hexadecimalDigits[byte & 0x0F];
    }
    return name + ".eml";
}

std::string hostPath(const std::string& path) {
    const auto& files = platform::Device::current().files;
    return files ? files->hostPath(path) : std::string();
}

}  // namespace

Result<void> DesktopMail::send(const MailDraft& draft) {
    if (!canSend()) return platform::failure("No mail account is set up.");
    const Result<std::string> path = keep(draft, phonePaths::mailOutbox);
    if (!path) return std::unexpected(path.error());
    if (desktop_ == Desktop::IsLeftAlone) {
        platform::log("Mail: The mail is in " + *path + ".");
        return {};
    }
    const std::string file = hostPath(*path);
    const bool offered = startDesktopProgram("xdg-open", file, [file] {
        platform::log("Mail: The desktop has no program for " + file +
                      ". Open it with a mail program to send it.");
    });
    platform::log("Mail: The mail is in " + *path + " (" + file + "). " +
                  (offered ? "It was offered to the desktop's mail program, which sends it when you say so."
                           : "Open it with a mail program to send it."));
    return {};
}

Result<void> DesktopMail::save(const MailDraft& draft) {
    const Result<std::string> path = keep(draft, phonePaths::mailDrafts);
    if (!path) return std::unexpected(path.error());
    const bool tellsMachine = desktop_ == Desktop::IsAsked;
    platform::log("Mail: The draft is in " + *path + (tellsMachine ? " (" + hostPath(*path) + ")." : "."));
    return {};
}

Result<std::string> DesktopMail::keep(const MailDraft& draft, std::string_view directory) const {
    const platform::Date now = platform::dateNow();
    const Result<platform::Data> message = mailMessage(draft, {account_, now});
    if (!message) return std::unexpected(message.error());
    FileManager& files = FileManager::defaultManager();
    if (const Result<void> made = files.createDirectoryAtPath(directory); !made)
        return std::unexpected(made.error());
    std::string path = platform::stringByAppendingPathComponent(directory, newFileName(now));
    if (const Result<void> written = files.writeData_toFile(*message, path, platform::Write::Atomically);
        !written)
        return std::unexpected(written.error());
    return path;
}

}  // namespace device
