#pragma once

#include "foundation/PropertyList.h"
#include "syntax/DefinitionFault.h"

#include <optional>
#include <vector>

namespace quillory {

/// What describes one language: a dictionary from a file that anybody may have written. A value of
/// a kind that its key cannot have counts as absent, and is a fault.
class Definition
{
public:
    /// The title of the definition that stands for plain text, and serves where no other does.
    static constexpr QLatin1StringView plainText{"Text"};

    /// \a path is where \a dictionary was read from.
    Definition(PropertyList dictionary, QString path);

    /// One of which only the keys that tell definitions apart are known; the others are read from
    /// \a path, or from the \a copy of that (see DefinitionCopy.h), when the first of them is asked
    /// for.
    static Definition ofHead(PropertyList head, QString path, QString copy);
    PropertyList head() const;

    /// Its name; of a definition without one that of its file, without the extension.
    const QString& title() const { return m_title; }
    /// Empty for one that no file holds.
    const QString& path() const { return m_path; }
    /// Of file names, in lower case, without the dot.
    QStringList extensions() const;
    /// Meant for new documents.
    bool isDefault() const;

    std::optional<bool> flag(QLatin1StringView key) const;
    std::optional<qint64> number(QLatin1StringView key) const;
    std::optional<QString> string(QLatin1StringView key) const;
    /// The texts of an array.
    std::optional<QStringList> words(QLatin1StringView key) const;
    /// The value whatever its kind; false where it is absent.
    PropertyList value(QLatin1StringView key) const { return dictionaryWith(key)[QString(key)]; }

    /// Of the keys that tell definitions apart: "title", "extensions" and "isDefault".
    std::vector<DefinitionFault> identityFaults() const;
    /// Of all other keys. O(length of its word lists).
    std::vector<DefinitionFault> contentFaults() const;
    DefinitionFault fault(QLatin1StringView key, const QString& problem) const;

private:
    enum class Kind
    {
        Flag,
        Number,
        String,
        Words,
        Array
    };
    struct Key
    {
        const char* name;
        Kind kind;
    };
    static const Key identityKeys[];
    static const Key contentKeys[];

    void check(const Key& key, std::vector<DefinitionFault>& faults) const;
    const PropertyList& dictionaryWith(QLatin1StringView key) const;

    mutable PropertyList m_dictionary;
    mutable bool m_isHead = false; ///< the dictionary holds nothing but that
    QString m_path;
    QString m_copy;
    QString m_title;
};

} // namespace quillory
