#include "view/LongestLine.h"

#include "text/LineMetrics.h"
#include "text/TextReader.h"

#include <algorithm>

namespace quillory {

namespace {

// So much of a line tells its direction.
constexpr TextOffset directionReach = 4096;

bool isRightToLeftLine(const TextSnapshot& text, LineIndex line)
{
    const TextRange content = text.lineContent(line);
    return text.string({content.location, std::min(content.length, directionReach)})
        .isRightToLeft();
}

} // namespace

void LongestLine::follow(const TextSnapshot& text)
{
    if (text.isSameTree(m_text))
        return;
    m_text = text;
    m_rightToLeft = isRightToLeftLine(text, text.lineAt(offsetInLongestLine(text)));
}

TextOffset offsetInLongestLine(const TextSnapshot& text)
{
    const TextOffset longest = text.longestLine();
    if (longest == 0)
        return 0;
    const TextNode* node = text.root().data();
    TextOffset start = 0;   // of the node
    TextOffset reached = 0; // units before the node, of the line that goes on into it
    while (node->height > 0) {
        const auto* branch = static_cast<const TextBranch*>(node);
        for (int i = 0; i < branch->count; ++i) {
            const TextMetrics& metrics = branch->children[size_t(i)]->metrics;
            if (reached + metrics.firstLine >= longest || metrics.longestLine() >= longest) {
                node = branch->children[size_t(i)].data();
                break;
            }
            reached = metrics.lastLine + (metrics.breaks > 0 ? 0 : reached);
            start += metrics.units;
        }
    }
    TextReader reader(text);
    for (; start < text.length() && reached < longest; ++start)
        reached = isLineBreak(reader.at(start)) ? 0 : reached + 1;
    return start;
}

} // namespace quillory
