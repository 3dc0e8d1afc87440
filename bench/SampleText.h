#pragma once

#include <QByteArray>

namespace quillory::bench {

/// About \a size bytes of lines of words, the same ones at every run.
QByteArray sampleText(qsizetype size);

/// The same with a word of two- and three-byte characters in every line.
QByteArray mixedText(qsizetype size);

} // namespace quillory::bench
