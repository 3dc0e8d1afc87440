// The text model by itself: decoding, editing, looking up, encoding.

#include "SampleText.h"
#include "text/TextDecoder.h"
#include "text/TextEncoder.h"
#include "text/TextStorage.h"

#include <benchmark/benchmark.h>
#include <cstring>
#include <random>

namespace quillory::bench {
namespace {

constexpr qsizetype large = 100'000'000;

const ByteBuffer& largeFile(bool mixed)
{
    static const ByteBuffer ascii(sampleText(large));
    static const ByteBuffer foreign(mixedText(large));
    return mixed ? foreign : ascii;
}

void copyOnce(benchmark::State& state)
{
    const ByteBuffer& file = largeFile(false);
    for ([[maybe_unused]] auto _ : state) {
        const ByteBuffer copy = ByteBuffer::filled(file.size(), [&](char* target) {
            std::memcpy(target, file.data(), size_t(file.size().value()));
            return file.size().value();
        });
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetBytesProcessed(state.iterations() * file.size().value());
}
BENCHMARK(copyOnce)->Unit(benchmark::kMillisecond);

void decodeUtf8(benchmark::State& state)
{
    const ByteBuffer& file = largeFile(state.range(0) != 0);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(decode(file, StringEncoding::utf8));
    state.SetBytesProcessed(state.iterations() * file.size().value());
}
BENCHMARK(decodeUtf8)->ArgName("mixed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void encodeUtf8(benchmark::State& state)
{
    const ByteBuffer& file = largeFile(state.range(0) != 0);
    const TextSnapshot text = *decode(file, StringEncoding::utf8);
    for ([[maybe_unused]] auto _ : state) {
        qsizetype bytes = 0;
        encode(text, StringEncoding::utf8, {}, [&](QByteArrayView piece) {
            bytes += piece.size();
            return true;
        });
        benchmark::DoNotOptimize(bytes);
    }
    state.SetBytesProcessed(state.iterations() * file.size().value());
}
BENCHMARK(encodeUtf8)->ArgName("mixed")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// One unit typed after the other, in a text of 100 KB and of 100 MB.
void type(benchmark::State& state)
{
    TextStorage storage;
    storage.replaceCharactersInRange(
        {0, 0}, decode(largeFile(false), StringEncoding::utf8)->slice({0, state.range(0)}));
    TextOffset caret = storage.length() / 2;
    const TextSnapshot unit(u"x");
    for ([[maybe_unused]] auto _ : state)
        storage.replaceCharactersInRange({caret++, 0}, unit);
}
BENCHMARK(type)->ArgName("units")->Arg(100'000)->Arg(large);

void lookUpLines(benchmark::State& state)
{
    const TextSnapshot text =
        decode(largeFile(false), StringEncoding::utf8)->slice({0, state.range(0)});
    std::minstd_rand random(1);
    for ([[maybe_unused]] auto _ : state) {
        const LineIndex line = text.lineAt(TextOffset(random() % size_t(text.length())));
        benchmark::DoNotOptimize(text.lineStart(line));
    }
}
BENCHMARK(lookUpLines)->ArgName("units")->Arg(100'000)->Arg(large);

} // namespace
} // namespace quillory::bench

BENCHMARK_MAIN();
