#include "editing/spelling/MarkupCode.h"

#include "text/TextReader.h"

#include <QRegularExpression>
#include <QSet>

namespace quillory {

namespace {

using namespace Qt::StringLiterals;

// In UTF-16 code units.
constexpr TextOffset lookBack = TextOffset(64) * 1024;
constexpr TextOffset longestArguments = 1024;

const QSet<QString>& commandsOfNames()
{
    static const QSet<QString> commands{u"documentclass"_s,
                                        u"usepackage"_s,
                                        u"RequirePackage"_s,
                                        u"label"_s,
                                        u"ref"_s,
                                        u"eqref"_s,
                                        u"pageref"_s,
                                        u"autoref"_s,
                                        u"nameref"_s,
                                        u"cref"_s,
                                        u"Cref"_s,
                                        u"cite"_s,
                                        u"citep"_s,
                                        u"citet"_s,
                                        u"citeauthor"_s,
                                        u"citeyear"_s,
                                        u"textcite"_s,
                                        u"parencite"_s,
                                        u"autocite"_s,
                                        u"nocite"_s,
                                        u"bibliography"_s,
                                        u"bibitem"_s,
                                        u"bibliographystyle"_s,
                                        u"addbibresource"_s,
                                        u"include"_s,
                                        u"input"_s,
                                        u"includegraphics"_s,
                                        u"graphicspath"_s,
                                        u"begin"_s,
                                        u"end"_s,
                                        u"newcommand"_s,
                                        u"renewcommand"_s,
                                        u"providecommand"_s,
                                        u"newenvironment"_s,
                                        u"renewenvironment"_s,
                                        u"newcounter"_s,
                                        u"setcounter"_s,
                                        u"addtocounter"_s,
                                        u"setlength"_s,
                                        u"addtolength"_s,
                                        u"vspace"_s,
                                        u"hspace"_s,
                                        u"url"_s,
                                        u"hypersetup"_s,
                                        u"color"_s,
                                        u"definecolor"_s,
                                        u"pagestyle"_s,
                                        u"thispagestyle"_s,
                                        u"pagenumbering"_s,
                                        u"usetikzlibrary"_s,
                                        u"lstset"_s,
                                        u"sisetup"_s,
                                        u"geometry"_s,
                                        u"DeclareMathOperator"_s};
    return commands;
}

/// Where the group in brackets that begins at \a offset ends; \a offset where none does.
TextOffset groupEnd(TextReader& reader, TextOffset offset, TextOffset limit)
{
    if (offset >= limit || (reader.at(offset) != u'{' && reader.at(offset) != u'['))
        return offset;
    const char16_t open = reader.at(offset);
    const char16_t close = open == u'{' ? u'}' : u']';
    int depth = 0;
    for (TextOffset i = offset; i < limit; ++i) {
        const char16_t unit = reader.at(i);
        if (unit == u'\\')
            ++i;
        else if (unit == open)
            ++depth;
        else if (unit == close && --depth == 0)
            return i + 1;
    }
    return offset;
}

} // namespace

std::vector<TextRange> codeElements(const TextSnapshot& text, TextRange range)
{
    static const QRegularExpression tag(
        u"<(/?)(script|style|pre|code|kbd|samp|var|tt)(?![\\w-])[^<>]*>"_s,
        QRegularExpression::CaseInsensitiveOption);
    const TextOffset start = std::max<TextOffset>(0, range.location - lookBack);
    const QString units = text.string(TextRange::between(start, range.end()));
    std::vector<TextRange> elements;
    QString open;
    TextOffset begin = 0;
    const auto close = [&](TextOffset end) {
        const TextRange shown = TextRange::between(start + begin, start + end).intersection(range);
        if (!shown.isEmpty())
            elements.push_back(shown);
        open.clear();
    };
    for (auto found = tag.globalMatch(units); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const QString name = match.captured(2).toLower();
        const bool ends = match.capturedLength(1) > 0;
        if (open.isEmpty() && !ends) {
            open = name;
            begin = match.capturedEnd();
        } else if (open == name && ends) {
            close(match.capturedStart());
        }
    }
    if (!open.isEmpty())
        close(units.size());
    return elements;
}

TextRange nameArguments(const TextSnapshot& text, TextRange command)
{
    const QString units = text.string(command);
    QString name = units.mid(units.lastIndexOf(u'\\') + 1);
    if (name.endsWith(u'*'))
        name.chop(1);
    const TextOffset start = command.end();
    if (!commandsOfNames().contains(name))
        return {start, 0};
    TextReader reader(text);
    const TextOffset limit = std::min(text.length(), start + longestArguments);
    TextOffset end = start;
    if (end < limit && reader.at(end) == u'*')
        ++end;
    for (TextOffset next = groupEnd(reader, end, limit); next > end;
         next = groupEnd(reader, end, limit))
        end = next;
    return TextRange::between(start, end);
}

} // namespace quillory
