#include "foundation/XmlPropertyListWriter.h"

#include "foundation/PropertyListScalars.h"
#include "foundation/PropertyListText.h"
#include "foundation/XmlCharacters.h"

#include <QSet>
#include <algorithm>

namespace quillory {
namespace {

/// About the memory that a list takes, in bytes, each shared value counted once.
class Footprint
{
public:
    void add(const PropertyList& list)
    {
        m_bytes += 16;
        if (m_seen.contains(list.identity()))
            return;
        m_seen.insert(list.identity());
        m_bytes += 32;
        if (const auto* text = list.as<QString>()) {
            m_bytes += 2 * text->size();
        } else if (const auto* data = list.as<QByteArray>()) {
            m_bytes += data->size();
        } else if (const auto* array = list.as<PropertyList::Array>()) {
            for (const PropertyList& element : *array)
                add(element);
        } else if (const auto* dictionary = list.as<PropertyList::Dictionary>()) {
            for (auto entry = dictionary->begin(); entry != dictionary->end(); ++entry) {
                m_bytes += 32 + 2 * entry.key().size();
                add(entry.value());
            }
        }
    }

    qsizetype bytes() const { return m_bytes; }

private:
    QSet<const void*> m_seen;
    qsizetype m_bytes = 0;
};

/// Appends the elements of a list; throws a Failure.
class Renderer
{
public:
    explicit Renderer(qsizetype limit) : m_limit(limit) {}

    void render(const PropertyList& list)
    {
        std::visit([this](const auto& value) { write(value); }, list.value());
    }

    void append(QByteArrayView bytes)
    {
        if (m_out.size() + bytes.size() > m_limit)
            throw Failure{
                QStringLiteral("The list refers to the same values so often that it would "
                               "take more than %1 MB as XML.")
                    .arg(m_limit / 1'000'000)};
        m_out.append(bytes);
    }

    QByteArray take() { return std::move(m_out); }

private:
    void line(QByteArrayView bytes)
    {
        append(QByteArray(m_indent, '\t'));
        append(bytes);
        append("\n");
    }

    void element(QByteArrayView name, QByteArrayView content)
    {
        line(QByteArray("<" + name.toByteArray() + ">" + content.toByteArray() + "</" +
                        name.toByteArray() + ">"));
    }

    void text(QByteArrayView name, const QString& content)
    {
        if (const qsizetype at = forbiddenInXml(content); at >= 0)
            throw Failure{QStringLiteral("XML cannot hold the character %1, which stands in “%2”.")
                              .arg(codePointName(content[at].unicode()), excerpt(content, at))};
        QByteArray escaped = content.toUtf8();
        escaped.replace('&', "&amp;").replace('<', "&lt;").replace('>', "&gt;");
        escaped.replace('\r', "&#13;"); // as it is, it would be read as LF
        element(name, escaped);
    }

    /// The surroundings of \a at, for a message.
    static QString excerpt(const QString& content, qsizetype at)
    {
        QString shown = content.mid(std::max<qsizetype>(0, at - 20), 40);
        for (QChar& unit : shown) {
            if (!unit.isPrint())
                unit = QChar(QChar::ReplacementCharacter);
        }
        return shown;
    }

    void write(bool value) { line(value ? "<true/>" : "<false/>"); }
    void write(qint64 value) { element("integer", QByteArray::number(value)); }
    void write(quint64 value) { element("integer", QByteArray::number(value)); }
    void write(double value) { element("real", textOfReal(value)); }
    void write(const QString& value) { text("string", value); }

    void write(const QByteArray& value)
    {
        line("<data>");
        // The tabs before a line count as 8 columns each, and no line is indented by more than 64.
        const int indent = std::min(m_indent, 8);
        const int columns = 76 - 8 * indent;
        const QByteArray tabs(indent, '\t');
        const QByteArray encoded = value.toBase64();
        for (qsizetype at = 0; at < encoded.size(); at += columns) {
            append(tabs);
            append(QByteArrayView(encoded).sliced(
                at, std::min<qsizetype>(columns, encoded.size() - at)));
            append("\n");
        }
        line("</data>");
    }

    void write(PropertyList::Date value)
    {
        const auto date = textOfDate(value);
        if (!date)
            throw Failure{
                QStringLiteral("XML cannot hold a date %1 seconds away from the year 2001.")
                    .arg(value.seconds)};
        element("date", *date);
    }

    void write(PropertyList::Uid value)
    {
        enter("<dict>");
        text("key", QStringLiteral("CF$UID"));
        write(qint64(value.index));
        leave("</dict>");
    }

    void write(const PropertyList::Array& array)
    {
        if (array.isEmpty())
            return line("<array/>");
        enter("<array>");
        for (const PropertyList& element : array)
            render(element);
        leave("</array>");
    }

    void write(const PropertyList::Dictionary& dictionary)
    {
        if (dictionary.isEmpty())
            return line("<dict/>");
        enter("<dict>");
        for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
            text("key", entry.key());
            render(entry.value());
        }
        leave("</dict>");
    }

    void enter(QByteArrayView tag)
    {
        line(tag);
        if (++m_indent > PropertyList::maximumDepth)
            throw Failure{QStringLiteral("The list is nested deeper than %1 levels.")
                              .arg(PropertyList::maximumDepth)};
    }

    void leave(QByteArrayView tag)
    {
        --m_indent;
        line(tag);
    }

    QByteArray m_out;
    qsizetype m_limit;
    int m_indent = 0;
};

} // namespace

Result<QByteArray> writeXmlPropertyList(const PropertyList& list)
{
    try {
        if (list.depth() > PropertyList::maximumDepth)
            throw Failure{QStringLiteral("The list is nested deeper than %1 levels.")
                              .arg(PropertyList::maximumDepth)};
        Footprint footprint;
        footprint.add(list);
        constexpr qsizetype floor = 16 << 20;
        Renderer renderer(floor + 10 * footprint.bytes());
        renderer.append(R"(<?xml version="1.0" encoding="UTF-8"?>)"
                        "\n"
                        R"(<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" )"
                        R"("http://www.apple.com/DTDs/PropertyList-1.0.dtd">)"
                        "\n"
                        R"(<plist version="1.0">)"
                        "\n");
        renderer.render(list);
        renderer.append("</plist>\n");
        return renderer.take();
    } catch (const Failure& failure) {
        return failure;
    }
}

} // namespace quillory
