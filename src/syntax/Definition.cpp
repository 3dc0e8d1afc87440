#include "syntax/Definition.h"

#include "syntax/DefinitionCopy.h"
#include "syntax/PropertyListFolder.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace quillory {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Definition", text);
}

bool isFlag(const PropertyList& value)
{
    return std::visit(
        [](const auto& held) {
            using T = std::decay_t<decltype(held)>;
            return std::is_arithmetic_v<T> || std::is_same_v<T, QString>;
        },
        value.value());
}

bool isNumber(const PropertyList& value)
{
    return std::visit(
        [](const auto& held) {
            using T = std::decay_t<decltype(held)>;
            return std::is_arithmetic_v<T> && !std::is_same_v<T, bool>;
        },
        value.value());
}

bool holdsOnlyTexts(const PropertyList::Array& array)
{
    return std::all_of(array.begin(), array.end(),
                       [](const PropertyList& value) { return value.as<QString>() != nullptr; });
}

} // namespace

const Definition::Key Definition::identityKeys[] = {
    {"title", Kind::String}, {"extensions", Kind::Words}, {"isDefault", Kind::Flag}};

const Definition::Key Definition::contentKeys[] = {
    {"mainExtension", Kind::String},
    {"functionMenuTitle", Kind::String},
    {"canCloseTags", Kind::Flag},
    {"canUsePreview", Kind::Flag},
    {"canUsePDFPreview", Kind::Flag},
    {"previewFormat", Kind::Number},
    {"colorNumbers", Kind::Flag},
    {"commandItems", Kind::Array},
    {"keywords", Kind::Words},
    {"others", Kind::Words},
    {"objects", Kind::Words},
    {"classes", Kind::Words},
    {"others2", Kind::Words},
    {"types", Kind::Words},
    {"constants", Kind::Words},
    {"basics", Kind::Words},
    {"methods", Kind::Words},
    {"autocompleteWords", Kind::Words},
    {"keywordsCaseSensitive", Kind::Flag},
    {"shouldBeRecolered", Kind::Flag},
    {"beginCommand", Kind::String},
    {"endCommand", Kind::String},
    {"beginInstruction", Kind::String},
    {"endInstruction", Kind::String},
    {"beginVariable", Kind::String},
    {"endVariable", Kind::String},
    {"firstString", Kind::String},
    {"secondString", Kind::String},
    {"firstSingleLineComment", Kind::String},
    {"secondSingleLineComment", Kind::String},
    {"beginFirstMultiLineComment", Kind::String},
    {"endFirstMultiLineComment", Kind::String},
    {"beginSecondMultiLineComment", Kind::String},
    {"endSecondMultiLineComment", Kind::String},
    {"excludeFromKeywordStartCharacterSet", Kind::String},
    {"includeInKeywordStartCharacterSet", Kind::String},
    {"excludeFromKeywordEndCharacterSet", Kind::String},
    {"includeInKeywordEndCharacterSet", Kind::String},
    {"functionDefinition", Kind::String},
    {"ignoreAsAFunctionComponent", Kind::String},
};

Definition::Definition(PropertyList dictionary, QString path)
    : m_dictionary(std::move(dictionary)), m_path(std::move(path))
{
    m_title = string(QLatin1StringView("title")).value_or(QString());
    if (m_title.isEmpty())
        m_title = QFileInfo(m_path).completeBaseName();
}

Definition Definition::ofHead(PropertyList head, QString path, QString copy)
{
    Definition definition(std::move(head), std::move(path));
    definition.m_copy = std::move(copy);
    definition.m_isHead = true;
    return definition;
}

PropertyList Definition::head() const
{
    PropertyList::Dictionary head;
    for (const Key& key : identityKeys) {
        const QLatin1StringView name(key.name);
        if (m_dictionary.contains(name))
            head.insert(name, value(name));
    }
    return head;
}

/// The dictionary, whole unless \a key is one of the head's.
const PropertyList& Definition::dictionaryWith(QLatin1StringView key) const
{
    const bool isOfHead =
        std::any_of(std::begin(identityKeys), std::end(identityKeys),
                    [&](const Key& known) { return key == QLatin1StringView(known.name); });
    if (m_isHead && !isOfHead) {
        m_isHead = false;
        if (std::optional<PropertyList> copied = readDefinitionCopy(m_copy, m_path)) {
            m_dictionary = std::move(*copied);
            return m_dictionary;
        }
        const QString stamp = stampOf(m_path);
        const PropertyListFile file = propertyListAt(m_path);
        if (file.problem.isEmpty()) {
            m_dictionary = file.dictionary;
            writeDefinitionCopy(m_copy, stamp, m_dictionary);
        }
    }
    return m_dictionary;
}

QStringList Definition::extensions() const
{
    return words(QLatin1StringView("extensions")).value_or(QStringList());
}

bool Definition::isDefault() const
{
    return flag(QLatin1StringView("isDefault")).value_or(false);
}

std::optional<bool> Definition::flag(QLatin1StringView key) const
{
    const PropertyList found = value(key);
    if (!dictionaryWith(key).contains(key) || !isFlag(found))
        return std::nullopt;
    return found.toBool();
}

std::optional<qint64> Definition::number(QLatin1StringView key) const
{
    const PropertyList found = value(key);
    if (!dictionaryWith(key).contains(key) || !isNumber(found))
        return std::nullopt;
    return found.toInteger();
}

std::optional<QString> Definition::string(QLatin1StringView key) const
{
    const PropertyList found = value(key);
    const auto* const text = found.as<QString>();
    return text ? std::optional(*text) : std::nullopt;
}

std::optional<QStringList> Definition::words(QLatin1StringView key) const
{
    const PropertyList found = value(key);
    return found.as<PropertyList::Array>() ? std::optional(found.toStringList()) : std::nullopt;
}

std::vector<DefinitionFault> Definition::identityFaults() const
{
    std::vector<DefinitionFault> faults;
    for (const Key& key : identityKeys)
        check(key, faults);
    if (!m_dictionary.contains(QStringLiteral("title")))
        faults.push_back(fault(QLatin1StringView("title"), tr("it is missing")));
    return faults;
}

std::vector<DefinitionFault> Definition::contentFaults() const
{
    std::vector<DefinitionFault> faults;
    for (const Key& key : contentKeys)
        check(key, faults);
    return faults;
}

DefinitionFault Definition::fault(QLatin1StringView key, const QString& problem) const
{
    return {m_title, key, problem};
}

void Definition::check(const Key& key, std::vector<DefinitionFault>& faults) const
{
    const QLatin1StringView name(key.name);
    if (!dictionaryWith(name).contains(name))
        return;
    const PropertyList found = value(name);
    const auto* const array = found.as<PropertyList::Array>();
    switch (key.kind) {
    case Kind::Flag:
        if (!isFlag(found))
            faults.push_back(fault(name, tr("it is neither true nor false")));
        break;
    case Kind::Number:
        if (!isNumber(found))
            faults.push_back(fault(name, tr("it is no number")));
        break;
    case Kind::String:
        if (!found.as<QString>())
            faults.push_back(fault(name, tr("it is no text")));
        break;
    case Kind::Words:
        if (!array)
            faults.push_back(fault(name, tr("it is no array")));
        else if (!holdsOnlyTexts(*array))
            faults.push_back(fault(name, tr("it holds something that is no text")));
        break;
    case Kind::Array:
        if (!array)
            faults.push_back(fault(name, tr("it is no array")));
        break;
    }
}

} // namespace quillory
