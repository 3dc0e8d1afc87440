#include "syntax/ColouredHtml.h"

#include <cmath>

namespace quillory {

namespace {

void writeEscaped(QTextStream& out, QStringView units)
{
    qsizetype written = 0;
    const auto replace = [&](qsizetype at, QLatin1StringView by) {
        out << units.sliced(written, at - written) << by;
        written = at + 1;
    };
    for (qsizetype i = 0; i < units.size(); ++i) {
        switch (units[i].unicode()) {
        case u'&':
            replace(i, QLatin1StringView("&amp;"));
            break;
        case u'<':
            replace(i, QLatin1StringView("&lt;"));
            break;
        case u'>':
            replace(i, QLatin1StringView("&gt;"));
            break;
        case u'"':
            replace(i, QLatin1StringView("&quot;"));
            break;
        case 0: // which no page may hold
            out << units.sliced(written, i - written) << QChar(QChar::ReplacementCharacter);
            written = i + 1;
            break;
        }
    }
    out << units.sliced(written);
}

void writeEscaped(QTextStream& out, const TextSnapshot& text, TextRange range)
{
    text.forEachPiece(range, [&](const TextPiece& piece) {
        if (const auto* wide = std::get_if<QStringView>(&piece.units))
            writeEscaped(out, *wide);
        else
            writeEscaped(out, QString(std::get<QLatin1StringView>(piece.units)));
    });
}

/// Writes \a range, each run in an element that \a open begins.
template<class Open>
void writeRuns(QTextStream& out, const ColouredText& coloured, TextRange range, Open&& open)
{
    TextOffset at = range.location;
    for (const RoleRun& run : coloured.runs) {
        if (run.range.end() <= range.location)
            continue;
        if (run.range.location >= range.end())
            break;
        const TextRange part = run.range.intersection(range);
        if (!coloured.roles.attributes(run.role).foreground)
            continue;
        writeEscaped(out, coloured.text, TextRange::between(at, part.location));
        out << "<span ";
        open(run.role);
        out << '>';
        writeEscaped(out, coloured.text, part);
        out << "</span>";
        at = part.end();
    }
    writeEscaped(out, coloured.text, TextRange::between(at, range.end()));
}

} // namespace

QString cssColour(const Colour& colour)
{
    const auto byte = [](float part) { return int(std::lround(part * 255)); };
    if (colour.alpha >= 1) {
        const uint rgb = uint(byte(colour.red) << 16 | byte(colour.green) << 8 | byte(colour.blue));
        return QLatin1Char('#') + QString::number(rgb, 16).rightJustified(6, u'0');
    }
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(byte(colour.red))
        .arg(byte(colour.green))
        .arg(byte(colour.blue))
        .arg(double(colour.alpha), 0, 'g', 3);
}

void writeHtmlPage(QTextStream& out, const ColouredText& coloured, const QString& title)
{
    out << "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>";
    writeEscaped(out, title);
    out << "</title>\n<style>\nbody { margin: 1em; background: "
        << cssColour(coloured.plain.background) << "; color: " << cssColour(coloured.plain.text)
        << "; }\npre { margin: 0; font-family: monospace; tab-size: 4; }\n";
    for (int i = 0; i < colourRoleCount; ++i) {
        const auto role = ColourRole(i);
        const auto& foreground = coloured.roles.attributes(role).foreground;
        if (foreground && role != ColourRole::autocomplete)
            out << '.' << themeKey(role) << " { color: " << cssColour(*foreground) << "; }\n";
    }
    // A line break right after the tag is not part of the text.
    out << "</style>\n</head>\n<body>\n<pre>\n";
    writeRuns(out, coloured, coloured.text.range(),
              [&](ColourRole role) { out << "class=\"" << themeKey(role) << '"'; });
    out << "</pre>\n</body>\n</html>\n";
}

QString htmlFragment(const ColouredText& coloured, TextRange range, const QString& fontFamily)
{
    QString html;
    QTextStream out(&html);
    out << "<pre style=\"margin: 0; font-family: ";
    if (!fontFamily.isEmpty()) {
        QString name = fontFamily;
        name.remove(u'\'').remove(u'\\');
        out << '\'';
        writeEscaped(out, name);
        out << "', ";
    }
    out << "monospace; background: " << cssColour(coloured.plain.background)
        << "; color: " << cssColour(coloured.plain.text) << ";\">\n";
    writeRuns(out, coloured, range, [&](ColourRole role) {
        out << "style=\"color: " << cssColour(*coloured.roles.attributes(role).foreground) << "\"";
    });
    out << "</pre>";
    out.flush();
    return html;
}

} // namespace quillory
