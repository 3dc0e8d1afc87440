#include "editing/find/FindQuery.h"

#include <QRegularExpression>

namespace quillory {

std::shared_ptr<ICUPattern> FindQuery::pattern() const
{
    QString source = isRegex ? text : QRegularExpression::escape(text);
    // Unlike \b these also work where the text itself begins or ends with no letter.
    if (wholeWords)
        source = QStringLiteral("(?<!\\w)(?:%1)(?!\\w)").arg(source);
    uint32_t flags = UREGEX_MULTILINE;
    if (!matchesCase)
        flags |= UREGEX_CASE_INSENSITIVE;
    return ICUPattern::patternWithString(source, flags);
}

} // namespace quillory
