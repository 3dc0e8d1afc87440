#pragma once

#include <QByteArray>
#include <QString>
#include <exception>

namespace quillory {

/// What a command throws that the text view refuses.
class CommandException : public std::exception
{
public:
    CommandException(const QString& name, const QString& reason)
        : m_name(name), m_reason(reason), m_what((name + QStringLiteral(": ") + reason).toUtf8())
    {}

    const QString& name() const { return m_name; }     ///< of the operation
    const QString& reason() const { return m_reason; } ///< for the user

    /// Name and reason, in UTF-8.
    const char* what() const noexcept override { return m_what.constData(); }

private:
    QString m_name;
    QString m_reason;
    QByteArray m_what;
};

} // namespace quillory
