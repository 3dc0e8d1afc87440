#include "view/LineNumberMarker.h"

namespace quillory {

namespace {

const QString lineKey = QStringLiteral("line");

} // namespace

PropertyList::Dictionary LineNumberMarker::encode() const
{
    return {{lineKey, lineNumber.value()}};
}

LineNumberMarker LineNumberMarker::decode(const PropertyList& archive)
{
    const PropertyList::Array inOrder = archive.toArray();
    const qint64 line = (inOrder.isEmpty() ? archive[lineKey] : inOrder.front()).toInteger();
    return {LineIndex(std::max<qint64>(0, line))};
}

} // namespace quillory
