// Whatever a reader accepts can be written in binary form, and in XML unless XML cannot hold it,
// and reads back as the same list.

#include "foundation/BinaryPropertyListWriter.h"
#include "foundation/OpenStepPropertyListReader.h"
#include "foundation/PropertyListReader.h"
#include "foundation/PropertyListText.h"
#include "foundation/XmlPropertyListReader.h"
#include "foundation/XmlPropertyListWriter.h"

#include <cstdlib>

using namespace quillory;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void rewrite(const PropertyList& list)
{
    const auto binary = writeBinaryPropertyList(list);
    require(bool(binary));
    const auto fromBinary = readPropertyList(*binary);
    require(fromBinary && fromBinary->form == PropertyListForm::binary);
    require(fromBinary->list == list);

    const auto xml = writeXmlPropertyList(list);
    // Shared values can make megabytes of a few bytes, which differ from small ones in size alone.
    if (!xml || xml->size() > 200'000)
        return;
    const auto fromXml = readPropertyList(*xml);
    require(fromXml && fromXml->form == PropertyListForm::xml);
    // Not the same list: dates lose fractions of seconds, and a dictionary may turn out to be a
    // Uid.
    const auto again = writeXmlPropertyList(fromXml->list);
    require(again && *again == *xml);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    if (const auto read = readPropertyList(bytes))
        rewrite(read->list);
    // Those that the facade would not choose must bear the text all the same.
    if (const auto text = propertyListText(bytes)) {
        if (const auto read = readXmlPropertyList(*text))
            rewrite(*read);
        if (const auto read = readOpenStepPropertyList(*text))
            rewrite(*read);
    }
    return 0;
}
