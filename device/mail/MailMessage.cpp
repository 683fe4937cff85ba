// SPDX-License-Identifier: MIT
#include "device/mail/MailMessage.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "device/MailAddress.h"

namespace device {

using platform::Data;
using platform::failure;
using platform::MailAttachment;
using platform::MailDraft;
using platform::Result;

namespace {

struct Unreference {
    template <class T>
    void operator()(T* object) const {
        g_object_unref(object);
    }
};
template <class T>
using Owned = std::unique_ptr<T, Unreference>;

constexpr double referenceSince1970 = 978'307'200;

/// Every line break as the library takes it.
std::string withPlainLineBreaks(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') result += text[i];
    }
    return result;
}

std::string withoutControls(std::string text) {
    std::ranges::replace_if(text, [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; }, ' ');
    return text;
}

bool canBeAType(const std::string& type) {
    constexpr std::size_t longest = 255;
    return !type.empty() && type.size() <= longest &&
           std::ranges::all_of(type, [](char c) { return c >= 32 && c <= 126; });
}

Owned<GMimePart> newPart(const Data& bytes, GMimeContentEncoding encoding) {
    Owned<GMimePart> part(g_mime_part_new());
    const Owned<GMimeStream> stream(g_mime_stream_mem_new());
    // Not an empty stretch, which the library takes for a mistake.
    if (!bytes.empty()) {
        g_mime_stream_write(stream.get(), reinterpret_cast<const char*>(bytes.data()), bytes.size());
        g_mime_stream_reset(stream.get());
    }
    const Owned<GMimeDataWrapper> content(
        g_mime_data_wrapper_new_with_stream(stream.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    g_mime_part_set_content(part.get(), content.get());
    g_mime_part_set_content_encoding(part.get(), encoding);
    return part;
}

Owned<GMimePart> bodyPart(const MailDraft& draft) {
    const std::string text = withPlainLineBreaks(draft.body);
    // Quoted, so that no line is too long and no line break is lost.
    auto part = newPart(Data(text.begin(), text.end()), GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    const Owned<GMimeContentType> type(g_mime_content_type_new("text", draft.isHTML ? "html" : "plain"));
    g_mime_content_type_set_parameter(type.get(), "charset", "utf-8");
    g_mime_object_set_content_type(GMIME_OBJECT(part.get()), type.get());
    return part;
}

Owned<GMimePart> attachmentPart(const MailAttachment& attachment) {
    auto part = newPart(attachment.data, GMIME_CONTENT_ENCODING_BASE64);
    GMimeObject* object = GMIME_OBJECT(part.get());
    g_mime_object_set_disposition(object, GMIME_DISPOSITION_ATTACHMENT);
    // Not the library's own way to name a part, which would add a parameter to the type.
    g_mime_object_set_content_disposition_parameter(object, "filename",
                                                    withoutControls(attachment.name).c_str());
    // Written as it is: the library would put a media type in place of what is none.
    GMimeHeader* type = g_mime_header_list_get_header(g_mime_object_get_header_list(object), "Content-Type");
    g_mime_header_set_raw_value(type, (" " + attachment.type + "\n").c_str());
    return part;
}

Result<void> address(GMimeMessage* message, const MailDraft& draft, const MailStamp& stamp) {
    if (!stamp.sender.empty()) {
        if (!isMailAddress(stamp.sender)) return failure("\"" + stamp.sender + "\" is no mail address.");
        g_mime_message_add_mailbox(message, GMIME_ADDRESS_TYPE_FROM, nullptr, stamp.sender.c_str());
    }
    for (const std::string& recipient : draft.to) {
        if (!isMailAddress(recipient)) return failure("\"" + recipient + "\" is no mail address.");
        g_mime_message_add_mailbox(message, GMIME_ADDRESS_TYPE_TO, nullptr, recipient.c_str());
    }
    return {};
}

void identify(GMimeMessage* message, const MailStamp& stamp) {
    const auto seconds = static_cast<gint64>(stamp.date.secondsSinceReference + referenceSince1970);
    // Empty for a date beyond the calendar, which then goes without saying.
    if (GDateTime* date = g_date_time_new_from_unix_local(seconds)) {
        g_mime_message_set_date(message, date);
        g_date_time_unref(date);
    }
    const std::string domain =
        stamp.sender.empty() ? "localhost" : stamp.sender.substr(stamp.sender.find('@') + 1);
    char* identifier = g_mime_utils_generate_message_id(domain.c_str());
    g_mime_message_set_message_id(message, identifier);
    g_free(identifier);
}

Data written(GMimeMessage* message) {
    const Owned<GMimeStream> stream(g_mime_stream_mem_new());
    g_mime_object_write_to_stream(GMIME_OBJECT(message), nullptr, stream.get());
    const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    return {bytes->data, bytes->data + bytes->len};
}

}  // namespace

Result<Data> mailMessage(const MailDraft& draft, const MailStamp& stamp) {
    for (const MailAttachment& attachment : draft.attachments) {
        if (!canBeAType(attachment.type)) {
            return failure("The attachment \"" + attachment.name + "\" has a type that no mail can carry.");
        }
    }
    g_mime_init();
    const Owned<GMimeMessage> message(g_mime_message_new(TRUE));
    if (const Result<void> addressed = address(message.get(), draft, stamp); !addressed)
        return std::unexpected(addressed.error());
    g_mime_message_set_subject(message.get(), withoutControls(draft.subject).c_str(), "utf-8");
    identify(message.get(), stamp);
    g_mime_object_set_header(GMIME_OBJECT(message.get()), "X-Unsent", "1", nullptr);

    const Owned<GMimeMultipart> parts(g_mime_multipart_new_with_subtype("mixed"));
    g_mime_multipart_add(parts.get(), GMIME_OBJECT(bodyPart(draft).get()));
    for (const MailAttachment& attachment : draft.attachments)
        g_mime_multipart_add(parts.get(), GMIME_OBJECT(attachmentPart(attachment).get()));
    g_mime_message_set_mime_part(message.get(), GMIME_OBJECT(parts.get()));
    return written(message.get());
}

}  // namespace device
