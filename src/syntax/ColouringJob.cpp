#include "syntax/ColouringJob.h"

#include "syntax/RecolouringEngine.h"

namespace quillory {

ColouredText ColouringJob::coloured(TextRange range) const
{
    ColouredText result{text, {}, roles, plain};
    if (!isPlainText)
        result.runs = recoloured(text, range, state, roles).runs;
    return result;
}

} // namespace quillory
