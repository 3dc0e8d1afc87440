#include "commands/FunctionScan.h"

#include "syntax/regex/ICUMatcher.h"

#include <algorithm>

namespace quillory {

namespace {

constexpr qsizetype longestLabel = 61; // UTF-16 code units
constexpr qsizetype cutLabel = 60;
constexpr qint64 lastNarrowNumber = 999;
constexpr int questionPause = 4096; // places in the text

bool isBlank(QChar unit)
{
    return unit == u' ' || unit == u'\t';
}

/// Asks whether to give up, for ICU.
class Interruption
{
public:
    Interruption(URegularExpression* re, const FunctionScan::IsOver& isOver) : m_isOver(isOver)
    {
        if (!isOver)
            return;
        UErrorCode status = U_ZERO_ERROR;
        uregex_setMatchCallback(re, whileMatching, this, &status);
        uregex_setFindProgressCallback(re, whileFinding, this, &status);
    }

    bool isOver() const { return m_over; }
    bool ask() { return m_over = m_over || (m_isOver && m_isOver()); }

private:
    static UBool U_CALLCONV whileMatching(const void* context, int32_t)
    {
        return !own(context)->ask();
    }

    static UBool U_CALLCONV whileFinding(const void* context, int64_t)
    {
        Interruption* self = own(context);
        if (--self->m_untilQuestion > 0)
            return true;
        self->m_untilQuestion = questionPause;
        return !self->ask();
    }

    static Interruption* own(const void* context)
    {
        return static_cast<Interruption*>(const_cast<void*>(context));
    }

    const FunctionScan::IsOver& m_isOver;
    int m_untilQuestion = questionPause;
    bool m_over = false;
};

/// \a label without \a part, as far as more than the longest label is left of it.
QString without(QStringView label, QStringView part)
{
    QString rest;
    for (qsizetype from = 0; from < label.size() && rest.size() <= longestLabel;) {
        qsizetype to = part.isEmpty() ? -1 : label.indexOf(part, from, Qt::CaseInsensitive);
        if (to < 0)
            to = label.size();
        rest.append(label.sliced(from, to - from));
        from = to + part.size();
    }
    return rest;
}

} // namespace

qint64 lineNumberAt(const TextSnapshot& text, TextOffset offset)
{
    return text.isEmpty() ? 0 : text.lineAt(std::min(offset, text.length() - 1)).value() + 1;
}

QString navigationLabel(QStringView matched, const std::optional<QString>& ignoring)
{
    QStringView kept = matched;
    while (!kept.isEmpty() &&
           (isBlank(kept.front()) || kept.front() == u'\n' || kept.front() == u'\r'))
        kept = kept.sliced(1);
    while (!kept.isEmpty() && (isBlank(kept.back()) || kept.back() == u'{'))
        kept.chop(1);
    QString label = without(kept, ignoring.value_or(QString()));
    if (label.size() > longestLabel) {
        const bool splitsPair =
            label[cutLabel - 1].isHighSurrogate() && label[cutLabel].isLowSurrogate();
        label.truncate(splitsPair ? cutLabel - 1 : cutLabel);
        label.append(u'…');
    }
    return label;
}

QString navigationTitle(const NavigationItem& item)
{
    const QLatin1StringView gap(item.lineNumber > lastNarrowNumber ? "\t " : "\t\t ");
    return QString::number(item.lineNumber) + gap + item.name;
}

std::optional<NavigationItems> FunctionScan::run(const IsOver& isOver) const
{
    NavigationItems items;
    if (text.isEmpty() || functionDefinition.isEmpty())
        return items;
    try {
        const auto pattern = ICUPattern::patternWithString(
            functionDefinition, UREGEX_CASE_INSENSITIVE | UREGEX_MULTILINE);
        Interruption interruption(pattern->re(), isOver);
        const QString whole = text.string();
        ICUMatcher matcher(pattern, whole);
        try {
            while (!interruption.ask() && matcher.findNext()) {
                const TextRange match = matcher.rangeOfMatch();
                // A match that begins with the break before its line belongs to its line.
                items.push_back(
                    {lineNumberAt(text, match.location + 1),
                     navigationLabel(QStringView(whole).sliced(match.location, match.length),
                                     ignoring)});
            }
        } catch (const ICUException&) {
            // Given up, by ICU or by the caller.
        }
        if (interruption.isOver())
            return std::nullopt;
    } catch (const ICUException&) {
        // The definition's faults are told elsewhere.
    }
    return items;
}

} // namespace quillory
