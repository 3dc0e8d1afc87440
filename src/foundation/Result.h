#pragma once

#include <QString>
#include <utility>
#include <variant>

namespace quillory {

/// Why something could not be read or written, in words for the user.
struct Failure
{
    QString message;
    qsizetype line = 0;   ///< from 1; 0 where the input is no text or the place is not known
    qsizetype column = 0; ///< in UTF-16 code units, from 1

    /// The message, after the place where there is one.
    QString description() const
    {
        if (line <= 0)
            return message;
        return QStringLiteral("Line %1, column %2: %3").arg(line).arg(column).arg(message);
    }
};

/// A value, or why there is none. Asking for the one that is not there is a programmer's error.
template<class T>
class [[nodiscard]] Result
{
public:
    // Both convert implicitly, so that a function can return either.
    Result(T value) : m_content(std::move(value)) {}
    Result(Failure failure) : m_content(std::move(failure)) {}

    explicit operator bool() const { return std::holds_alternative<T>(m_content); }

    const T& operator*() const& { return std::get<T>(m_content); }
    T operator*() && { return std::get<T>(std::move(m_content)); }
    const T* operator->() const { return &std::get<T>(m_content); }

    const Failure& failure() const { return std::get<Failure>(m_content); }

private:
    std::variant<T, Failure> m_content;
};

} // namespace quillory
