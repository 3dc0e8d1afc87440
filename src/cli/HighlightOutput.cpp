#include "cli/HighlightOutput.h"

#include "text/LineMetrics.h"

#include <cmath>

namespace quillory {

namespace {

constexpr QLatin1StringView plain("\x1b[0m");

QString escapeOf(const Colour& colour, const Colour& background)
{
    const auto byte = [&](float part, float behind) {
        return int(std::lround((part * colour.alpha + behind * (1 - colour.alpha)) * 255));
    };
    return QStringLiteral("\x1b[38;2;%1;%2;%3m")
        .arg(byte(colour.red, background.red))
        .arg(byte(colour.green, background.green))
        .arg(byte(colour.blue, background.blue));
}

bool isObeyed(char16_t unit)
{
    return (unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r') ||
           (unit >= 0x7F && unit < 0xA0);
}

/// \a text, in the colour that \a escape begins; empty for none.
void writePart(QTextStream& out, QString text, const QString& escape)
{
    for (QChar& unit : text) {
        if (isObeyed(unit.unicode()))
            unit = unit.unicode() < 0x20    ? QChar(0x2400 + unit.unicode())
                   : unit.unicode() == 0x7F ? QChar(0x2421)
                                            : QChar(QChar::ReplacementCharacter);
    }
    if (escape.isEmpty()) {
        out << text;
        return;
    }
    const QStringView all(text);
    for (qsizetype begin = 0; begin < all.size();) {
        qsizetype end = begin;
        while (end < all.size() && !isLineBreak(all[end].unicode()))
            ++end;
        if (end > begin)
            out << escape << all.sliced(begin, end - begin) << plain;
        begin = end;
        while (begin < all.size() && isLineBreak(all[begin].unicode()))
            out << all[begin++];
    }
}

} // namespace

void writeAnsi(QTextStream& out, const ColouredText& coloured, TextRange lines)
{
    constexpr TextOffset stretch = TextOffset(64) * 1024; // written at one time
    const auto write = [&](TextRange range, const QString& escape) {
        for (TextOffset at = range.location; at < range.end(); at += stretch)
            writePart(out,
                      coloured.text.string({at, std::min<TextOffset>(stretch, range.end() - at)}),
                      escape);
    };
    TextOffset at = lines.location;
    for (const RoleRun& run : coloured.runs) {
        const auto& foreground = coloured.roles.attributes(run.role).foreground;
        if (!foreground)
            continue;
        write(TextRange::between(at, run.range.location), {});
        write(run.range, escapeOf(*foreground, coloured.plain.background));
        at = run.range.end();
    }
    write(TextRange::between(at, lines.end()), {});
}

void writeJson(QTextStream& out, const std::vector<RoleRun>& runs)
{
    out << '[';
    for (size_t i = 0; i < runs.size();) {
        const QLatin1StringView name = themeKey(runs[i].role);
        const TextOffset begin = runs[i].range.location;
        TextOffset end = runs[i].range.end();
        const bool isFirst = i == 0;
        // Two roles may have one key.
        while (++i < runs.size() && runs[i].range.location == end && themeKey(runs[i].role) == name)
            end = runs[i].range.end();
        out << (isFirst ? "\n" : ",\n") << '[' << begin << ", " << end - begin << ", \"" << name
            << "\"]";
    }
    out << "\n]\n";
}

} // namespace quillory
