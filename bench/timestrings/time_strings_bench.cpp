// Each time-string conversion beside a baseline that only does the integer
// parsing or printing of the same numbers with std::from_chars / std::to_chars.
// The "allocations" counter is heap allocations per iteration; outputs here fit
// the string's small buffer, so it should read 0.

#include <charconv>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include <kelmediatypes/TickTime.hpp>
#include <keltemporalxmp/docops.hpp>

#include "AllocationCounter.hpp"

namespace {

using keltemporalxmp::XMPDocOpsTemporal;

constexpr std::int64_t kTicks = kelmediatypes::TickTime::kTicksPerSecond;

template <class Work>
void RunCountingAllocations(benchmark::State& state, Work work) {
    const std::uint64_t before = bench::AllocationCount();
    for (auto _ : state) {
        work();
    }
    state.counters["allocations"] =
        benchmark::Counter(static_cast<double>(bench::AllocationCount() - before), benchmark::Counter::kAvgIterations);
}

// Hides a value from the optimiser so a baseline cannot fold its input.
template <class T>
T Opaque(T value) {
    benchmark::DoNotOptimize(value);
    return value;
}

void ParseNumbers(std::initializer_list<std::string_view> numbers) {
    for (std::string_view number : numbers) {
        const char* first = Opaque(number.data());
        std::int64_t value = 0;
        std::from_chars(first, first + number.size(), value);
        benchmark::DoNotOptimize(value);
    }
}

void PrintNumbers(std::initializer_list<std::int64_t> numbers) {
    char text[64];
    char* end = text;
    for (std::int64_t number : numbers) {
        end = std::to_chars(end, text + sizeof text, Opaque(number)).ptr;
    }
    benchmark::DoNotOptimize(text);
    benchmark::DoNotOptimize(end);
}

// --- string to ticks -----------------------------------------------------------

void ReadTime(benchmark::State& state, const char* text) {
    RunCountingAllocations(state, [text] {
        std::int64_t numerator = 25;
        std::int64_t denominator = 1;
        benchmark::DoNotOptimize(
            XMPDocOpsTemporal::ConvertExternalTimeStringToTicks(Opaque(text), &numerator, &denominator, kTicks));
    });
}
BENCHMARK_CAPTURE(ReadTime, 1001f30000s1001, "1001f30000s1001");
BENCHMARK_CAPTURE(ReadTime, 90f25, "90f25");
BENCHMARK_CAPTURE(ReadTime, maximum, "maximum");
BENCHMARK_CAPTURE(ReadTime, 12345, "12345");

void ReadTimeBaseline(benchmark::State& state, std::initializer_list<std::string_view> numbers) {
    RunCountingAllocations(state, [numbers] { ParseNumbers(numbers); });
}
BENCHMARK_CAPTURE(ReadTimeBaseline, 1001f30000s1001, {"1001", "30000", "1001"});
BENCHMARK_CAPTURE(ReadTimeBaseline, 90f25, {"90", "25"});
BENCHMARK_CAPTURE(ReadTimeBaseline, maximum, {"9223372036854775807"});
BENCHMARK_CAPTURE(ReadTimeBaseline, 12345, {"12345"});

// --- ticks to string -------------------------------------------------------------

// A minute and a bit at 29.97: "1798f30000s1001" with the rate, "1798" without.
constexpr std::int64_t kMinuteTicks = 60 * kTicks + 123456789;

void WriteTime(benchmark::State& state, bool appendRate) {
    RunCountingAllocations(state, [appendRate] {
        std::string text;
        XMPDocOpsTemporal::ConvertTicksToExternalTimeString(&text, Opaque(kMinuteTicks), 30000, 1001, kTicks,
                                                            appendRate);
        benchmark::DoNotOptimize(text);
    });
}
BENCHMARK_CAPTURE(WriteTime, with_rate, true);
BENCHMARK_CAPTURE(WriteTime, without_rate, false);

void WriteTimeBaseline(benchmark::State& state, std::initializer_list<std::int64_t> numbers) {
    RunCountingAllocations(state, [numbers] { PrintNumbers(numbers); });
}
BENCHMARK_CAPTURE(WriteTimeBaseline, with_rate, {1798, 30000, 1001});
BENCHMARK_CAPTURE(WriteTimeBaseline, without_rate, {1798});

// --- frame-rate and part strings ---------------------------------------------------

void ParseFrameRate(benchmark::State& state) {
    RunCountingAllocations(state, [] {
        std::int64_t numerator = 0;
        std::int64_t denominator = 0;
        XMPDocOpsTemporal::ParseExternalFrameRateString(Opaque("f30000s1001"), &numerator, &denominator);
        benchmark::DoNotOptimize(numerator);
        benchmark::DoNotOptimize(denominator);
    });
}
BENCHMARK(ParseFrameRate);

void ParseFrameRateBaseline(benchmark::State& state) {
    RunCountingAllocations(state, [] { ParseNumbers({"30000", "1001"}); });
}
BENCHMARK(ParseFrameRateBaseline);

void ParsePart(benchmark::State& state) {
    RunCountingAllocations(state, [] {
        std::int64_t start = 0, startNumerator = 1, startDenominator = 1;
        std::int64_t duration = 0, durationNumerator = 1, durationDenominator = 1;
        std::string path;
        XMPDocOpsTemporal::ParsePart(Opaque("metadata/time:1001f30000s1001d90f25"), &start, &startNumerator,
                                     &startDenominator, &duration, &durationNumerator, &durationDenominator, 0, &path);
        benchmark::DoNotOptimize(start);
        benchmark::DoNotOptimize(duration);
        benchmark::DoNotOptimize(path);
    });
}
BENCHMARK(ParsePart);

void ParsePartBaseline(benchmark::State& state) {
    RunCountingAllocations(state, [] { ParseNumbers({"1001", "30000", "1001", "90", "25"}); });
}
BENCHMARK(ParsePartBaseline);

void CreatePartString(benchmark::State& state) {
    RunCountingAllocations(state, [] {
        std::string text;  // "time:30d90f25"
        XMPDocOpsTemporal::CreatePartString(&text, Opaque(30 * kTicks), 1, 1, 90 * kTicks / 25, 25, 1, INT64_MAX, "");
        benchmark::DoNotOptimize(text);
    });
}
BENCHMARK(CreatePartString);

void CreatePartStringBaseline(benchmark::State& state) {
    RunCountingAllocations(state, [] { PrintNumbers({30, 90, 25}); });
}
BENCHMARK(CreatePartStringBaseline);

}  // namespace

BENCHMARK_MAIN();
