#pragma once

#include <QtGlobal>
#include <functional>
#include <span>
#include <vector>

namespace quillory {

/// What of two sequences has no partner in the other one; the rest pairs up in its order.
struct SequenceDifference
{
    std::vector<bool> left; ///< by index: has no partner
    std::vector<bool> right;
};

/// Asked now and then by long work; false ends it.
using GoesOn = std::function<bool()>;

/// Compares two sequences of symbols, which are numbers below \a symbols.
///
/// Where they differ little the answer is as short as can be (E. Myers, "An O(ND) Difference
/// Algorithm and Its Variations", 1986, in linear space). Where they differ much, what occurs once
/// in either is paired first, as far as it stands in the same order, and what lies between is
/// divided where the search has come furthest, so that the work stays within about \a effort steps;
/// once those are used up, the stretches that are left count as different. False, and no answer,
/// when it was cancelled.
bool compareSequences(std::span<const quint32> left, std::span<const quint32> right,
                      quint32 symbols, SequenceDifference& difference, const GoesOn& goesOn = {},
                      qint64 effort = 200'000'000);

} // namespace quillory
