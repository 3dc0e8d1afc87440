// The layout of the form is described in BinaryPropertyListReader.cpp.

#include "foundation/BinaryPropertyListWriter.h"

#include <QHash>
#include <QtEndian>
#include <algorithm>
#include <bit>
#include <vector>

namespace quillory {
namespace {

/// The fewest bytes, of 1, 2, 4 and 8, that hold \a value.
int widthOf(quint64 value)
{
    if (value <= 0xFF)
        return 1;
    if (value <= 0xFFFF)
        return 2;
    return value <= 0xFFFFFFFF ? 4 : 8;
}

/// The objects of a list in the order in which they are first met, each once.
class ObjectTable
{
public:
    void add(const PropertyList& object)
    {
        if (!insert(object))
            return;
        if (const auto* array = object.as<PropertyList::Array>()) {
            for (const PropertyList& element : *array)
                add(element);
        } else if (const auto* dictionary = object.as<PropertyList::Dictionary>()) {
            for (auto entry = dictionary->begin(); entry != dictionary->end(); ++entry) {
                insert(entry.key());
                add(entry.value());
            }
        }
    }

    const std::vector<PropertyList>& objects() const { return m_objects; }

    quint64 indexOf(const PropertyList& object) const
    {
        if (const auto* text = object.as<QString>())
            return m_texts.value(*text);
        if (const auto* data = object.as<QByteArray>())
            return m_data.value(*data);
        return m_others.value(nameOf(object));
    }

private:
    using Name = std::pair<size_t, quint64>;

    bool insert(const PropertyList& object)
    {
        if (const auto* text = object.as<QString>())
            return insertInto(m_texts, *text, object);
        if (const auto* data = object.as<QByteArray>())
            return insertInto(m_data, *data, object);
        return insertInto(m_others, nameOf(object), object);
    }

    template<class Key>
    bool insertInto(QHash<Key, quint64>& table, const Key& key, const PropertyList& object)
    {
        const auto size = table.size();
        quint64& index = table[key];
        if (table.size() == size)
            return false;
        index = m_objects.size();
        m_objects.push_back(object);
        return true;
    }

    /// Its kind and its bits; of an array or a dictionary its identity.
    static Name nameOf(const PropertyList& object)
    {
        const auto bits = [&object]<class T>(const T& value) -> quint64 {
            if constexpr (std::is_integral_v<T>)
                return quint64(value);
            else if constexpr (std::is_same_v<T, double>)
                return std::bit_cast<quint64>(value);
            else if constexpr (std::is_same_v<T, PropertyList::Date>)
                return std::bit_cast<quint64>(value.seconds);
            else if constexpr (std::is_same_v<T, PropertyList::Uid>)
                return value.index;
            else
                return quint64(quintptr(object.identity()));
        };
        return {object.value().index(), std::visit(bits, object.value())};
    }

    std::vector<PropertyList> m_objects;
    QHash<QString, quint64> m_texts;
    QHash<QByteArray, quint64> m_data;
    QHash<Name, quint64> m_others;
};

class Renderer
{
public:
    explicit Renderer(const PropertyList& list)
    {
        m_table.add(list);
        m_referenceSize = widthOf(m_table.objects().size() - 1);
    }

    QByteArray render()
    {
        m_out = "bplist00";
        std::vector<quint64> offsets;
        offsets.reserve(m_table.objects().size());
        for (const PropertyList& object : m_table.objects()) {
            offsets.push_back(quint64(m_out.size()));
            std::visit([this](const auto& value) { write(value); }, object.value());
        }
        const auto tableOffset = quint64(m_out.size());
        const int offsetSize = widthOf(tableOffset);
        for (const quint64 offset : offsets)
            number(offset, offsetSize);
        number(0, 6);
        number(quint64(offsetSize), 1);
        number(quint64(m_referenceSize), 1);
        number(offsets.size(), 8);
        number(0, 8); // the root comes first
        number(tableOffset, 8);
        return std::move(m_out);
    }

private:
    void number(quint64 value, int size)
    {
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
            m_out.append(char(uchar(value >> shift)));
    }

    void marker(int kind, int low) { m_out.append(char(uchar(kind << 4 | low))); }

    void length(int kind, qsizetype count)
    {
        marker(kind, int(std::min<qsizetype>(count, 0x0F)));
        if (count >= 0x0F)
            write(qint64(count));
    }

    void reference(const PropertyList& object) { number(m_table.indexOf(object), m_referenceSize); }

    void write(bool value) { marker(0x0, value ? 9 : 8); }

    void write(qint64 value)
    {
        const int size = value < 0 ? 8 : widthOf(quint64(value));
        marker(0x1, std::countr_zero(unsigned(size)));
        number(quint64(value), size);
    }

    /// Integers of 8 bytes have a sign, so these take 16.
    void write(quint64 value)
    {
        marker(0x1, 4);
        number(0, 8);
        number(value, 8);
    }

    void write(double value)
    {
        marker(0x2, 3);
        number(std::bit_cast<quint64>(value), 8);
    }

    void write(PropertyList::Date value)
    {
        marker(0x3, 3);
        number(std::bit_cast<quint64>(value.seconds), 8);
    }

    void write(const QByteArray& value)
    {
        length(0x4, value.size());
        m_out.append(value);
    }

    void write(const QString& value)
    {
        const auto isAscii = [](QChar unit) { return unit.unicode() < 0x80; };
        if (std::all_of(value.begin(), value.end(), isAscii)) {
            length(0x5, value.size());
            m_out.append(value.toLatin1());
            return;
        }
        length(0x6, value.size());
        for (const QChar unit : value)
            number(unit.unicode(), 2);
    }

    void write(PropertyList::Uid value)
    {
        const int size = widthOf(value.index);
        marker(0x8, size - 1);
        number(value.index, size);
    }

    void write(const PropertyList::Array& array)
    {
        length(0xA, array.size());
        for (const PropertyList& element : array)
            reference(element);
    }

    void write(const PropertyList::Dictionary& dictionary)
    {
        length(0xD, dictionary.size());
        for (auto key = dictionary.keyBegin(); key != dictionary.keyEnd(); ++key)
            reference(*key);
        for (const PropertyList& value : dictionary)
            reference(value);
    }

    ObjectTable m_table;
    int m_referenceSize = 1;
    QByteArray m_out;
};

} // namespace

Result<QByteArray> writeBinaryPropertyList(const PropertyList& list)
{
    if (list.depth() > PropertyList::maximumDepth)
        return Failure{QStringLiteral("The list is nested deeper than %1 levels.")
                           .arg(PropertyList::maximumDepth)};
    return Renderer(list).render();
}

} // namespace quillory
