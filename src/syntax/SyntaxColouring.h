#pragma once

#include "syntax/ColouringJob.h"
#include "syntax/ColouringPreparation.h"
#include "syntax/DefinitionList.h"
#include "syntax/PageColouring.h"
#include "syntax/Theme.h"

#include <functional>
#include <future>

namespace quillory {

class UserDefaults;
struct ApplicationFolders;

/// The definition of one document and the theme, and what the two make of the page that is seen.
///
/// Colours follow the text by themselves (pageRecolourSoon). Plain text is never coloured.
class SyntaxColouring : public QObject
{
    Q_OBJECT

public:
    /// All of the arguments outlive this.
    SyntaxColouring(const TextStorage& text, Overlay& overlay, const ApplicationFolders& folders,
                    const UserDefaults& defaults);

    /// Where the range that is seen is asked for. An empty answer, as long as there is no window,
    /// colours nothing.
    void setVisibleRangeSource(std::function<TextRange()> source);

    // Definitions

    const DefinitionList& definitions() const { return m_definitions; }
    /// The selected definition; null until one is.
    const Definition* definition() const { return m_definitions.selected(); }
    /// True also while no definition is selected.
    bool isPlainText() const;

    /// Reads the definitions anew and chooses the one for the file at \a path, which is empty for a
    /// document that was never saved: the first that lists the file's extension (the name of a file
    /// without one), or the one for new documents; else that for plain text.
    void loadDefinitions(const QString& path);
    /// Begins on another thread what the next loadDefinitions() does for the file at \a path, which
    /// is not empty; for one who has other things to make up meanwhile. To be called before any
    /// definition is chosen.
    void prepareDefinitions(const QString& path);
    /// Reads the definitions anew and chooses the one with \a title; where there is none, that for
    /// plain text.
    void setDefinitionWithTitle(const QString& title);
    /// Chooses the last definition that lists the extension of \a path; where none does, the choice
    /// stays.
    void followExtension(const QString& path);
    /// Selects an arranged definition without applying it; an index outside changes nothing.
    void selectDefinition(qsizetype index);
    /// Sorts the definitions anew; the selected one stays selected.
    void rearrangeDefinitions() { m_definitions.rearrangeObjects(); }
    /// Colours anew by the selected definition.
    void applyDefinition();

    /// What is wrong with the definitions: with those that could not be read, and with the one that
    /// is selected.
    std::vector<DefinitionFault> faults() const;

    // Preparation

    /// Takes over the selected definition, the user defaults and the theme.
    void prepareColoring();
    void loadThemes();
    void setColours();
    const ColouringState& state() const { return m_state; }
    const ThemeList& themes() const { return m_themes; }
    const ColourRoles& roles() const { return m_roles; }
    /// Of the selected theme; none where there is no theme at all.
    const std::optional<PlainColours>& plainColours() const { return m_plainColours; }

    // Colours

    /// While set, nothing is coloured.
    bool denyColoring() const { return m_denyColoring; }
    void setDenyColoring(bool deny) { m_denyColoring = deny; }

    void removeAllColours() { m_page.removeAllColours(); }
    void removeColoursFromRange(TextRange range) { m_page.removeColoursFromRange(range); }
    void setColour(ColourRole role, TextRange range) { m_page.setColour(role, range); }
    /// Colours the lines of \a range. O(their length).
    void recolourRange(TextRange range);
    /// For the whole text, as it is now.
    ColouringJob colouringJob() const;
    /// Colours the lines that are seen; long ones a little later, see PageColouring.
    void pageRecolour();
    /// The same once the event at hand is done with, and before anything is painted; asked for any
    /// number of times, it is done once.
    void pageRecolourSoon();

Q_SIGNALS:
    /// Another definition is selected, or the same one was read anew.
    void definitionSelected();
    void plainColoursChanged();
    void faultsChanged();

private:
    /// What another thread made for a file.
    struct Prepared
    {
        QString path;
        ColouringOptions options;
        DefinitionList definitions;
        qsizetype index = -1; ///< of the one for the file
        ColouringState state{};
        std::vector<DefinitionFault> faults{};
    };

    void load();
    void take(Prepared prepared);
    void chooseAndColour(qsizetype index);
    void colourAnew();
    bool mayColour() const;
    void noteLimit(const QString& key);
    void tellOfFaults();

    const TextStorage& m_text;
    const ApplicationFolders& m_folders;
    const UserDefaults& m_defaults;
    std::function<TextRange()> m_visibleRange;
    DefinitionList m_definitions;
    ThemeList m_themes;
    ColouringState m_state;
    std::future<Prepared> m_prepared;
    std::optional<ColouringOptions> m_preparedWith; ///< by these the selected definition was read
    ColourRoles m_roles;
    std::optional<PlainColours> m_plainColours;
    PageColouring m_page;
    std::vector<DefinitionFault> m_contentFaults;
    std::vector<DefinitionFault> m_limits; ///< each said once
    std::vector<DefinitionFault> m_told;
    bool m_denyColoring = false;
    bool m_pagePending = false;
};

} // namespace quillory
