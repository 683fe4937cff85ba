// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/foundation/BinaryList.h"

namespace platform {

/// Goes once through all that the root of a binary list reaches and looks for what a reader could stumble
/// over. Takes time and memory in proportion to the list's bytes, whatever they are: no more than twice the
/// bytes of a list that is large.
class BinaryListCheck {
  public:
    explicit BinaryListCheck(const BinaryList& list) : list_(list) {}

    /// What is wrong, as a sentence; empty for a sound list.
    std::optional<std::string> run();
    /// After a run that found nothing: what the objects that the root reaches take, with their offsets.
    std::uint64_t reachableBytes() const { return reachableBytes_; }

  private:
    using Object = BinaryList::Object;

    /// What is known of an object that was gone through: how deep it nests, and of how many objects a tree of
    /// values made from it would consist.
    struct Extent {
        std::uint32_t nodes = 0;
        std::uint16_t height = 0;
        bool open = false;
    };
    static_assert(sizeof(Extent) == 8, "there is one for each object, and a list may be large");

    static bool isContainer(const BinaryList::Head& head);
    bool isText(Object object) const;
    bool checkTrailer();
    bool checkObjectCount();
    bool check(Object object, int depth);
    bool checkText(const BinaryList::Head& text);
    bool checkChildren(const BinaryList::Head& container, Extent& extent, int depth);
    bool fail(std::string reason, std::size_t at);

    const BinaryList& list_;
    std::vector<Extent> extents_;
    std::string reason_;
    std::uint64_t reachableBytes_ = 0;
};

}  // namespace platform
