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

ColouringState stateFor(const QString& extension)
{
    DefinitionList list;
    const QString folder = root + QStringLiteral("/resources/Definitions");
    list.load(folder, folder);
    ColouringState made;
    prepareColoring(list.arrangedObjects()[size_t(list.indexForExtension(extension))], {}, made);
    return made;
}

const ColouringState& php()
{
    static const ColouringState state = stateFor(QStringLiteral("php"));
    return state;
}

QString sampleOf(const QString& extension)
{
    QFile file(root + QStringLiteral("/tests/syntax/golden/sample.") + extension);
    if (!file.open(QFile::ReadOnly))
        qFatal("a sample is missing");
    return QString::fromUtf8(file.readAll());
}

/// About \a length units of the sample of PHP, again and again.
TextSnapshot phpText(qint64 length)
{
    const QString sample = sampleOf(QStringLiteral("php"));
    TextBuilder builder;
    for (qint64 units = 0; units < length; units += sample.size())
        builder.append(QStringView(sample));
    return builder.finish();
}

/// A page of 60 lines of a language.
void colourPage(benchmark::State& state, const char* extension)
{
    const ColouringState colouring = stateFor(QLatin1StringView(extension));
    const TextSnapshot text(sampleOf(QLatin1StringView(extension)).repeated(3));
    const TextRange page = TextRange::between(0, text.lineStart(LineIndex(60)));
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(recoloured(text, page, colouring, ColourRoles()).runs.data());
    state.SetLabel(std::to_string(page.length) + " units");
}
BENCHMARK_CAPTURE(colourPage, C++, "cc")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(colourPage, PHP, "php")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(colourPage, Python, "py")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(colourPage, Shell, "sh")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(colourPage, JSON, "json")->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(colourPage, HTML, "html")->Unit(benchmark::kMicrosecond);

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
