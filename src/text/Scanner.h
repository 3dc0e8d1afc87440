#pragma once

#include "text/CharacterSet.h"
#include "text/TextReader.h"

#include <QString>

namespace quillory {

/// Reads through a text from a location that every successful step moves on. Before a step the
/// characters to be skipped are passed over; a step that fails moves nothing. Strings are compared
/// code unit by code unit, and so with regard to case.
class Scanner
{
public:
    explicit Scanner(TextSnapshot text) : m_reader(std::move(text)) {}

    const TextSnapshot& text() const { return m_reader.text(); }

    /// In UTF-16 code units from the text's beginning; its length is the end. A location outside
    /// is pulled into the text.
    TextOffset scanLocation() const { return m_location; }
    void setScanLocation(TextOffset location);

    /// At first whitespaceAndNewline.
    const CharacterSet& charactersToBeSkipped() const { return m_skipped; }
    void setCharactersToBeSkipped(const CharacterSet& characters) { m_skipped = characters; }

    /// True when nothing but characters to be skipped is left.
    bool isAtEnd();

    // Each answers false when it scanned nothing. Otherwise the stretch that it scanned is in
    // scannedRange(), and the location is behind it.

    /// \a string itself.
    bool scanString(QStringView string);

    /// All up to \a string, or to the end where it does not occur.
    bool scanUpToString(QStringView string);

    /// All characters that lie side by side in \a set.
    bool scanCharactersFromSet(const CharacterSet& set);

    /// All up to the first character in \a set, or to the end.
    bool scanUpToCharactersFromSet(const CharacterSet& set);

    /// What the last successful step scanned, without the characters that it skipped.
    TextRange scannedRange() const { return m_scanned; }
    QString scannedString() const { return text().string(m_scanned); }

private:
    /// The first offset from \a from on whose character is in \a set, or is not.
    TextOffset endOfRun(TextOffset from, const CharacterSet& set, bool inSet);
    TextOffset afterSkipped() { return endOfRun(m_location, m_skipped, true); }
    bool take(TextOffset begin, TextOffset end);

    TextReader m_reader;
    CharacterSet m_skipped = CharacterSet::whitespaceAndNewline();
    TextOffset m_location = 0;
    TextRange m_scanned;
};

} // namespace quillory
