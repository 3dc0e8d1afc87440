// The binary form: "bplist00", the objects, the table of their offsets, and a trailer of 32 bytes
// that says how wide offsets and references are, how many objects there are, which one is the root
// and where the table begins. All numbers are big-endian. An object begins with a marker byte: the
// upper four bits say of what kind it is, the lower four how long; 15 there means that an integer
// object with the length follows. Arrays and dictionaries refer to their elements by their indexes
// in the table.

#include "foundation/BinaryPropertyListReader.h"
#include "foundation/TextPool.h"

#include <QtEndian>
#include <algorithm>
#include <bit>
#include <limits>
#include <optional>
#include <vector>

namespace quillory {
namespace {

constexpr qsizetype headerSize = 8;
constexpr qsizetype trailerSize = 32;

/// Follows the references from the root; throws a Failure.
class Parser
{
public:
    explicit Parser(const QByteArray& bytes) : m_bytes(bytes)
    {
        if (bytes.size() < headerSize + 1 + trailerSize)
            throw Failure{QStringLiteral("The binary property list is cut short.")};
        const qsizetype trailer = bytes.size() - trailerSize;
        m_offsetSize = uchar(bytes[trailer + 6]);
        m_referenceSize = uchar(bytes[trailer + 7]);
        const quint64 count = number(trailer + 8, 8);
        m_root = number(trailer + 16, 8);
        const quint64 table = number(trailer + 24, 8);
        const auto isSize = [](int size) { return size >= 1 && size <= 8; };
        const bool fits = isSize(m_offsetSize) && isSize(m_referenceSize) && m_root < count &&
                          table > headerSize && table <= quint64(trailer) &&
                          count <= quint64(trailer) &&
                          count * quint64(m_offsetSize) == quint64(trailer) - table;
        if (!fits)
            throw Failure{QStringLiteral(
                "The binary property list is cut short, or its table of objects is damaged.")};
        m_table = qsizetype(table);
        m_unclaimed = m_table - headerSize;
        m_objects.resize(count);
        m_states.resize(count, State::Unread);
    }

    PropertyList parse() { return object(m_root, 0); }

private:
    enum class State : quint8
    {
        Unread,
        Open, ///< its elements are being read
        Read
    };

    [[noreturn]] static void fail(qsizetype offset, const QString& message)
    {
        throw Failure{QStringLiteral("The binary property list is damaged at byte %1: %2")
                          .arg(offset)
                          .arg(message)};
    }

    /// \a size bytes, at most 8 of them, which must lie in the file.
    quint64 number(qsizetype offset, qsizetype size) const
    {
        quint64 value = 0;
        for (qsizetype i = 0; i < size; ++i)
            value = value << 8 | uchar(m_bytes[offset + i]);
        return value;
    }

    PropertyList object(quint64 index, int depth)
    {
        if (index >= m_objects.size())
            fail(m_table, QStringLiteral("a reference leads to no object."));
        if (m_states[index] == State::Open)
            fail(m_table, QStringLiteral("an object holds itself."));
        if (m_states[index] == State::Unread) {
            m_states[index] = State::Open;
            m_objects[index] = read(index, depth);
            m_states[index] = State::Read;
        }
        if (depth + m_objects[index].depth() > PropertyList::maximumDepth)
            throw Failure{QStringLiteral("The list is nested deeper than %1 levels.")
                              .arg(PropertyList::maximumDepth)};
        return m_objects[index];
    }

    /// Claims \a size bytes at \a offset for an object. No byte belongs to two of them, so all
    /// together cannot claim more than there is.
    void claim(qsizetype offset, quint64 size)
    {
        if (size > quint64(m_table - offset))
            fail(offset, QStringLiteral("an object is longer than the file."));
        if (size > quint64(m_unclaimed))
            fail(offset, QStringLiteral("objects overlap."));
        m_unclaimed -= qsizetype(size);
    }

    PropertyList read(quint64 index, int depth)
    {
        const quint64 stored = number(m_table + qsizetype(index) * m_offsetSize, m_offsetSize);
        if (stored < headerSize || stored >= quint64(m_table))
            fail(m_table, QStringLiteral("the offset of an object lies outside the file."));
        qsizetype offset = qsizetype(stored);
        claim(offset, 1);
        const int marker = uchar(m_bytes[offset]);
        const int low = marker & 0x0F;
        switch (marker >> 4) {
        case 0x0:
            if (low == 8 || low == 9)
                return low == 9;
            break;
        case 0x1:
            return integer(offset + 1, low);
        case 0x2:
            if (low == 2)
                return double(std::bit_cast<float>(quint32(payload(offset + 1, 4))));
            if (low == 3)
                return std::bit_cast<double>(payload(offset + 1, 8));
            break;
        case 0x3:
            if (low == 3)
                return PropertyList::Date{std::bit_cast<double>(payload(offset + 1, 8))};
            break;
        case 0x4: {
            const qsizetype size = length(offset, low, 1);
            return m_bytes.sliced(offset, size);
        }
        case 0x5: {
            const qsizetype size = length(offset, low, 1);
            return ascii(offset, size);
        }
        case 0x6: {
            const qsizetype size = length(offset, low, 2);
            QString text(size, Qt::Uninitialized);
            qFromBigEndian<char16_t>(m_bytes.constData() + offset, size, text.data());
            return text;
        }
        case 0x8:
            return uid(offset + 1, low + 1);
        case 0xA: {
            const qsizetype size = length(offset, low, m_referenceSize);
            return array(offset, size, depth + 1);
        }
        case 0xD: {
            const qsizetype size = length(offset, low, 2 * m_referenceSize);
            return dictionary(offset, size, depth + 1);
        }
        default:
            break;
        }
        fail(offset, QStringLiteral("an object of kind 0x%1, which no property list holds.")
                         .arg(marker, 2, 16, QLatin1Char('0')));
    }

