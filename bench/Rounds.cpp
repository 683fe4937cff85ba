// SPDX-License-Identifier: MIT
#include "bench/Rounds.h"

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <utility>
#include <vector>

namespace bench {

namespace {

/// A turn takes at least this long, where its work can be repeated.
constexpr double shortestTurn = 0.01;
/// A measure is over after so many seconds, or after so many rounds.
constexpr double longestMeasure = 4;
constexpr std::size_t fewestRounds = 3;
constexpr std::size_t mostRounds = 25;

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') result += '\\';
        result += character;
    }
    return result + "\"";
}

std::string numbers(const std::vector<double>& all) {
    std::ostringstream text;
    text.precision(6);
    for (std::size_t i = 0; i < all.size(); ++i) text << (i == 0 ? "[" : ",") << all[i];
    text << (all.empty() ? "[]" : "]");
    return text.str();
}

double median(std::vector<double> all) {
    std::ranges::sort(all);
    return all[all.size() / 2];
}

std::int64_t repetitionsOf(const Turn& turn) {
    for (std::int64_t repetitions = 1;; repetitions *= 4) {
        const double taken = turn(repetitions);
        if (taken >= shortestTurn) return repetitions;
        if (taken >= shortestTurn / 16) {
            return static_cast<std::int64_t>(static_cast<double>(repetitions) * shortestTurn / taken) + 1;
        }
    }
}

}  // namespace

double now(Clock clock) {
    timespec time{};
    clock_gettime(clock == Clock::Processor ? CLOCK_THREAD_CPUTIME_ID : CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

Turn timed(Clock clock, std::function<void()> work) {
    return [clock, work = std::move(work)](std::int64_t repetitions) {
        const double start = now(clock);
        for (std::int64_t i = 0; i < repetitions; ++i) work();
        return now(clock) - start;
    };
}

void compare(const Measure& measure, Figure figure, const Turn& ours, const Turn& peer) {
    const std::int64_t repetitions = repetitionsOf(ours);
    const std::int64_t peerRepetitions = repetitionsOf(peer);
    std::vector<double> figures;
    std::vector<double> times;
    std::vector<double> peerTimes;
    const double start = now(Clock::Wall);
    while (figures.size() < mostRounds &&
           (figures.size() < fewestRounds || now(Clock::Wall) - start < longestMeasure)) {
        // The heap as the other side left it, with its many small holes, is not what is compared.
        malloc_trim(0);
        const double time = ours(repetitions) / static_cast<double>(repetitions);
        malloc_trim(0);
        const double peerTime = peer(peerRepetitions) / static_cast<double>(peerRepetitions);
        times.push_back(time);
        peerTimes.push_back(peerTime);
        figures.push_back(figure == Figure::TimesFaster ? peerTime / time : time / peerTime);
    }
    const auto& target = measure.target;
    std::ostringstream text;
    text.precision(6);
    text << "{\"measure\":" << quoted(measure.name) << ",\"at\":" << quoted(measure.at)
         << ",\"peer\":" << quoted(measure.peer)
         << ",\"unit\":" << quoted(figure == Figure::TimesFaster ? "times faster" : "times as long");
    if (target.kind != Target::Kind::None) {
        text << ',' << quoted(target.kind == Target::Kind::AtLeast ? "at least" : "at most") << ':'
             << target.figure;
    }
    text << ",\"ours\":" << median(times) << ",\"theirs\":" << median(peerTimes)
         << ",\"rounds\":" << numbers(figures) << '}';
    // Flushed, because somebody watches how far it is.
    std::cout << text.str() << std::endl;
}

std::string grouped(std::int64_t number) {
    std::string text = std::to_string(number);
    for (std::int64_t place = std::ssize(text) - 3; place > 0; place -= 3) {
        text.insert(static_cast<std::size_t>(place), ",");
    }
    return text;
}

}  // namespace bench
