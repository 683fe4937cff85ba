// SPDX-License-Identifier: MIT
#include "platform/foundation/BinaryListCheck.h"

#include <algorithm>
#include <string_view>

#include "platform/foundation/PropertyList.h"

namespace platform {

namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;

// Objects are shared, and a reference is shorter than what it stands for. Beyond this factor only lists get
// whose containers hold the same container again and again, or whose objects lie on top of each other: those
// are meant to exhaust memory.
constexpr std::uint64_t expansionFactor = 64;

}  // namespace

std::optional<std::string> BinaryListCheck::run() {
    if (!checkTrailer() || !checkObjectCount()) return reason_;
    extents_.resize(list_.count_);
    if (!check(list_.root_, 1)) return reason_;
    return std::nullopt;
}

bool BinaryListCheck::fail(std::string reason, std::size_t at) {
    reason_ =
        "The binary property list is damaged at byte " + std::to_string(at) + ": " + std::move(reason) + ".";
    return false;
}

bool BinaryListCheck::isContainer(const BinaryList::Head& head) {
    return head.kind == BinaryList::Array || head.kind == BinaryList::Dictionary;
}

bool BinaryListCheck::isText(Object object) const {
    const int kind = list_.bytes_[list_.offset(object)] >> 4;
    return kind == BinaryList::Ascii || kind == BinaryList::Utf16;
}

bool BinaryListCheck::checkTrailer() {
    const std::size_t trailer = list_.bytes_.size() - trailerSize;
    const auto width = [](int bytes) { return bytes >= 1 && bytes <= 8; };
    if (!width(list_.offsetWidth_)) return fail("the width of offsets is not 1 to 8", trailer + 6);
    if (!width(list_.referenceWidth_)) return fail("the width of references is not 1 to 8", trailer + 7);
    const std::uint64_t count = list_.number(trailer + 8, 8);
    const std::uint64_t root = list_.number(trailer + 16, 8);
    const std::size_t table = list_.tableStart_;
    if (table <= headerSize || table > trailer)
        return fail("the offset table lies outside the file", trailer + 24);
    const std::uint64_t room = (trailer - table) / static_cast<std::uint64_t>(list_.offsetWidth_);
    if (count == 0 || count > room || count > BinaryList::maximumCount) {
        return fail("the number of objects does not fit the offset table", trailer + 8);
    }
    if (root >= count) return fail("the root is an object that does not exist", trailer + 16);
    return true;
}

bool BinaryListCheck::checkObjectCount() {
    // An object has a byte and an offset of four in a large list. Far more of them only a list has whose
    // objects share their bytes, made to exhaust memory; a small one cannot.
    const std::uint64_t size = list_.bytes_.size();
    constexpr std::uint64_t bytesEach = 5;
    return size <= BinaryList::largeSize || list_.count_ <= size / bytesEach + 1 ||
           fail("there are more objects than the file has room for", size - trailerSize + 8);
}

bool BinaryListCheck::check(Object object, int depth) {
    const std::size_t at = list_.offset(object);
    Extent& extent = extents_[object];
    if (extent.open) return fail("a container holds itself", at);
    const bool known = extent.nodes != 0;
    const auto head = list_.head(at);
    if (!head) return fail("the object there is of an unknown kind or leads out of the file", at);
    if (!known) extent = {1, isContainer(*head) ? std::uint16_t{1} : std::uint16_t{0}, true};
    // One that was met before may be met again further down.
    if (depth - 1 + extent.height > PropertyListSerialization::maximumDepth) {
        return fail("containers nest too deeply", at);
    }
    if (known) return true;
    reachableBytes_ += head->end - at + static_cast<std::size_t>(list_.offsetWidth_);
    if (reachableBytes_ > expansionFactor * list_.bytes_.size()) {
        return fail("the objects share their bytes and hold far more than the file", at);
    }
    if (!checkText(*head) || !checkChildren(*head, extent, depth)) return false;
    extent.open = false;
    return true;
}

bool BinaryListCheck::checkText(const BinaryList::Head& text) {
    const auto& bytes = list_.bytes_;
    if (text.kind == BinaryList::Ascii) {
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(text.payload);
        const bool ascii = std::all_of(begin, begin + static_cast<std::ptrdiff_t>(text.size),
                                       [](std::uint8_t byte) { return byte < 0x80; });
        return ascii || fail("a text is not in its encoding", text.payload);
    }
    if (text.kind == BinaryList::Integer && text.size == 16) {
        const std::uint64_t high = list_.number(text.payload, 8);
        const bool negative = list_.number(text.payload + 8, 8) >> 63 != 0;
        return high == 0 || (high == UINT64_MAX && negative) ||
               fail("an integer of 16 bytes does not fit 8", text.payload);
    }
    if (text.kind != BinaryList::Utf16) return true;
    for (std::size_t at = text.payload; at < text.end; at += 2) {
        const std::uint64_t unit = list_.number(at, 2);
        if (unit < 0xD800 || unit > 0xDFFF) continue;
        const bool paired =
            unit < 0xDC00 && at + 2 < text.end && list_.number(at + 2, 2) >> 10 == 0xDC00 >> 10;
        if (!paired) return fail("a text holds half a surrogate pair", at);
        at += 2;
    }
    return true;
}

bool BinaryListCheck::checkChildren(const BinaryList::Head& container, Extent& extent, int depth) {
    if (!isContainer(container)) return true;
    const auto width = static_cast<std::size_t>(list_.referenceWidth_);
    const std::uint64_t limit = std::min<std::uint64_t>(expansionFactor * list_.bytes_.size(), UINT32_MAX);
    const std::size_t keysEnd =
        container.kind == BinaryList::Dictionary ? container.payload + container.size * width : 0;
    for (std::size_t at = container.payload; at < container.end; at += width) {
        const std::uint64_t child = list_.number(at, list_.referenceWidth_);
        if (child >= list_.count_) return fail("a reference names an object that does not exist", at);
        const auto object = static_cast<Object>(child);
        if (!check(object, depth + 1)) return false;
        if (at < keysEnd && !isText(object)) return fail("a dictionary's key is no text", at);
        extent.height =
            std::max<std::uint16_t>(extent.height, static_cast<std::uint16_t>(extents_[object].height + 1));
        const std::uint64_t nodes = std::uint64_t{extent.nodes} + extents_[object].nodes;
        if (nodes > limit) return fail("the references unfold to far more than the file holds", at);
        extent.nodes = static_cast<std::uint32_t>(nodes);
    }
    return true;
}

}  // namespace platform
