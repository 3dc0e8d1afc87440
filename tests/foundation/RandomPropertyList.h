#pragma once

#include "foundation/PropertyList.h"

#include <random>

namespace quillory {

/// Makes lists of every kind of value that every form but OpenStep can hold, unless told otherwise.
class RandomPropertyList
{
public:
    explicit RandomPropertyList(quint32 seed) : m_random(seed) {}

    /// Everything that XML loses or refuses is left out: fractions of seconds, control characters,
    /// unpaired surrogates, the negative zero. Carriage returns are in.
    PropertyList forXml() { return list(5, true); }
    PropertyList forBinary() { return list(5, false); }

    int below(int bound) { return std::uniform_int_distribution(0, bound - 1)(m_random); }

private:
    PropertyList list(int depth, bool xml);
    PropertyList leaf(bool xml);
    QString text(bool xml);

    std::mt19937 m_random;
};

} // namespace quillory
