#include "editing/TextReplacement.h"

#include "editing/QPTextView.h"
#include "foundation/PropertyListReader.h"
#include "foundation/UserDefaults.h"

#include <QFileInfo>

namespace quillory {

namespace {

bool isOfWord(QChar unit)
{
    return unit.isLetterOrNumber() || unit.isMark() || unit.isSurrogate() || unit == u'_';
}

/// Where what was typed at \a caret begins; Return may have indented the line that it made.
std::optional<TextOffset> placeOfTyped(const TextSnapshot& text, TextOffset caret, QChar typed)
{
    const LineIndex line = text.lineAt(caret);
    if (typed == u'\n')
        return line.value() > 0 ? std::optional(text.lineContent(line - 1).end()) : std::nullopt;
    const bool isThere = caret > 0 && text.at(caret - 1) == typed.unicode();
    return isThere ? std::optional(caret - 1) : std::nullopt;
}

} // namespace

TextReplacement::TextReplacement(QPTextView& textView, const UserDefaults& defaults, QString path)
    : m_textView(textView), m_defaults(defaults), m_path(std::move(path))
{
    connect(&textView, &QPTextView::typed, this, &TextReplacement::followTyping);
}

void TextReplacement::followTyping(const QString& typed)
{
    if (typed.size() != 1 || isOfWord(typed[0]) || !m_defaults.value(keys::textReplacement))
        return;
    readIfChanged();
    const TextSnapshot text = m_textView.string();
    std::vector<TextEdit> edits;
    std::vector<Selection> after;
    size_t primary = 0;
    TextOffset shift = 0;
    TextOffset done = 0;
    for (const Selection& selection : m_textView.selections()) {
        if (selection == m_textView.primarySelection())
            primary = after.size();
        const auto end = placeOfTyped(text, selection.head, typed[0]);
        const auto found = end ? shortcutBefore(text, *end) : std::nullopt;
        if (found && found->range.location >= done) {
            edits.push_back({found->range, TextSnapshot(found->text)});
            shift += found->text.size() - found->range.length;
            done = found->range.end();
        }
        after.push_back({selection.anchor + shift, selection.head + shift});
    }
    if (!edits.empty())
        m_textView.replaceCharacters(edits, std::move(after), primary, tr("Text Replacement"));
}

std::optional<TextReplacement::Found> TextReplacement::shortcutBefore(const TextSnapshot& text,
                                                                      TextOffset end) const
{
    const TextOffset start = std::max<TextOffset>(0, end - m_longest - 1);
    const QString before = text.string(TextRange::between(start, end));
    for (qsizetype length = std::min(m_longest, before.size()); length > 0; --length) {
        const auto found = m_texts.constFind(before.last(length));
        if (found == m_texts.constEnd())
            continue;
        const qsizetype first = before.size() - length;
        if (first == 0 || !isOfWord(before[first]) || !isOfWord(before[first - 1]))
            return Found{{end - length, length}, *found};
    }
    return std::nullopt;
}

void TextReplacement::readIfChanged()
{
    const QFileInfo file(m_path);
    const QDateTime modified = file.lastModified();
    const qint64 size = file.exists() ? file.size() : -1;
    if (modified == m_modified && size == m_size)
        return;
    m_modified = modified;
    m_size = size;
    m_texts.clear();
    m_longest = 0;
    if (size < 0 || size > largestFile)
        return;
    const auto stored = readPropertyListFile(m_path);
    if (!stored)
        return;
    const PropertyList::Dictionary list = stored->list.toDictionary();
    for (auto entry = list.begin(); entry != list.end(); ++entry) {
        const auto* text = entry.value().as<QString>();
        if (!text || entry.key().isEmpty() || entry.key().size() > longestShortcut)
            continue;
        m_texts.insert(entry.key(), *text);
        m_longest = std::max(m_longest, entry.key().size());
    }
}

} // namespace quillory
