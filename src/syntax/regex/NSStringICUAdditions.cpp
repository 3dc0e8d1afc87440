#include "syntax/regex/NSStringICUAdditions.h"

#include "syntax/regex/ICUMatcher.h"

#include <unicode/ustring.h>

namespace quillory {

namespace {

QString nonNull(const QString& receiver)
{
    return receiver.isNull() ? QString::fromLatin1("") : receiver;
}

ICUMatcher matcher(const QString& receiver, const QString& pattern)
{
    return {ICUPattern::patternWithString(pattern), nonNull(receiver)};
}

} // namespace

QString NSStringICUAdditions::replaceOccurrencesOfPattern(const QString& receiver,
                                                          const QString& pattern,
                                                          const QString& withString)
{
    return matcher(receiver, pattern).replaceAllWithString(withString);
}

bool NSStringICUAdditions::matchesPattern(const QString& receiver, const QString& pattern)
{
    return matcher(receiver, pattern).matches();
}

QStringList NSStringICUAdditions::findPattern(const QString& receiver, const QString& pattern)
{
    ICUMatcher found = matcher(receiver, pattern);
    found.findFromIndex(0);
    QStringList groups;
    for (int group = 0; group <= found.numberOfGroups(); ++group)
        groups.append(found.groupAtIndex(group));
    return groups;
}

QStringList NSStringICUAdditions::componentsSeparatedByPattern(const QString& receiver,
                                                               const QString& pattern)
{
    return ICUPattern(pattern).componentsSplitFromString(nonNull(receiver));
}

QString NSStringICUAdditions::stringWithICUString(const char16_t* buffer)
{
    return QStringView(buffer, u_strlen(buffer)).toString();
}

StringEncoding NSStringICUAdditions::nativeUTF16Encoding()
{
    return StringEncoding::utf16LittleEndian;
}

const char16_t* NSStringICUAdditions::UTF16String(const QString& receiver)
{
    return reinterpret_cast<const char16_t*>(receiver.utf16());
}

std::unique_ptr<char16_t[]> NSStringICUAdditions::copyUTF16String(const QString& receiver)
{
    auto copy = std::make_unique<char16_t[]>(size_t(receiver.size()) + 1);
    std::copy_n(QStringView(receiver).utf16(), receiver.size(), copy.get());
    return copy;
}

} // namespace quillory
