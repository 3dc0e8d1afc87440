#pragma once

#include "syntax/Definition.h"

namespace quillory {

/// The definitions that a document can be given, sorted by title (code units), and the selected
/// one. Definitions with the same title stand in the order of their files.
class DefinitionList
{
public:
    /// Reads the definitions below \a folder. \a shipped is the folder of the definitions that come
    /// with the program, of which the one for plain text is used where \a folder has none; where
    /// it is missing there too, one that holds nothing is. Nothing is selected afterwards.
    /// \a heads: see DefinitionHeads.
    void load(const QString& folder, const QString& shipped, const QString& heads = {});

    const std::vector<Definition>& arrangedObjects() const { return m_definitions; }
    /// Sorts them anew; the selected one stays selected.
    void rearrangeObjects();

    /// Files that are no dictionaries, and wrong titles and extensions.
    const std::vector<DefinitionFault>& faults() const { return m_faults; }

    // Indexes into the arranged definitions; -1 where there is none.

    /// The first that lists \a extension, which is compared as it is.
    qsizetype indexForExtension(const QString& extension) const;
    /// The last that lists it.
    qsizetype lastIndexForExtension(const QString& extension) const;
    /// The first that is meant for new documents.
    qsizetype indexOfDefault() const;
    qsizetype indexForTitle(QStringView title) const;
    /// That of plain text, which there always is once a list was loaded.
    qsizetype indexOfPlainText() const { return indexForTitle(QString(Definition::plainText)); }

    /// An index outside selects nothing.
    void setSelectionIndex(qsizetype index);
    qsizetype selectionIndex() const { return m_selection; }
    /// Null where nothing is selected; good until the next load.
    const Definition* selected() const;

private:
    void addPlainText(const QString& shipped);

    std::vector<Definition> m_definitions;
    std::vector<DefinitionFault> m_faults;
    qsizetype m_selection = -1;
};

} // namespace quillory
