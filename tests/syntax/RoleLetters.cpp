#include "syntax/RoleLetters.h"

#include "syntax/StringLiterals.h"

namespace quillory::test {

std::vector<ColourRole> painted(const Recolouring& result, TextRange range)
{
    std::vector<ColourRole> roles(size_t(range.length), ColourRole::none);
    for (const RoleRun& run : result.runs) {
        for (TextOffset i = run.range.location; i < run.range.end(); ++i) {
            if (range.contains(i))
                roles[size_t(i - range.location)] = run.role;
        }
    }
    return roles;
}

std::string letters(const std::vector<ColourRole>& roles)
{
    std::string result;
    for (const ColourRole role : roles)
        result.push_back(".CNIkobcpte!fmavSA#"[size_t(role)]);
    return result;
}

std::vector<TextOffset> pageStarts(const TextSnapshot& text, const ColouringState& state)
{
    const QString string = text.string();
    std::vector<TextOffset> starts;
    for (qsizetype line = 0; line < text.lineCount(); ++line)
        starts.push_back(text.lineStart(LineIndex(line)));
    const std::u16string units = u'\n' + string.toStdU16String();
    for (const StringLiterals& literals :
         {firstStringLiterals(units, state), secondStringLiterals(units, state)}) {
        for (const StringLiteral& literal : literals.found) {
            std::erase_if(starts, [&](TextOffset start) {
                return literal.begin - 1 < start && start < literal.end - 1;
            });
        }
    }
    return starts;
}

} // namespace quillory::test
