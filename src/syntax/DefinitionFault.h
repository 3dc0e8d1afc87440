#pragma once

#include <QString>

namespace quillory {

/// What is wrong with a definition. It never keeps a document from opening: the key counts as
/// absent, the file as not there.
struct DefinitionFault
{
    QString definition; ///< its title, or its file where it has none
    QString key;        ///< empty where the fault is the whole file's
    QString problem;    ///< in words for the user

    /// One line for the user.
    QString description() const;
    bool operator==(const DefinitionFault&) const = default;
};

} // namespace quillory
