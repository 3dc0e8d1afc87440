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
///
/// The file is read when the list is first looked at, so that it does not delay a window.
class EncodingList
{
public:
    /// Replaces the entries by those of the property list at \a path; none when it cannot be read.
    void load(const QString& path);

    const std::vector<EncodingEntry>& entries() const;
    std::vector<EncodingEntry> arranged() const;

    /// Selects the first entry with \a number and shows all. Where there is none, index 0 is
    /// selected and the filter stays, so that nothing is shown until a selection succeeds.
    void selectNumber(StringEncoding number);

    /// Selects an arranged entry; an index outside selects nothing.
    void selectIndex(qsizetype index);
    qsizetype selectionIndex() const;
    std::optional<EncodingEntry> selected() const;

private:
    void settle() const;
    void readEntries() const;

    mutable std::optional<QString> m_unread;        ///< the file, until it has been read
    mutable std::optional<StringEncoding> m_wanted; ///< the number to select, until it was sought
    mutable std::vector<EncodingEntry> m_entries;
    mutable std::optional<StringEncoding> m_filter;
    mutable qsizetype m_selection = -1;
};

} // namespace quillory
