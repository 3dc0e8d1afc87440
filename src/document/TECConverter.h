#pragma once

#include "text/StreamDecoder.h"
#include "text/StreamEncoder.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace quillory {

/// Converts bytes from one encoding to another in pieces of 256 bytes, so that it takes no memory
/// but for the result.
class TECConverter
{
public:
    /// Nothing where one of the two is not known, or cannot be converted in pieces.
    static std::optional<TECConverter> initWithEncoding(StringEncoding from, StringEncoding to);
    /// The same to UTF-16.
    static std::optional<TECConverter> initWithEncoding(StringEncoding from);

    /// All of \a bytes; where one of them is no text, or a character has no place in the encoding
    /// to convert to, what comes before. A byte-order mark leads where that encoding has one.
    QByteArray convert(QByteArrayView bytes);
    /// The text that it comes to.
    QString convertToString(QByteArrayView bytes);

private:
    TECConverter(const EncodingInfo& from, const EncodingInfo& to)
        : m_to(to.encoding), m_decoder(from), m_encoder(to)
    {}

    StringEncoding m_to;
    StreamDecoder m_decoder;
    StreamEncoder m_encoder;
};

} // namespace quillory
