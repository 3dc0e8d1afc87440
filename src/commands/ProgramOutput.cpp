#include "commands/ProgramOutput.h"

#include "text/TextBuilder.h"
#include "text/TextDecoder.h"

#include <QStringDecoder>

namespace quillory {

namespace {

constexpr qsizetype pieceLength = 1 << 16; // bytes

TextSnapshot decodedLeniently(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    TextBuilder text;
    for (qsizetype start = 0; start < bytes.size(); start += pieceLength) {
        const QString piece = decoder(
            QByteArrayView(bytes).sliced(start, std::min(pieceLength, bytes.size() - start)));
        text.append(piece);
    }
    return text.finish();
}

} // namespace

TextSnapshot textOfOutput(const QByteArray& bytes, StringEncoding encoding)
{
    const ByteBuffer buffer(bytes);
    std::optional<TextSnapshot> text = decode(buffer, StringEncoding::utf8);
    if (!text && encoding != StringEncoding::none && encoding != StringEncoding::utf8)
        text = decode(buffer, encoding);
    return text ? *std::move(text) : decodedLeniently(bytes);
}

} // namespace quillory
