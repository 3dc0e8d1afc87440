#include "commands/CommandItem.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>
#include <algorithm>
#include <limits>

namespace quillory {

namespace {

std::optional<QString> textOf(const PropertyList& dictionary, const char* key)
{
    const PropertyList value = dictionary[QString::fromLatin1(key)];
    const auto* const text = value.as<QString>();
    return text ? std::optional(*text) : std::nullopt;
}

/// False for what is neither number nor truth value. A form of property lists knows only texts.
PropertyList numberOf(const PropertyList& dictionary, const char* key)
{
    PropertyList value = dictionary[QString::fromLatin1(key)];
    const bool isNumber = std::visit(
        [](const auto& held) {
            using T = std::decay_t<decltype(held)>;
            return std::is_arithmetic_v<T> || std::is_same_v<T, QString>;
        },
        value.value());
    return isNumber ? value : PropertyList();
}

} // namespace

CommandItem CommandItem::from(const PropertyList& dictionary)
{
    const auto flag = [&](const char* key) { return numberOf(dictionary, key).toBool(); };
    CommandItem item;
    item.kind = CommandKind(std::clamp<qint64>(numberOf(dictionary, "kind").toInteger(),
                                               std::numeric_limits<int>::min(),
                                               std::numeric_limits<int>::max()));
    item.title = textOf(dictionary, "title");
    item.string = textOf(dictionary, "string");
    item.stringWithout = textOf(dictionary, "stringWithout");
    item.keyString = textOf(dictionary, "keyString");
    item.commandKeyAddition = textOf(dictionary, "commandKeyAddition");
    item.onlyValidForSelection = flag("onlyValidForSelection");
    item.sendAsData = flag("sendAsData");
    item.shouldRun = flag("shouldRun");
    item.outputCanReplaceDocument = flag("outputCanReplaceDocument");
    item.shouldOpenPDFPreview = flag("shouldOpenPDFPreview");
    return item;
}

QString CommandItem::fingerprint() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << qint32(kind);
    for (const auto& text : {title, string, stringWithout, keyString, commandKeyAddition})
        stream << text.has_value() << text.value_or(QString());
    stream << onlyValidForSelection << sendAsData << shouldRun << outputCanReplaceDocument
           << shouldOpenPDFPreview;
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

} // namespace quillory
