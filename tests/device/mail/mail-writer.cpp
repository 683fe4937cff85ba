// SPDX-License-Identifier: MIT
// Writes the mail that standard input describes as a property list to standard output as a message file:
// "sender", "date" (seconds since 2001), "subject", "to", "body", "html", "attachments" of "name", "type",
// "data".
#include <cstdint>
#include <iostream>
#include <iterator>

#include "device/mail/MailMessage.h"
#include "platform/foundation/PropertyList.h"

int main() {
    const platform::Data input(std::istreambuf_iterator<char>(std::cin), {});
    const auto list = platform::PropertyListSerialization::propertyListWithData(input);
    if (!list) return 2;
    const platform::Value& mail = *list;
    platform::MailDraft draft;
    draft.subject = mail["subject"].stringOr();
    for (const platform::Value& recipient : *mail["to"].array()) draft.to.push_back(recipient.stringOr());
    draft.body = mail["body"].stringOr();
    draft.isHTML = mail["html"].isTrue();
    for (const platform::Value& item : *mail["attachments"].array())
        draft.attachments.push_back({item["name"].stringOr(), item["type"].stringOr(), *item["data"].data()});
    const auto message =
        device::mailMessage(draft, {mail["sender"].stringOr(), {mail["date"].number().value_or(0)}});
    if (!message) {
        std::cerr << message.error().localizedDescription << '\n';
        return 1;
    }
    std::cout.write(reinterpret_cast<const char*>(message->data()),
                    static_cast<std::streamsize>(message->size()));
    return 0;
}
