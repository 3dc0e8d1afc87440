#pragma once

#include "text/ByteBuffer.h"
#include "text/StringEncoding.h"

#include <QString>
#include <QVariantMap>
#include <optional>

namespace quillory {

/// How numbers are grouped in the statistics.
struct NumberFormatter
{
    int behaviour = 1040; ///< formatter behaviour 10.4
    QString format = QStringLiteral("#,##0");
};

class Definition;

/// The fields of a document that carry state, with the values that a fresh one has.
struct DocumentRecord
{
    /// The file's bytes as read; of a native archive the stored text, of a property list in binary
    /// or OpenStep form its XML rendering. Absent for a new document. Once they are decoded, only
    /// text that refers to them keeps them in memory.
    std::optional<ByteBuffer> dataFromFile;
    /// In which the bytes are decoded and the file is written back.
    StringEncoding encoding = StringEncoding::none;
    int lbFormat = 0; ///< see LineBreaks.h; 0 until the document is opened
    QString definitionTitle;
    QString functionTitle; ///< the definition's word for what one can navigate to
    QString mainExtension = QStringLiteral("txt");
    QString baseURL;                 ///< of the preview
    bool isQuilloryDocument = false; ///< a native archive
    bool isPlistFile = false;
    /// The form that a property list had on disk: 0 text kept as it is, 1 OpenStep, 2 XML, 3
    /// binary.
    int plistKind = 0;
    bool isTextDefinition = false;
    bool colorNumbers = false;
    bool canUsePreview = true;
    bool canUsePDFPreview = false;
    int previewFormat = 0; ///< see PreviewSource
    bool canCloseTags = false;
    bool isNavigationAvailable = true;
    QVariantMap currentTypingAttributes;
    NumberFormatter thousandFormatter;
    QLatin1StringView windowsLineEnding{"\r\n"};
    QLatin1StringView macLineEnding{"\r"};
    QLatin1StringView unixLineEnding{"\n"};
    /// The digits of the number of U+23CE, not the character.
    QString neewLineSymbolString = QString::number(9166);

    /// Copies what \a definition says of the documents that it is selected for.
    void takeDefinition(const Definition& definition);
};

} // namespace quillory
