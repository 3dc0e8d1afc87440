#include "syntax/ColouringState.h"

#include "syntax/regex/ICUPattern.h"

namespace quillory {

ColouringState forAnotherThread(const ColouringState& state)
{
    ColouringState copy = state;
    for (auto* const pattern : {&copy.firstStringPattern, &copy.secondStringPattern}) {
        if (*pattern)
            *pattern = std::make_shared<ICUPattern>(**pattern);
    }
    return copy;
}

} // namespace quillory
