#include "app/Preloading.h"

#include "syntax/regex/ICUPattern.h"

#include <fontconfig/fontconfig.h>

namespace quillory {

Preloading::Preloading()
    : m_fonts([] { FcInit(); }),
      m_patterns([] { ICUPattern::patternWithString(QStringLiteral("\\w")); })
{}

} // namespace quillory
