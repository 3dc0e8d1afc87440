#pragma once

#include "app/StartOptions.h"

namespace quillory {

class RunningInstance;

/// Leaves what \a options ask for to the program that runs already. Answers the exit status of this
/// start, or nothing where this one is to run, which \a options then say how.
///
/// One that is to wait and finds no other forks: the child is the program that runs, in the
/// background, for as long as it has windows, and this one waits for it as for any other. To be
/// called before there is a second thread.
std::optional<int> handOver(StartOptions& options, RunningInstance& instance);

} // namespace quillory
