// Colouring by itself: a page of PHP in texts of different lengths, and whole texts.

#include "syntax/ColouringPreparation.h"
#include "syntax/DefinitionList.h"
#include "syntax/RecolouringEngine.h"
#include "text/TextBuilder.h"

#include <QFile>
#include <benchmark/benchmark.h>

namespace quillory::bench {
namespace {

const QString root = QStringLiteral(QUILLORY_SOURCE_DIR);

const ColouringState& php()
{
    static const ColouringState state = [] {
        DefinitionList list;
        const QString folder = root + QStringLiteral("/resources/Definitions");
        list.load(folder, folder);
        ColouringState made;
        prepareColoring(
            list.arrangedObjects()[size_t(list.indexForExtension(QStringLiteral("php")))], {},
            made);
        return made;
    }();
    return state;
}

/// About \a length units of the sample of PHP, again and again.
TextSnapshot phpText(qint64 length)
{
    QFile file(root + QStringLiteral("/tests/syntax/golden/sample.php"));
    if (!file.open(QFile::ReadOnly))
        qFatal("the sample of PHP is missing");
    const QString sample = QString::fromUtf8(file.readAll());
    TextBuilder builder;
    for (qint64 units = 0; units < length; units += sample.size())
        builder.append(QStringView(sample));
    return builder.finish();
}

/// What a key press at the end of a text of so many bytes recolours: the last 60 lines.
void colourLastPage(benchmark::State& state)
{
    TextSnapshot text = phpText(state.range(0));
    const auto page = [&] {
        const TextOffset start = text.lineStart(LineIndex(text.lineCount() - 61));
        return TextRange::between(start, text.length());
    };
    recoloured(text, page(), php(), ColourRoles());
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        text = text.replacing({text.length() - 1, 0}, TextSnapshot(u"x"));
        state.ResumeTiming();
        benchmark::DoNotOptimize(recoloured(text, page(), php(), ColourRoles()).runs.data());
    }
}
BENCHMARK(colourLastPage)->Arg(100'000)->Arg(100'000'000)->Unit(benchmark::kMicrosecond);

/// The first look at the end of a text, which reads all of it.
void lookAtTheEndFirst(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        const TextSnapshot text = phpText(state.range(0));
        const TextOffset start = text.lineStart(LineIndex(text.lineCount() - 61));
        state.ResumeTiming();
        benchmark::DoNotOptimize(recoloured(text, {start, 0}, php(), ColourRoles()).runs.data());
    }
}
BENCHMARK(lookAtTheEndFirst)->Arg(100'000'000)->Iterations(3)->Unit(benchmark::kMillisecond);

void colourWhole(benchmark::State& state)
{
    const TextSnapshot text = phpText(state.range(0));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(recoloured(text, text.range(), php(), ColourRoles()).runs.data());
    state.SetBytesProcessed(state.iterations() * text.length());
}
BENCHMARK(colourWhole)->Arg(10'000'000)->Arg(20'000'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace quillory::bench

BENCHMARK_MAIN();
