#include "syntax/SyntaxColouring.h"

#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"
#include "syntax/ColouringPreparation.h"

#include <QFileInfo>
#include <algorithm>

namespace quillory {

namespace {

/// What definitions list a file under: its extension, or its name where it has none, so that a
/// "Makefile" finds its definition; in lower case.
QString listedName(const QString& path)
{
    const QFileInfo file(path);
    const QString extension = file.suffix();
    return (extension.isEmpty() ? file.fileName() : extension).toLower();
}

/// The definition for the file at \a path.
qsizetype indexFor(const DefinitionList& definitions, const QString& path)
{
    const qsizetype index = definitions.indexForExtension(listedName(path));
    return index < 0 ? definitions.indexOfPlainText() : index;
}

DefinitionList definitionsOf(const ApplicationFolders& folders)
{
    DefinitionList definitions;
    definitions.load(folders.applicationSupport + QStringLiteral("/Definitions"),
                     folders.resources + QStringLiteral("/Definitions"),
                     folders.caches.isEmpty()
                         ? QString()
                         : folders.caches + QStringLiteral("/Definitions.plist"));
    return definitions;
}

} // namespace

SyntaxColouring::SyntaxColouring(const TextStorage& text, Overlay& overlay,
                                 const ApplicationFolders& folders, const UserDefaults& defaults)
    : m_text(text), m_folders(folders), m_defaults(defaults),
      m_page(text, overlay, m_state, m_roles)
{
    connect(&m_page, &PageColouring::limitReached, this, &SyntaxColouring::noteLimit);
    connect(&m_page, &PageColouring::pageReady, this, &SyntaxColouring::pageRecolour);
    // One edit may be many changes, and who hears of them first may still hold the old text.
    connect(&m_text, &TextStorage::edited, this, &SyntaxColouring::pageRecolourSoon);
}

void SyntaxColouring::setVisibleRangeSource(std::function<TextRange()> source)
{
    m_visibleRange = std::move(source);
}

// Definitions

bool SyntaxColouring::isPlainText() const
{
    return !definition() || definition()->title() == Definition::plainText;
}

void SyntaxColouring::load()
{
    m_prepared = {}; // by now it would be old
    m_definitions = definitionsOf(m_folders);
    m_contentFaults.clear();
}

void SyntaxColouring::prepareDefinitions(const QString& path)
{
    m_prepared = std::async(std::launch::async, [path, options = ColouringOptions::from(m_defaults),
                                                 &folders = m_folders] {
        Prepared prepared{path, options, definitionsOf(folders)};
        prepared.index = indexFor(prepared.definitions, path);
        prepared.faults = quillory::prepareColoring(
            prepared.definitions.arrangedObjects()[size_t(prepared.index)], options,
            prepared.state);
        return prepared;
    });
}

void SyntaxColouring::take(Prepared prepared)
{
    m_definitions = std::move(prepared.definitions);
    m_contentFaults = std::move(prepared.faults);
    m_state = std::move(prepared.state);
    selectDefinition(prepared.index);
    m_preparedWith = prepared.options;
    colourAnew();
}

void SyntaxColouring::loadDefinitions(const QString& path)
{
    if (m_prepared.valid()) {
        Prepared prepared = m_prepared.get();
        if (prepared.path == path) {
            take(std::move(prepared));
            return;
        }
    }
    load();
    if (path.isEmpty()) {
        // What it takes to colour comes with the settings of the window.
        const qsizetype index = m_definitions.indexOfDefault();
        selectDefinition(index < 0 ? m_definitions.indexOfPlainText() : index);
        return;
    }
    chooseAndColour(indexFor(m_definitions, path));
}

void SyntaxColouring::setDefinitionWithTitle(const QString& title)
{
    load();
    const qsizetype index = m_definitions.indexForTitle(title);
    chooseAndColour(index < 0 ? m_definitions.indexOfPlainText() : index);
}

void SyntaxColouring::followExtension(const QString& path)
{
    const qsizetype index = m_definitions.lastIndexForExtension(listedName(path));
    if (index >= 0)
        chooseAndColour(index);
}

void SyntaxColouring::selectDefinition(qsizetype index)
{
    if (index < 0 || size_t(index) >= m_definitions.arrangedObjects().size())
        return;
    m_definitions.setSelectionIndex(index);
    m_preparedWith.reset();
    m_denyColoring = false;
    Q_EMIT definitionSelected();
}

void SyntaxColouring::chooseAndColour(qsizetype index)
{
    selectDefinition(index);
    colourAnew();
}

void SyntaxColouring::colourAnew()
{
    removeAllColours();
    prepareColoring();
    pageRecolour();
}

void SyntaxColouring::applyDefinition()
{
    if (isPlainText())
        removeAllColours();
    else
        colourAnew();
}

std::vector<DefinitionFault> SyntaxColouring::faults() const
{
    std::vector<DefinitionFault> all = m_definitions.faults();
    all.insert(all.end(), m_contentFaults.begin(), m_contentFaults.end());
    all.insert(all.end(), m_limits.begin(), m_limits.end());
    return all;
}

void SyntaxColouring::noteLimit(const QString& key)
{
    const DefinitionFault limit{definition() ? definition()->title() : QString(), key,
                                tr("its pattern took too long and was given up")};
    if (std::find(m_limits.begin(), m_limits.end(), limit) == m_limits.end())
        m_limits.push_back(limit);
    tellOfFaults();
}

void SyntaxColouring::tellOfFaults()
{
    std::vector<DefinitionFault> all = faults();
    if (all == m_told)
        return;
    m_told = std::move(all);
    Q_EMIT faultsChanged();
}

// Preparation

void SyntaxColouring::prepareColoring()
{
    const ColouringOptions options = ColouringOptions::from(m_defaults);
    if (definition() && m_preparedWith != options) {
        m_contentFaults = quillory::prepareColoring(*definition(), options, m_state);
        m_preparedWith = options;
    }
    setColours();
    tellOfFaults();
}

void SyntaxColouring::loadThemes()
{
    m_themes.load(m_folders.applicationSupport + QStringLiteral("/Themes"),
                  m_defaults.value(keys::selectedTheme),
                  m_folders.resources + QStringLiteral("/Themes"));
}

void SyntaxColouring::setColours()
{
    setDenyColoring(true);
    loadThemes();
    const Theme* const theme = m_themes.selected();
    m_roles = theme ? theme->roles() : ColourRoles();
    m_page.reset();
    const std::optional<PlainColours> before = m_plainColours;
    m_plainColours = theme ? std::optional(theme->plainColours()) : std::nullopt;
    setDenyColoring(false);
    if (m_plainColours != before)
        Q_EMIT plainColoursChanged();
}

// Colours

bool SyntaxColouring::mayColour() const
{
    return !m_denyColoring && !isPlainText() && m_themes.selected();
}

void SyntaxColouring::recolourRange(TextRange range)
{
    if (mayColour())
        m_page.recolourRange(range);
}

ColouringJob SyntaxColouring::colouringJob() const
{
    return {m_text.snapshot(), m_state, m_roles, m_plainColours.value_or(PlainColours()),
            isPlainText()};
}

void SyntaxColouring::pageRecolourSoon()
{
    if (std::exchange(m_pagePending, true))
        return;
    const auto colour = [this] {
        if (m_pagePending)
            pageRecolour();
    };
    QMetaObject::invokeMethod(this, colour, Qt::QueuedConnection);
}

void SyntaxColouring::pageRecolour()
{
    m_pagePending = false;
    if (!mayColour() || !m_visibleRange)
        return;
    const TextRange visible = m_visibleRange();
    if (!visible.isEmpty())
        m_page.recolourPage(visible);
}

} // namespace quillory
