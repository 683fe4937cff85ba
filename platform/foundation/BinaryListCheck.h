// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/foundation/BinaryList.h"

namespace platform {

/// Goes once through all that the root of a binary list reaches and looks for what a reader could stumble
/// over. Takes time and memory in proportion to the list's bytes, whatever they are: no more than twice the
/// bytes of a list that is large.
///
/// Objects are shared, and a reference is shorter than what it stands for. So both what the objects take that
/// are reached, each counted once, and the tree that the references unfold to, which whoever walks it meets
/// unfolded, may be `expansionFactor` times the bytes (and `expansionAllowance` more). In the tree an object
/// counts as one and a dictionary's key its bytes more, since each dictionary has its own. Beyond that only
/// lists get whose containers hold the same container again and again, or whose objects lie on top of each
/// other: those are meant to exhaust memory.
class BinaryListCheck {
  public:
    static constexpr std::uint64_t expansionFactor = 64;
    static constexpr std::uint64_t expansionAllowance = 65536;

    explicit BinaryListCheck(const BinaryList& list) : list_(list) {}

    /// What is wrong; empty for a sound list.
    std::optional<BinaryListFault> run();
    /// After a run that found nothing: what the objects that the root reaches take, with their offsets.
    std::uint64_t reachableBytes() const { return reachableBytes_; }

  private:
    using Object = BinaryList::Object;
    using Head = BinaryList::Head;
    using Kind = BinaryList::Kind;
    using Problem = BinaryListFault::Problem;

    /// What is known of an object that was gone through: what a tree of values made from it would cost, and
    /// how deep it nests.
    struct Extent {
        static constexpr std::uint64_t largestCost = (std::uint64_t{1} << 52) - 1;
        static constexpr unsigned largestHeight = (1U << 11) - 1;

        std::uint64_t cost : 52 = 0;
        std::uint64_t height : 11 = 0;
        std::uint64_t open : 1 = 0;
    };
    static_assert(sizeof(Extent) == 8, "there is one for each object, and a list may be large");

    static bool isContainer(Kind kind) { return kind == Kind::Elements || kind == Kind::Entries; }
    bool checkTrailer();
    bool check(Object object, std::size_t from, int depth);
    bool checkContent(const Head& head, std::size_t at);
    bool checkChildren(const Head& container, Extent& extent, int depth);
    /// Leaves the keys of the dictionary, and what they cost, as those that were checked last.
    bool checkKeys(const Head& dictionary, int depth);
    std::uint64_t bound() const;
    bool fail(Problem problem, std::size_t at, std::uint64_t number = 0);

    const BinaryList& list_;
    std::vector<Extent> extents_;
    /// The references to the keys that were checked last.
    std::span<const std::uint8_t> keys_;
    std::uint64_t keysCost_ = 0;
    std::optional<BinaryListFault> fault_;
    std::uint64_t reachableBytes_ = 0;
};

}  // namespace platform
