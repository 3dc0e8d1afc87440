#pragma once

#include "foundation/PropertyList.h"

#include <QHash>

namespace quillory {

/// Makes one value of equal short texts, so that a list that repeats a few of them many times takes
/// not much more memory than its file.
class TextPool
{
public:
    PropertyList list(const QString& text)
    {
        if (text.size() > longestText)
            return text;
        const auto known = m_lists.constFind(text);
        if (known != m_lists.cend())
            return *known;
        PropertyList made(text);
        if (m_lists.size() < mostTexts)
            m_lists.insert(text, made);
        return made;
    }

private:
    static constexpr qsizetype longestText = 16; ///< UTF-16 code units
    static constexpr qsizetype mostTexts = 1 << 14;

    QHash<QString, PropertyList> m_lists;
};

} // namespace quillory
