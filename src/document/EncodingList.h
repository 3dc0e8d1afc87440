#pragma once

#include "text/StringEncoding.h"

#include <QString>
#include <optional>
#include <vector>

namespace quillory {

/// An encoding that the user may choose.
struct EncodingEntry
{
    StringEncoding number = StringEncoding::none;
    QString name; ///< for display
};

/// The encodings that a document offers, with a filter and a selection. The selection is an index
/// into the arranged entries: those that the filter lets through, in the list's order.
class EncodingList
{
public:
    /// Replaces the entries by those of the property list at \a path; none when it cannot be read.
    void load(const QString& path);

    const std::vector<EncodingEntry>& entries() const { return m_entries; }
    std::vector<EncodingEntry> arranged() const;

    /// Selects the first entry with \a number and shows all. Where there is none, index 0 is
    /// selected and the filter stays, so that nothing is shown until a selection succeeds.
    void selectNumber(StringEncoding number);

    /// Selects an arranged entry; an index outside selects nothing.
    void selectIndex(qsizetype index) { m_selection = index; }
    qsizetype selectionIndex() const { return m_selection; }
    std::optional<EncodingEntry> selected() const;

private:
    std::vector<EncodingEntry> m_entries;
    std::optional<StringEncoding> m_filter;
    qsizetype m_selection = -1;
};

} // namespace quillory
