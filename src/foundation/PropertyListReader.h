#pragma once

#include "foundation/PropertyList.h"
#include "foundation/Result.h"

#include <QByteArray>
#include <QString>

namespace quillory {

/// The forms in which property lists are stored, by the numbers that the platform gives them.
enum class PropertyListForm
{
    openStep = 1,
    xml = 100,
    binary = 200
};

struct StoredPropertyList
{
    PropertyList list;
    PropertyListForm form;
};

/// Reads a property list in any of the forms, which \a bytes themselves tell. The readers of each
/// form say what they accept.
Result<StoredPropertyList> readPropertyList(const QByteArray& bytes);

/// The same for a file; the failure names it.
Result<StoredPropertyList> readPropertyListFile(const QString& path);

} // namespace quillory
