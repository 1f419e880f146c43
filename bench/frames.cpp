// How fast the frames of the network and the typed frames of a serial line are taken out of a
// stream, beside the fastest that bytes can be moved at all:
// each round parses a stream and then copies the same bytes with memcpy, so that whatever else the
// computer does slows both.

#include "LTermBuffer.h"
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

/// The network's: "<D>", four bytes of length, the payload.
struct Frames {
    MessageBuffer buffer;
    std::string tag;
    std::string payload;

    static std::string frameOf(std::size_t size) {
        std::string frame = "<D>";
        for (const unsigned shift : {24U, 16U, 8U, 0U})
            frame.push_back(static_cast<char>((size >> shift) & 0xFFU));
        return frame.append(size, 'p');
    }
    bool next() { return buffer.NextMessage(tag, payload); }
};

/// The serial line's: a type letter, a line feed, two bytes of length, the payload.
struct TypedFrames {
    LTermBuffer buffer;
    unsigned char type = 0;
    std::string payload;

    static std::string frameOf(std::size_t size) {
        std::string frame = "T\n";
        for (const unsigned shift : {8U, 0U})
            frame.push_back(static_cast<char>((size >> shift) & 0xFFU));
        return frame.append(size, 'p');
    }
    bool next() { return buffer.nextItem(type, payload); }
};

std::string streamOf(const std::string& frame) {
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

template <typename Parser>
double parse(Parser& parser, const std::string& stream) {
    const double start = processorSeconds();
    forEachChunk(stream, [&](std::size_t from, std::size_t size) {
        parser.buffer.Add(stream.data() + from, static_cast<unsigned int>(size));
        while (parser.next())
            benchmark::DoNotOptimize(parser.payload.data());
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

template <typename Parser>
void parsing(benchmark::State& state) {
    const std::string stream = streamOf(Parser::frameOf(static_cast<std::size_t>(state.range(0))));
    std::vector<char> target(stream.size());
    Parser parser;
    double parsed = 0;
    double copied = 0;
    while (state.KeepRunning()) {
        const double seconds = parse(parser, stream);
        state.SetIterationTime(seconds);
        parsed += seconds;
        copied += copy(target, stream);
    }
    const double gigabytes =
        1e-9 * static_cast<double>(stream.size()) * static_cast<double>(state.iterations());
    state.counters["parse_GB/s"] = gigabytes / parsed;
    state.counters["memcpy_GB/s"] = gigabytes / copied;
    state.counters["ratio"] = copied / parsed;
}

/// One frame of many MiB that comes a byte at a time, each of which may have completed it.
void byteByByte(benchmark::State& state) {
    const std::string stream = Frames::frameOf(static_cast<std::size_t>(state.range(0)) << 20U);
    double seconds = 0;
    while (state.KeepRunning()) {
        Frames parser;
        const double start = processorSeconds();
        for (const char byte : stream) {
            parser.buffer.Add(&byte, 1);
            benchmark::DoNotOptimize(parser.next());
        }
        seconds += processorSeconds() - start;
        state.SetIterationTime(processorSeconds() - start);
    }
    state.counters["ns_per_byte"] = 1e9 * seconds / static_cast<double>(stream.size()) /
                                    static_cast<double>(state.iterations());
}
BENCHMARK(byteByByte)->ArgName("MiB")->Arg(1)->Arg(8)->Arg(64)->UseManualTime()->Iterations(1);

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("payload")->Arg(16)->Arg(256)->Arg(2 << 10)->Arg((64 << 10) - 1);
    benchmark->UseManualTime()->MinTime(0.2);
}
BENCHMARK_TEMPLATE(parsing, Frames)->Apply(sizes);
BENCHMARK_TEMPLATE(parsing, TypedFrames)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
