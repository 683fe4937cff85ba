// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryPropertyListWriter.h"

#include <span>
#include <utility>

#include "platform/foundation/BinaryListEncoding.h"

namespace platform {

using Encoding = BinaryListEncoding;
using Kind = BinaryListFormat::Kind;

std::size_t BinaryPropertyListWriter::Container::headSize() const {
    return Encoding::headSize(kind == Kind::Entries ? referenceCount / 2 : referenceCount);
}

Data BinaryPropertyListWriter::write(const Value& value) {
    BinaryPropertyListWriter writer;
    writer.number(value);
    return writer.encode();
}

BinaryPropertyListWriter::Object BinaryPropertyListWriter::number(const Value& value) {
    const bool isContainer = value.array() != nullptr || value.dictionary() != nullptr;
    return isContainer ? numberContainer(value) : number(BinaryListScalar(value));
}

BinaryPropertyListWriter::Object BinaryPropertyListWriter::number(const BinaryListScalar& scalar) {
    const auto known = known_.find(scalar, static_cast<Object>(entries_.size()));
    return known ? *known : append(scalar);
}

// The container's references get their place before its items are numbered, so that theirs follow behind.
BinaryPropertyListWriter::Object BinaryPropertyListWriter::numberContainer(const Value& container) {
    const Array* const elements = container.array();
    const Dictionary* const pairs = container.dictionary();
    const std::size_t count = elements != nullptr ? elements->size() : 2 * pairs->size();
    std::size_t next = references_.size();
    references_.resize(next + count);
    const Object object = append(Container{elements != nullptr ? Kind::Elements : Kind::Entries,
                                           static_cast<std::uint32_t>(count), next});
    if (elements != nullptr) {
        for (const Value& element : *elements) {
            const Object item = number(element);
            references_[next++] = item;
        }
        return object;
    }
    for (const auto& entry : *pairs) {
        const Object key = number(BinaryListScalar(std::string_view(entry.first)));
        references_[next++] = key;
    }
    for (const auto& entry : *pairs) {
        const Object item = number(entry.second);
        references_[next++] = item;
    }
    return object;
}

BinaryPropertyListWriter::Object BinaryPropertyListWriter::append(Entry entry) {
    size_ += sizeOf(entry, 0);
    entries_.push_back(entry);
    return static_cast<Object>(entries_.size() - 1);
}

std::size_t BinaryPropertyListWriter::sizeOf(const Entry& entry, std::size_t referenceWidth) const {
    if (const auto* scalar = std::get_if<BinaryListScalar>(&entry)) return scalar->encodedSize();
    const Container& container = std::get<Container>(entry);
    return container.headSize() + container.referenceCount * referenceWidth;
}

BinaryListBuilder::Plan BinaryPropertyListWriter::plan() const {
    BinaryListBuilder::Plan plan;
    plan.objectCount = entries_.size();
    plan.referenceWidth = Encoding::widthOf(entries_.size() - 1);
    plan.end = BinaryListFormat::header.size() + size_ + references_.size() * plan.referenceWidth;
    plan.offsetWidth = Encoding::widthOf(plan.end - sizeOf(entries_.back(), plan.referenceWidth));
    return plan;
}

Data BinaryPropertyListWriter::encode() const {
    BinaryListBuilder builder(plan());
    for (const Entry& entry : entries_) {
        if (const auto* scalar = std::get_if<BinaryListScalar>(&entry)) {
            builder.addScalar(*scalar);
            continue;
        }
        const Container& container = std::get<Container>(entry);
        const auto references =
            std::span(references_).subspan(container.firstReference, container.referenceCount);
        if (container.kind == Kind::Elements) {
            builder.addArray(references);
        } else {
            builder.addDictionary(references);
        }
    }
    return std::move(builder).finish(0).value();
}

}  // namespace platform