    quint64 payload(qsizetype offset, qsizetype size)
    {
        claim(offset, quint64(size));
        return number(offset, size);
    }

    /// The number of elements of \a elementSize bytes in the object at \a offset, which moves to
    /// the first of them.
    qsizetype length(qsizetype& offset, int low, int elementSize)
    {
        quint64 count = quint64(low);
        ++offset;
        if (low == 0x0F) {
            claim(offset, 1);
            const int marker = uchar(m_bytes[offset]);
            const int size = 1 << (marker & 0x0F);
            if (marker >> 4 != 0x1 || size > 8)
                fail(offset, QStringLiteral("an object has no length."));
            count = payload(offset + 1, size);
            offset += 1 + size;
        }
        if (count > quint64(m_table))
            fail(offset, QStringLiteral("an object is longer than the file."));
        claim(offset, count * quint64(elementSize));
        return qsizetype(count);
    }

    /// Integers of 1, 2 and 4 bytes have no sign, those of 8 and 16 do.
    PropertyList integer(qsizetype offset, int low)
    {
        if (low > 4)
            fail(offset - 1, QStringLiteral("an integer of more than 16 bytes."));
        if (low < 3)
            return payload(offset, qsizetype(1) << low);
        if (low == 3)
            return qint64(payload(offset, 8));
        const quint64 upper = payload(offset, 8);
        const quint64 lower = payload(offset + 8, 8);
        if (upper == 0)
            return lower;
        if (~upper == 0 && qint64(lower) < 0)
            return qint64(lower);
        fail(offset - 1, QStringLiteral("an integer of more than 64 bits."));
    }

    PropertyList ascii(qsizetype offset, qsizetype size)
    {
        const QByteArrayView bytes = QByteArrayView(m_bytes).sliced(offset, size);
        const auto isAscii = [](char byte) { return uchar(byte) < 0x80; };
        if (!std::all_of(bytes.begin(), bytes.end(), isAscii))
            fail(offset, QStringLiteral("a text said to be ASCII is not."));
        return m_texts.list(QString::fromLatin1(bytes));
    }

    PropertyList uid(qsizetype offset, qsizetype size)
    {
        claim(offset, quint64(size));
        for (; size > 8; ++offset, --size) {
            if (m_bytes[offset] != 0)
                fail(offset, QStringLiteral("a reference of more than 32 bits."));
        }
        const quint64 index = number(offset, size);
        if (index > std::numeric_limits<quint32>::max())
            fail(offset, QStringLiteral("a reference of more than 32 bits."));
        return PropertyList::Uid{quint32(index)};
    }

    PropertyList element(qsizetype references, qsizetype at, int depth)
    {
        return object(number(references + at * m_referenceSize, m_referenceSize), depth);
    }

    PropertyList array(qsizetype offset, qsizetype count, int depth)
    {
        checkDepth(depth);
        PropertyList::Array array;
        array.reserve(count);
        for (qsizetype i = 0; i < count; ++i)
            array.append(element(offset, i, depth));
        return array;
    }

    PropertyList dictionary(qsizetype offset, qsizetype count, int depth)
    {
        checkDepth(depth);
        PropertyList::Dictionary dictionary;
        for (qsizetype i = 0; i < count; ++i) {
            const PropertyList key = element(offset, i, depth);
            const auto* text = key.as<QString>();
            if (!text)
                fail(offset, QStringLiteral("a key is not a text."));
            dictionary.insert(*text, element(offset, count + i, depth));
        }
        return dictionary;
    }

    /// Here as well as in object(), so that a chain of references cannot exhaust the stack.
    static void checkDepth(int depth)
    {
        if (depth > PropertyList::maximumDepth)
            throw Failure{QStringLiteral("The list is nested deeper than %1 levels.")
                              .arg(PropertyList::maximumDepth)};
    }

    const QByteArray& m_bytes;
    int m_offsetSize = 0;
    int m_referenceSize = 0;
    quint64 m_root = 0;
    qsizetype m_table = 0;     ///< where the offsets begin and the objects end
    qsizetype m_unclaimed = 0; ///< bytes that can belong to objects not yet read
    std::vector<PropertyList> m_objects;
    std::vector<State> m_states;
    TextPool m_texts;
};

} // namespace

bool isBinaryPropertyList(const QByteArray& bytes)
{
    return bytes.startsWith("bplist0");
}

Result<PropertyList> readBinaryPropertyList(const QByteArray& bytes)
{
    try {
        if (!isBinaryPropertyList(bytes))
            throw Failure{QStringLiteral("This is no binary property list.")};
        return Parser(bytes).parse();
    } catch (const Failure& failure) {
        return failure;
    }
}

} // namespace quillory
