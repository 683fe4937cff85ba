// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace bench {

/// What is to be reached: so much of the figure at least, at most, or nothing.
struct Target {
    enum class Kind { None, AtLeast, AtMost } kind = Kind::None;
    double figure = 0;
};
inline Target atLeast(double figure) {
    return {Target::Kind::AtLeast, figure};
}
inline Target atMost(double figure) {
    return {Target::Kind::AtMost, figure};
}

/// One line of the table.
struct Measure {
    std::string name;
    /// The size that it is taken at, with its unit: "1,000 profiles".
    std::string at;
    std::string peer;
    Target target;
};

/// Which time counts: the thread's own where nothing else has a part in the work, the wall's where the disk
/// or another process has.
enum class Clock { Processor, Wall };
/// In seconds, from some instant on.
double now(Clock clock);

/// What one turn of work took: `repetitions` of it, in seconds.
using Turn = std::function<double(std::int64_t repetitions)>;
/// A turn that times the work as a whole.
Turn timed(Clock clock, std::function<void()> work);

enum class Figure {
    /// How many times less time ours takes than the peer.
    TimesFaster,
    /// How many times the peer's time ours takes.
    TimesAsLong,
};

/// Lets both take turns until there are enough rounds, and prints the measure with the figure of each round
/// and the seconds of one repetition of either. A first round is not counted. How often a turn repeats its
/// work is found out, so that the clock's own cost does not show.
void compare(const Measure& measure, Figure figure, const Turn& ours, const Turn& peer);

/// 1234567 as "1,234,567".
std::string grouped(std::int64_t number);

}  // namespace bench
