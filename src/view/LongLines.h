#pragma once

#include "text/TextSnapshot.h"
#include "view/LineChunks.h"

#include <memory>
#include <optional>
#include <vector>

namespace quillory {

/// The chunks of the long lines that were shown lately. They are made at the first look and follow
/// the edits from then on.
class LongLines
{
public:
    explicit LongLines(double unitWidth) : m_unitWidth(unitWidth) {}

    static bool isLong(TextRange content) { return content.length > LineChunks::longLine; }

    /// The chunks of the line whose \a content, the line without its break, is long.
    LineChunks& chunks(TextRange content) { return *entry(content).chunks; }

    /// Whether the first strong character among the line's first few thousand units is one of a
    /// script that is written from right to left.
    bool isRightToLeft(TextRange content, const TextSnapshot& text);

    /// \a text is the text after \a change.
    void followEdit(const TextChange& change, const TextSnapshot& text);

    void setUnitWidth(double unitWidth);
    /// Lets every cut be settled anew, for rows of another width.
    void unsettle();

private:
    struct Entry
    {
        TextOffset start;
        std::unique_ptr<LineChunks> chunks;
        std::optional<bool> rightToLeft;
    };

    Entry& entry(TextRange content);

    double m_unitWidth;
    std::vector<Entry> m_entries; ///< the one used last first
};

} // namespace quillory
