#pragma once

#include <utility>

namespace quillory {

/// What a call to the system came to: a value, or the errno that says why there is none.
template<class T>
class [[nodiscard]] FileResult
{
public:
    // Converts implicitly, so that a function can return the bare value.
    FileResult(T value) : m_value(std::move(value)) {}

    /// \a error is an errno, not 0.
    static FileResult failed(int error)
    {
        FileResult result{T()};
        result.m_error = error;
        return result;
    }

    explicit operator bool() const { return m_error == 0; }
    /// The errno; 0 when the call went well.
    int error() const { return m_error; }

    /// The value; a default-made one after a failure.
    const T& operator*() const& { return m_value; }
    T& operator*() & { return m_value; }
    T&& operator*() && { return std::move(m_value); }
    const T* operator->() const { return &m_value; }
    T* operator->() { return &m_value; }

private:
    T m_value;
    int m_error = 0;
};

struct Nothing
{};

/// What a call without a value came to.
using FileStatus = FileResult<Nothing>;

} // namespace quillory
