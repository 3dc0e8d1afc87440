// Colours the input by a definition that its first bytes make. The runs must be in order, apart and
// inside; colouring again must come to the same; and a page must not take long, whatever it holds.

#include "syntax/ColouringPreparation.h"
#include "syntax/RecolouringEngine.h"

#include <cstdlib>

using namespace quillory;

namespace {

void check(bool holds)
{
    if (!holds)
        std::abort();
}

/// The input up to the next NUL, taken off \a rest.
QString field(QByteArrayView& rest)
{
    const qsizetype end = rest.indexOf('\0');
    const QByteArrayView taken = end < 0 ? rest : rest.first(end);
    rest = end < 0 ? QByteArrayView() : rest.sliced(end + 1);
    return QString::fromUtf8(taken);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    QByteArrayView rest(data + 2, qsizetype(size) - 2);
    ColouringState state;
    for (QString* delimiter :
         {&state.beginCommand, &state.endCommand, &state.beginInstruction, &state.endInstruction,
          &state.firstString, &state.secondString, &state.firstSingleLineComment,
          &state.secondSingleLineComment, &state.beginFirstMultiLineComment,
          &state.endFirstMultiLineComment, &state.beginSecondMultiLineComment,
          &state.endSecondMultiLineComment})
        *delimiter = field(rest);
    if ((data[0] & 1) != 0)
        state.beginVariable = CharacterSet(field(rest));
    state.endVariable = CharacterSet(field(rest));
    const QStringList words = field(rest).split(u' ');
    state.keywords = {words.begin(), words.end()};
    state.types = {words.begin() + words.size() / 2, words.end()};
    state.keywordsCaseSensitive = (data[0] & 2) != 0;
    state.shouldBeRecolered = (data[0] & 4) != 0;
    state.colorNumbers = (data[0] & 8) != 0;
    prepareRegularExpressions(Definition(PropertyList(), QString()), {false, (data[0] & 16) != 0},
                              state);

    const QString string = QString::fromUtf8(rest).repeated(1 + (data[0] & 32));
    const TextSnapshot text(string);
    const TextOffset location = data[1] * text.length() / 256;
    for (const TextRange range : {text.range(), TextRange{location, 0}}) {
        const Recolouring result = recoloured(text, range, state, ColourRoles());
        check(result.range == text.lineRangeForRange(range));
        TextOffset end = result.range.location;
        for (const RoleRun& run : result.runs) {
            check(run.range.location >= end && !run.range.isEmpty());
            check(run.role != ColourRole::none);
            end = run.range.end();
        }
        check(end <= result.range.end());
        check(recoloured(text, range, state, ColourRoles()).runs == result.runs);
    }
    return 0;
}
