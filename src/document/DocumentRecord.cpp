#include "document/DocumentRecord.h"

#include "syntax/Definition.h"

#include <algorithm>

namespace quillory {

void DocumentRecord::takeDefinition(const Definition& definition)
{
    const auto flag = [&](const char* key) {
        return definition.flag(QLatin1StringView(key)).value_or(false);
    };
    const auto text = [&](const char* key) {
        return definition.string(QLatin1StringView(key)).value_or(QString());
    };
    definitionTitle = definition.title();
    canCloseTags = flag("canCloseTags");
    canUsePreview = flag("canUsePreview");
    canUsePDFPreview = flag("canUsePDFPreview");
    previewFormat = int(std::clamp<qint64>(
        definition.number(QLatin1StringView("previewFormat")).value_or(0), 0, 1));
    functionTitle = text("functionMenuTitle");
    mainExtension = text("mainExtension");
    isTextDefinition = definitionTitle == Definition::plainText;
    colorNumbers = flag("colorNumbers");
}

} // namespace quillory
