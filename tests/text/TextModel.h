#pragma once

#include "text/TextSnapshot.h"

#include <string>

namespace quillory::test {

/// The plainest possible text: what TextSnapshot is checked against.
struct TextModel
{
    std::u16string text;

    void replace(TextRange range, const std::u16string& with)
    {
        text.replace(size_t(range.location), size_t(range.length), with);
    }

    bool breakEndsAt(size_t end) const
    {
        const char16_t last = text[end - 1];
        if (last == u'\r')
            return end == text.size() || text[end] != u'\n';
        return last == u'\n' || last == u'\u2028' || last == u'\u2029';
    }

    qsizetype lineAt(TextOffset offset) const
    {
        qsizetype line = 0;
        for (size_t end = 1; end <= size_t(offset); ++end)
            line += breakEndsAt(end) ? 1 : 0;
        return line;
    }

    TextOffset lineStart(qsizetype line) const
    {
        size_t end = 0;
        while (line > 0 && end < text.size())
            line -= breakEndsAt(++end) ? 1 : 0;
        return TextOffset(end);
    }

    /// The length of the longest line without its break.
    TextOffset longestLine() const
    {
        TextOffset longest = 0;
        TextOffset length = 0;
        for (size_t i = 0; i < text.size(); ++i) {
            const char16_t unit = text[i];
            const bool ends =
                unit == u'\n' || unit == u'\r' || unit == u'\u2028' || unit == u'\u2029';
            length = ends ? 0 : length + 1;
            longest = std::max(longest, length);
        }
        return longest;
    }
};

/// The first fault in the tree's shape, or an empty string.
std::string treeFault(const TextSnapshot& snapshot);

} // namespace quillory::test
