#pragma once

#include "text/TextRange.h"

#include <QStringView>
#include <vector>

namespace quillory {

/// What of two strings has no partner in the other one, in words, runs of blanks and single signs.
struct WordDifferences
{
    std::vector<TextRange> left;
    std::vector<TextRange> right;
};

/// Compares \a left, which was changed, with what became of it. Nothing is found where the two have
/// little in common, or more than 32K code units together: there everything counts as different.
WordDifferences wordDifferences(QStringView left, QStringView right);

} // namespace quillory
