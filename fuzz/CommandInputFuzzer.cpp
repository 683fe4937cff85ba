// SPDX-License-Identifier: MIT
// What people and scripts hand to the command: KEY=VALUE, and documents of profiles. What is taken must be
// stored as it was accepted and come back from every format; what is not must be refused with a sentence.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "quietrix/Assignment.h"
#include "quietrix/JSONText.h"
#include "quietrix/ProfileText.h"
#include "quietrix/ProfilesDocument.h"

namespace {

using namespace console;
using quietrix::QXProfile;

void require(bool holds) {
    if (!holds) std::abort();
}

void tryAssignment(std::string_view text) {
    const auto assignment = Assignment::parse(text);
    if (!assignment) return require(!assignment.error().localizedDescription.empty());
    QXProfile profile;
    assignment->applyTo(profile);
    // What was set is what the key takes, so that it could be exported and imported.
    const auto value = profile.valueForKey(assignment->key->key);
    const auto again = acceptedValue(*assignment->key, value);
    require(again && *again == value);
    require(!assignment->applyTo(profile));
    require(!valuesInWords(profile).empty());
}

std::vector<Record> recordsOf(const Import& import) {
    std::vector<Record> records;
    for (const auto& change : import.changes) records.push_back(change.profile);
    return records;
}

void tryDocument(const platform::Data& bytes, DocumentFormat format) {
    const auto document = ProfilesDocument::parse(bytes, format);
    if (!document) return require(!document.error().localizedDescription.empty());
    const Import import = Import::plan(*document, {}, Import::Others::Stay);
    const ChangeReport& report = import.report;
    require(report.changed.empty() && report.removed.empty() && report.unchanged == 0);
    require(report.added.size() + report.refused.size() == document->entries.size());
    require(import.changes.size() == (report.refused.empty() ? report.added.size() : 0));
    require(parsedJSON(jsonText(report.json())).has_value() && !report.text().empty());

    const auto records = recordsOf(import);
    for (const DocumentFormat other : {DocumentFormat::JSON, DocumentFormat::BinaryList}) {
        const auto exported = documentOf(records, other);
        require(exported.has_value());
        const auto back = ProfilesDocument::parse(*exported, other);
        require(back.has_value());
        const Import second = Import::plan(*back, records, Import::Others::Go);
        require(second.changes.empty() && second.report.unchanged == records.size());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    // The first byte says what the others are.
    const platform::Data bytes(data + 1, data + size);
    if (data[0] == 'j') {
        tryDocument(bytes, DocumentFormat::JSON);
    } else if (data[0] == 'p') {
        tryDocument(bytes, DocumentFormat::BinaryList);
    } else {
        tryAssignment({reinterpret_cast<const char*>(data), size});
    }
    return 0;
}
