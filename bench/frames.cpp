// How fast frames are taken out of a stream, beside the fastest that bytes can be moved at all:
// each round parses a stream and then copies the same bytes with memcpy, so that whatever else the
// computer does slows both.

#include "MessageBuffer.h"

#include <benchmark/benchmark.h>

#include <time.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

/// What one read of a socket gives at most.
constexpr std::size_t chunkSize = 64U << 10U;
constexpr std::size_t streamSize = 1U << 20U;

std::string frameOf(std::size_t payloadSize) {
    std::string frame = "<D>";
    for (const unsigned shift : {24U, 16U, 8U, 0U})
        frame.push_back(static_cast<char>((payloadSize >> shift) & 0xFFU));
    return frame.append(payloadSize, 'p');
}

std::string streamOf(std::size_t payloadSize) {
    const std::string frame = frameOf(payloadSize);
    std::string stream;
    while (stream.size() + frame.size() <= streamSize)
        stream += frame;
    return stream;
}

template <typename Action>
void forEachChunk(const std::string& stream, Action action) {
    for (std::size_t from = 0; from < stream.size(); from += chunkSize)
        action(from, std::min(chunkSize, stream.size() - from));
}

/// What other programs do meanwhile does not count.
double processorSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double parse(MessageBuffer& buffer, const std::string& stream) {
    const double start = processorSeconds();
    std::string tag;
    std::string payload;
    forEachChunk(stream, [&](std::size_t from, std::size_t size) {
        buffer.Add(stream.data() + from, static_cast<unsigned int>(size));
        while (buffer.NextMessage(tag, payload))
            benchmark::DoNotOptimize(payload.data());
    });
    return processorSeconds() - start;
}

double copy(std::vector<char>& target, const std::string& stream) {
    const double start = processorSeconds();
    forEachChunk(stream, [&](std::size_t from, std::size_t size) {
        std::memcpy(target.data() + from, stream.data() + from, size);
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    });
    return processorSeconds() - start;
}

void frames(benchmark::State& state) {
    const std::string stream = streamOf(static_cast<std::size_t>(state.range(0)));
    std::vector<char> target(stream.size());
    MessageBuffer buffer;
    double parsing = 0;
    double copying = 0;
    while (state.KeepRunning()) {
        const double seconds = parse(buffer, stream);
        state.SetIterationTime(seconds);
        parsing += seconds;
        copying += copy(target, stream);
    }
    const double gigabytes =
        1e-9 * static_cast<double>(stream.size()) * static_cast<double>(state.iterations());
    state.counters["parse_GB/s"] = gigabytes / parsing;
    state.counters["memcpy_GB/s"] = gigabytes / copying;
    state.counters["ratio"] = copying / parsing;
}
BENCHMARK(frames)
    ->ArgName("payload")
    ->Arg(16)
    ->Arg(256)
    ->Arg(2 << 10)
    ->Arg(64 << 10)
    ->UseManualTime();

} // namespace

BENCHMARK_MAIN();
