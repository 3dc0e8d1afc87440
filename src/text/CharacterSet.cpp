#include "text/CharacterSet.h"

#include <unicode/uset.h>

namespace quillory {

void CharacterSet::CloseSet::operator()(USet* set) const
{
    uset_close(set);
}

CharacterSet::CharacterSet(SetPointer set)
{
    const auto contents = std::make_shared<Contents>();
    UErrorCode status = U_ZERO_ERROR;
    for (int32_t i = 0; i < uset_getRangeCount(set.get()); ++i) {
        UChar32 first = 0;
        UChar32 last = 0;
        uset_getItem(set.get(), i, &first, &last, nullptr, 0, &status);
        for (UChar32 character = first; character <= std::min(last, 0xFFFF); ++character)
            contents->basicPlane[size_t(character) / 64] |= quint64(1) << character % 64;
    }
    uset_freeze(set.get());
    contents->set = std::move(set);
    m_contents = contents;
}

CharacterSet::CharacterSet(QStringView characters)
    : CharacterSet([&] {
          SetPointer set(uset_openEmpty());
          uset_addAllCodePoints(set.get(), characters.utf16(), int32_t(characters.size()));
          return set;
      }())
{}

/// The set of a pattern in ICU's notation (UTS 18, property lists in brackets).
CharacterSet CharacterSet::ofPattern(QStringView pattern)
{
    UErrorCode status = U_ZERO_ERROR;
    SetPointer set(uset_openPattern(pattern.utf16(), int32_t(pattern.size()), &status));
    Q_ASSERT(U_SUCCESS(status));
    return CharacterSet(std::move(set));
}

const CharacterSet& CharacterSet::whitespace()
{
    static const CharacterSet set = ofPattern(u"[[:Zs:]\\u0009\\u200B]");
    return set;
}

const CharacterSet& CharacterSet::newline()
{
    static const CharacterSet set = ofPattern(u"[\\u000A-\\u000D\\u0085\\u2028\\u2029]");
    return set;
}

const CharacterSet& CharacterSet::whitespaceAndNewline()
{
    static const CharacterSet set = whitespace().united(newline());
    return set;
}

const CharacterSet& CharacterSet::letter()
{
    static const CharacterSet set = ofPattern(u"[[:L:][:M:]]");
    return set;
}

const CharacterSet& CharacterSet::alphanumeric()
{
    static const CharacterSet set = ofPattern(u"[[:L:][:M:][:N:]]");
    return set;
}

const CharacterSet& CharacterSet::decimalDigit()
{
    static const CharacterSet set = ofPattern(u"[:Nd:]");
    return set;
}

const CharacterSet& CharacterSet::symbol()
{
    static const CharacterSet set = ofPattern(u"[:S:]");
    return set;
}

const CharacterSet& CharacterSet::punctuation()
{
    static const CharacterSet set = ofPattern(u"[:P:]");
    return set;
}

const CharacterSet& CharacterSet::illegal()
{
    static const CharacterSet set = ofPattern(u"[:Cn:]");
    return set;
}

const CharacterSet& CharacterSet::regularExpressionWord()
{
    static const CharacterSet set =
        ofPattern(u"[\\p{Alphabetic}\\p{M}\\p{Nd}\\p{Pc}\\u200C\\u200D]");
    return set;
}

CharacterSet CharacterSet::united(const CharacterSet& other) const
{
    SetPointer set = thawed();
    uset_addAll(set.get(), other.m_contents->set.get());
    return CharacterSet(std::move(set));
}

CharacterSet CharacterSet::inverted() const
{
    SetPointer set = thawed();
    uset_complement(set.get());
    return CharacterSet(std::move(set));
}

CharacterSet CharacterSet::withCharacters(QStringView characters) const
{
    SetPointer set = thawed();
    uset_addAllCodePoints(set.get(), characters.utf16(), int32_t(characters.size()));
    return CharacterSet(std::move(set));
}

CharacterSet CharacterSet::withoutCharacters(QStringView characters) const
{
    SetPointer set = thawed();
    uset_removeAllCodePoints(set.get(), characters.utf16(), int32_t(characters.size()));
    return CharacterSet(std::move(set));
}

bool CharacterSet::operator==(const CharacterSet& other) const
{
    return m_contents == other.m_contents ||
           uset_equals(m_contents->set.get(), other.m_contents->set.get());
}

CharacterSet::SetPointer CharacterSet::thawed() const
{
    return SetPointer(uset_cloneAsThawed(m_contents->set.get()));
}

bool CharacterSet::containsSupplementary(char32_t character) const
{
    return character <= 0x10FFFF && uset_contains(m_contents->set.get(), UChar32(character));
}

} // namespace quillory
