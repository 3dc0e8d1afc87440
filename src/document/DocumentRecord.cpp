#include "document/DocumentRecord.h"

#include "syntax/Definition.h"

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
    functionTitle = text("functionMenuTitle");
    mainExtension = text("mainExtension");
    isTextDefinition = definitionTitle == Definition::plainText;
    colorNumbers = flag("colorNumbers");
}

} // namespace quillory
