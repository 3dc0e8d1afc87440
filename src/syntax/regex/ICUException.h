#pragma once

#include <QByteArray>
#include <QString>
#include <exception>
#include <unicode/utypes.h>

namespace quillory {

/// What every failure of a regular expression is thrown as.
class ICUException : public std::exception
{
public:
    ICUException(const QString& name, const QString& reason, UErrorCode status = U_ZERO_ERROR);

    /// Throws the exception \a name when \a status is an error. "%s" in \a reason stands for ICU's
    /// name of the status.
    static void check(UErrorCode status, QLatin1StringView name, QLatin1StringView reason);

    /// "Invalid Pattern Exception", "Invalid String Exception", "Copy Exception",
    /// "Pattern Exception", "Find Exception", "Split Exception" or "Assertion Exception".
    const QString& name() const { return m_name; }
    const QString& reason() const { return m_reason; }

    /// The error that ICU reported; U_ZERO_ERROR where it was none of ICU's.
    UErrorCode status() const { return m_status; }

    /// The expression was given up for the stack or the time that it wanted. Callers that only want
    /// to know whether something matches take it for no match; asking again costs as much again.
    bool isLimit() const
    {
        return m_status == U_REGEX_STACK_OVERFLOW || m_status == U_REGEX_TIME_OUT;
    }

    /// Name and reason, in UTF-8.
    const char* what() const noexcept override { return m_what.constData(); }

private:
    QString m_name;
    QString m_reason;
    QByteArray m_what;
    UErrorCode m_status;
};

} // namespace quillory
