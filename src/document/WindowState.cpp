#include "document/WindowState.h"

#include "document/Document.h"

namespace quillory {

namespace {

const QString selectedDefinition = QStringLiteral("selectedDefinition");
const QString selectedEncoding = QStringLiteral("selectedEncoding");
const QString lineBreakFormat = QStringLiteral("lbFormat");
const QString baseAddress = QStringLiteral("baseURL");

} // namespace

PropertyList::Dictionary willEncodeRestorableState(Document& document)
{
    const DefinitionList& definitions = document.syntaxColouring().definitions();
    return {{selectedDefinition, qint64(definitions.selectionIndex())},
            {selectedEncoding, qint64(document.encodingsArrayController().selectionIndex())},
            {lineBreakFormat, document.record().lbFormat},
            {baseAddress, document.record().baseURL}};
}

void didDecodeRestorableState(Document& document, const PropertyList::Dictionary& state)
{
    const auto restore = [&](const QString& key, auto&& apply) {
        if (const auto found = state.find(key); found != state.end())
            apply(*found);
    };
    SyntaxColouring& colouring = document.syntaxColouring();
    EncodingList& encodings = document.encodingsArrayController();
    document.loadEncodings();
    restore(selectedDefinition, [&](const PropertyList& value) {
        if (value.toInteger() == colouring.definitions().selectionIndex())
            return;
        colouring.selectDefinition(value.toInteger());
        colouring.applyDefinition();
    });
    restore(selectedEncoding, [&](const PropertyList& value) {
        if (value.toInteger() >= 0 && size_t(value.toInteger()) < encodings.entries().size())
            encodings.selectIndex(value.toInteger());
    });
    restore(lineBreakFormat, [&](const PropertyList& value) {
        document.record().lbFormat = int(value.toInteger());
    });
    restore(baseAddress,
            [&](const PropertyList& value) { document.record().baseURL = value.toString(); });
    // Encodings and themes are arranged whenever they are looked at.
    colouring.rearrangeDefinitions();
    Q_EMIT document.recordChanged();
}

} // namespace quillory
