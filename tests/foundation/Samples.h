#pragma once

#include "foundation/PropertyList.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace quillory {

/// The sample files, which come with what independent readers made of them (NAME.json).
QStringList sampleNames(const QString& folder, const QString& pattern);
QByteArray sample(const QString& folder, const QString& name);
QJsonObject sampleVerdict(const QString& folder, const QString& name);

/// Whether \a list is what \a json describes. Data are {"$data": BASE64}, dates {"$date": SECONDS},
/// references {"$uid": INDEX}, reals without a decimal spelling {"$real": WORD}.
bool matches(const PropertyList& list, const QJsonValue& json);

/// For the message of a failed comparison.
void PrintTo(const PropertyList& list, std::ostream* out);

} // namespace quillory
