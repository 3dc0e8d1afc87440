#include "syntax/regex/ICUException.h"

namespace quillory {

ICUException::ICUException(const QString& name, const QString& reason, UErrorCode status)
    : m_name(name), m_reason(reason), m_what((name + u": " + reason).toUtf8()), m_status(status)
{}

void ICUException::check(UErrorCode status, QLatin1StringView name, QLatin1StringView reason)
{
    if (U_FAILURE(status))
        throw ICUException(name,
                           QString(reason).replace(QLatin1StringView("%s"),
                                                   QLatin1StringView(u_errorName(status))),
                           status);
}

} // namespace quillory
