#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace quillory {

/// Gives a variable of the environment a value while it lives.
class EnvironmentVariable
{
public:
    EnvironmentVariable(const char* name, const QByteArray& value)
        : m_name(name), m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~EnvironmentVariable()
    {
        if (m_before.isNull())
            qunsetenv(m_name);
        else
            qputenv(m_name, m_before);
    }
    Q_DISABLE_COPY_MOVE(EnvironmentVariable)

private:
    const char* m_name;
    QByteArray m_before;
};

} // namespace quillory
