// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "device/DesktopProgram.h"
#include "platform/foundation/MailService.h"

namespace device {

/// Mail by way of the desktop. Every mail becomes a message file in the root; one to be sent is also offered
/// to the desktop's mail program, where there is one, for the user to send. Nothing is sent from here. A log
/// line tells where each file is, on the phone and on this machine, another one when no program took it.
class DesktopMail : public platform::MailService {
  public:
    /// `account` is the sender's address, "" for no account.
    explicit DesktopMail(std::string account, Desktop desktop = Desktop::IsAsked)
        : account_(std::move(account)), desktop_(desktop) {}

    bool canSend() const override { return !account_.empty(); }
    std::string senderAddress() const override { return account_; }
    /// Files are written atomically, each under a name of its own. Errors: no account, a mail that cannot be
    /// a message file, a file that cannot be written.
    platform::Result<void> send(const platform::MailDraft& draft) override;
    platform::Result<void> save(const platform::MailDraft& draft) override;

  private:
    /// The phone path of the new file.
    platform::Result<std::string> keep(const platform::MailDraft& draft, std::string_view directory) const;

    std::string account_;
    Desktop desktop_;
};

}  // namespace device
