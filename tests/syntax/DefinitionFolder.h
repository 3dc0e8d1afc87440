#pragma once

#include "foundation/PropertyList.h"
#include "foundation/XmlPropertyListWriter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory::test {

/// A folder of property lists of its own.
struct DefinitionFolder
{
    QTemporaryDir folder;

    QString path(const QString& name = {}) const { return folder.filePath(name); }

    void writeBytes(const QString& name, const QByteArray& bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    }
    void write(const QString& name, const PropertyList& list) const
    {
        writeBytes(name, *writeXmlPropertyList(list));
    }
};

} // namespace quillory::test
