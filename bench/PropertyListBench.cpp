// SPDX-License-Identifier: MIT
// What reading a binary property list to values and writing values as one cost
// beside libplist, which does the same on the same bytes, turn by turn in this
// very run. "ratio" is how many times less processor time ours takes. Each side
// also frees what it made within the time that is taken.
#include <benchmark/benchmark.h>
#include <plist/plist.h>
#include <time.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/foundation/PropertyList.h"

namespace {

using platform::Array;
using platform::Data;
using platform::Dictionary;
using platform::PropertyListFormat;
using platform::PropertyListSerialization;
using platform::Value;

/// Records as a store has them: a few texts, switches, volumes and times, and a
/// list of names.
Value records(std::int64_t count) {
    Array all;
    for (std::int64_t i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        all.push_back(Dictionary{
            {"identifier", "record-" + number},
            {"title", "Größe " + number},
            {"enabled", i % 2 == 0},
            {"vibrate", i % 3 == 0},
            {"repeatCount", i % 1000},
            {"volume", 0.25 * static_cast<double>(i % 5)},
            {"alertVolume", 0.001 * static_cast<double>(i)},
            {"startTime", "10:" + std::to_string(10 + i % 50) + " PM"},
            {"endTime", "07:00 AM"},
            {"wifiNetworks", Array{"home", "work " + std::to_string(i % 7)}},
        });
    }
    return Dictionary{{"format", 1}, {"profiles", std::move(all)}};
}

Data binary(const Value& value) {
    return PropertyListSerialization::dataWithPropertyList(value, PropertyListFormat::Binary).value();
}

/// In seconds: on a busy machine the clock on the wall measures the others'
/// work as well.
double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Takes turns between the two, and reports ours, for all repetitions of a turn, and theirs by the
/// ratio.
template <class Ours, class Peer>
void compare(benchmark::State& state, std::size_t bytes, Ours ours, Peer peer) {
    double taken = 0;
    double peerTaken = 0;
    // One after the other meets a heap that the other one left, which is not what is compared.
    const std::int64_t repetitions = std::max<std::int64_t>(4, 1000 / state.range(0));
    const auto timed = [&](auto&& work) {
        const double start = processorTime();
        for (std::int64_t i = 0; i < repetitions; ++i) work();
        return processorTime() - start;
    };
    for (auto _ : state) {
        const double time = timed(ours);
        taken += time;
        state.SetIterationTime(time);
        peerTaken += timed(peer);
    }
    state.counters["ratio"] = peerTaken / taken;
    state.counters["bytes"] = static_cast<double>(bytes);
}

void readToValues(benchmark::State& state) {
    const Data bytes = binary(records(state.range(0)));
    compare(
        state, bytes.size(),
        [&] { benchmark::DoNotOptimize(PropertyListSerialization::propertyListWithData(bytes).value()); },
        [&] {
            plist_t root = nullptr;
            plist_from_bin(reinterpret_cast<const char*>(bytes.data()),
                           static_cast<std::uint32_t>(bytes.size()), &root);
            if (root == nullptr) std::abort();
            plist_free(root);
        });
}
BENCHMARK(readToValues)->Arg(10)->Arg(1000)->Arg(10000)->UseManualTime()->Unit(benchmark::kMicrosecond);

void writeValues(benchmark::State& state) {
    const Value value = records(state.range(0));
    const Data bytes = binary(value);
    plist_t root = nullptr;
    plist_from_bin(reinterpret_cast<const char*>(bytes.data()), static_cast<std::uint32_t>(bytes.size()),
                   &root);
    compare(
        state, bytes.size(), [&] { benchmark::DoNotOptimize(binary(value)); },
        [&] {
            char* written = nullptr;
            std::uint32_t length = 0;
            plist_to_bin(root, &written, &length);
            if (written == nullptr) std::abort();
            plist_to_bin_free(written);
        });
    plist_free(root);
}
BENCHMARK(writeValues)->Arg(10)->Arg(1000)->Arg(10000)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
