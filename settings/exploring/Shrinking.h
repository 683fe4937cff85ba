// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace settings {

/// Of so many entries all pairs can be tried.
inline constexpr std::size_t shortList = 12;

/// Whether a list of entries still does what is looked for.
template <class Entry>
using StillFails = std::function<bool(const std::vector<Entry>&)>;

/// The list without those pieces of `size` entries that are not needed, from the end on, a piece beginning
/// `stride` entries before the last one.
template <class Entry>
std::vector<Entry> shrinkByPieces(std::vector<Entry> list, std::size_t size, std::size_t stride,
                                  const StillFails<Entry>& fails) {
    for (std::size_t end = list.size(); end > 0; end -= std::min(stride, end)) {
        end = std::min(end, list.size());
        const std::size_t begin = end - std::min(size, end);
        std::vector<Entry> rest(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(begin));
        rest.insert(rest.end(), list.begin() + static_cast<std::ptrdiff_t>(end), list.end());
        if (rest.size() < list.size() && fails(rest)) list = std::move(rest);
    }
    return list;
}

/// The list without the first two entries, wherever they stand, that it can do without together; the list
/// itself when there are none.
template <class Entry>
std::vector<Entry> shrinkByPair(const std::vector<Entry>& list, const StillFails<Entry>& fails) {
    for (std::size_t first = 0; first < list.size(); ++first) {
        for (std::size_t second = first + 2; second < list.size(); ++second) {
            std::vector<Entry> rest = list;
            rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(second));
            rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(first));
            if (fails(rest)) return rest;
        }
    }
    return list;
}

/// Takes away from a list whatever is not needed for `fails` to go on being true: what is left does not fail
/// without any single one of its entries, nor without any two neighbours, and a short list not without any
/// two. `fails` is true of the given list;
/// it may say false of everything from some time on to end it early.
template <class Entry>
std::vector<Entry> shrink(std::vector<Entry> list, const StillFails<Entry>& fails) {
    // What led to the failure mostly stands at the end.
    for (std::size_t size = 1; size < list.size(); size *= 2) {
        std::vector<Entry> last(list.end() - static_cast<std::ptrdiff_t>(size), list.end());
        if (!fails(last)) continue;
        list = std::move(last);
        break;
    }
    for (std::size_t size = list.size() / 2; size > 1; size /= 2)
        list = shrinkByPieces(std::move(list), size, size, fails);
    for (std::size_t before = list.size() + 1; list.size() < before;) {
        before = list.size();
        list = shrinkByPieces(std::move(list), 1, 1, fails);
        // There and back again: neither can go without the other.
        list = shrinkByPieces(std::move(list), 2, 1, fails);
        if (list.size() <= shortList) list = shrinkByPair(list, fails);
    }
    return list;
}

}  // namespace settings
