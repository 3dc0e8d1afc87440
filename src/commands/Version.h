#pragma once

#include <QString>
#include <QStringList>
#include <compare>
#include <optional>
#include <vector>

namespace quillory {

/// A version such as "1.10", "2.0.1-beta.2" or "v3", ordered as Semantic Versioning 2.0.0
/// (semver.org, item 11) has it: by its numbers, of which any count may be there and the missing
/// ones are 0; one with a pre-release part before the same one without.
class Version
{
public:
    /// None where \a text is no version.
    static std::optional<Version> from(const QString& text);

    bool isPreRelease() const { return !m_preRelease.isEmpty(); }

    std::strong_ordering operator<=>(const Version& other) const;
    bool operator==(const Version& other) const { return std::is_eq(*this <=> other); }

private:
    std::vector<quint32> m_numbers;
    QStringList m_preRelease; ///< its parts between dots
};

} // namespace quillory
