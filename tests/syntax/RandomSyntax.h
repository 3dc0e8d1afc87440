#pragma once

#include "syntax/ColourRole.h"
#include "syntax/ColouringState.h"

#include <QString>
#include <random>

namespace quillory::test {

/// The state of a fresh document: no words, no delimiters, the built-in character sets.
ColouringState emptyState();

/// Compiles the string patterns of \a state anew; null where a delimiter makes none.
void compileStrings(ColouringState& state);

/// Definitions and texts that are full of what colouring looks at, and of what it may stumble on.
class RandomSyntax
{
public:
    explicit RandomSyntax(unsigned seed) : m_random(seed) {}

    ColouringState state();
    QString text(const ColouringState& state, int pieces);

    /// Some of the roles look like each other.
    ColourRoles roles();

    int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(m_random); }

    template<class List>
    auto oneOf(const List& list)
    {
        return list[size_t(below(int(std::size(list))))];
    }

private:
    std::mt19937 m_random;
};

} // namespace quillory::test
