#include "foundation/PropertyList.h"

#include <QSet>
#include <QSharedData>
#include <algorithm>
#include <cmath>
#include <limits>

namespace quillory {
namespace {

int depthOf(const PropertyList::Array& array)
{
    int depth = 0;
    for (const PropertyList& element : array)
        depth = std::max(depth, element.depth());
    return depth + 1;
}

int depthOf(const PropertyList::Dictionary& dictionary)
{
    int depth = 0;
    for (const PropertyList& element : dictionary)
        depth = std::max(depth, element.depth());
    return depth + 1;
}

/// The longest decimal number that \a text begins with; 0 where there is none.
double leadingNumber(QStringView text)
{
    const QString trimmed = text.trimmed().left(400).toString();
    qsizetype length = 0;
    const auto skipDigits = [&] {
        const qsizetype begin = length;
        while (length < trimmed.size() && trimmed[length] >= u'0' && trimmed[length] <= u'9')
            ++length;
        return length > begin;
    };
    const auto skipOneOf = [&](QStringView units) {
        const bool found = length < trimmed.size() && units.contains(trimmed[length]);
        length += found;
        return found;
    };
    skipOneOf(u"+-");
    skipDigits();
    if (skipOneOf(u"."))
        skipDigits();
    const qsizetype mantissa = length;
    if (skipOneOf(u"eE")) {
        skipOneOf(u"+-");
        if (!skipDigits())
            length = mantissa;
    }
    return trimmed.left(length).toDouble();
}

qint64 saturated(double value)
{
    constexpr double beyond = 9223372036854775808.0; // 2^63
    if (std::isnan(value))
        return 0;
    if (value >= beyond)
        return std::numeric_limits<qint64>::max();
    if (value < -beyond)
        return std::numeric_limits<qint64>::min();
    return qint64(value);
}

qint64 leadingInteger(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    qsizetype length = !trimmed.isEmpty() && (trimmed[0] == u'-' || trimmed[0] == u'+') ? 1 : 0;
    while (length < trimmed.size() && trimmed[length] >= u'0' && trimmed[length] <= u'9')
        ++length;
    bool fits = false;
    const qint64 value = trimmed.left(length).toLongLong(&fits);
    return fits ? value : saturated(leadingNumber(trimmed));
}

bool isYes(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    return !trimmed.isEmpty() &&
           (QStringView(u"YyTt").contains(trimmed[0]) || leadingNumber(trimmed) != 0);
}

/// Compares two values in time proportional to what they store, not to what they expand to.
class Comparison
{
public:
    bool equal(const PropertyList& a, const PropertyList& b)
    {
        if (a.identity() == b.identity())
            return true;
        if (a.value().index() != b.value().index() || a.depth() != b.depth())
            return false;
        if (a.depth() == 0)
            return leavesEqual(a.value(), b.value());
        if (m_equal.contains({a.identity(), b.identity()}))
            return true;
        if (!containersEqual(a, b))
            return false;
        m_equal.insert({a.identity(), b.identity()});
        return true;
    }

private:
    static bool leavesEqual(const PropertyList::Value& a, const PropertyList::Value& b)
    {
        const auto* real = std::get_if<double>(&a);
        if (real && std::isnan(*real))
            return std::isnan(std::get<double>(b));
        return a == b;
    }

    bool containersEqual(const PropertyList& a, const PropertyList& b)
    {
        const auto same = [this](const auto& x, const auto& y) { return equal(x, y); };
        if (const auto* array = a.as<PropertyList::Array>()) {
            const auto& other = *b.as<PropertyList::Array>();
            return std::equal(array->begin(), array->end(), other.begin(), other.end(), same);
        }
        const auto& dictionary = *a.as<PropertyList::Dictionary>();
        const auto& other = *b.as<PropertyList::Dictionary>();
        return std::equal(dictionary.keyBegin(), dictionary.keyEnd(), other.keyBegin(),
                          other.keyEnd()) &&
               std::equal(dictionary.begin(), dictionary.end(), other.begin(), other.end(), same);
    }

    QSet<std::pair<const void*, const void*>> m_equal;
};

} // namespace

struct PropertyList::Node : QSharedData
{
    template<class T>
    explicit Node(T content, int nesting = 0)
        : depth(nesting), value(std::in_place_type<T>, std::move(content))
    {}

    const int depth;
    const Value value;
};

PropertyList::PropertyList() : PropertyList(boolean(false)) {}
PropertyList::PropertyList(const Node* node) : m_node(node) {}
PropertyList::PropertyList(double value) : m_node(new Node(value)) {}
PropertyList::PropertyList(QString value) : m_node(new Node(std::move(value))) {}
PropertyList::PropertyList(QByteArray value) : m_node(new Node(std::move(value))) {}
PropertyList::PropertyList(Date value) : m_node(new Node(value)) {}
PropertyList::PropertyList(Uid value) : m_node(new Node(value)) {}

PropertyList::PropertyList(Array value)
{
    const int nesting = depthOf(value);
    m_node.reset(new Node(std::move(value), nesting));
}

PropertyList::PropertyList(Dictionary value)
{
    const int nesting = depthOf(value);
    m_node.reset(new Node(std::move(value), nesting));
}

PropertyList::PropertyList(const PropertyList& other) = default;
PropertyList::PropertyList(PropertyList&& other) noexcept = default;
PropertyList& PropertyList::operator=(const PropertyList& other) = default;
PropertyList& PropertyList::operator=(PropertyList&& other) noexcept = default;
PropertyList::~PropertyList() = default;

PropertyList PropertyList::boolean(bool value)
{
    static const PropertyList no(new Node(false));
    static const PropertyList yes(new Node(true));
    return value ? yes : no;
}

PropertyList PropertyList::integer(qint64 value)
{
    return PropertyList(new Node(value));
}

PropertyList PropertyList::integer(quint64 value)
{
    if (value <= quint64(std::numeric_limits<qint64>::max()))
        return integer(qint64(value));
    return PropertyList(new Node(value));
}

const PropertyList::Value& PropertyList::value() const
{
    return m_node->value;
}

bool PropertyList::toBool() const
{
    if (const auto* boolean = as<bool>())
        return *boolean;
    if (const auto* text = as<QString>())
        return isYes(*text);
    return toReal() != 0;
}

qint64 PropertyList::toInteger() const
{
    if (const auto* boolean = as<bool>())
        return *boolean ? 1 : 0;
    if (const auto* integer = as<qint64>())
        return *integer;
    if (as<quint64>())
        return std::numeric_limits<qint64>::max();
    if (const auto* real = as<double>())
        return saturated(*real);
    if (const auto* text = as<QString>())
        return leadingInteger(*text);
    return 0;
}

double PropertyList::toReal() const
{
    if (const auto* real = as<double>())
        return *real;
    if (const auto* large = as<quint64>())
        return double(*large);
    if (const auto* text = as<QString>())
        return leadingNumber(*text);
    return double(toInteger());
}

QString PropertyList::toString() const
{
    const auto* text = as<QString>();
    return text ? *text : QString();
}

QByteArray PropertyList::toData() const
{
    const auto* data = as<QByteArray>();
    return data ? *data : QByteArray();
}

PropertyList::Array PropertyList::toArray() const
{
    const auto* array = as<Array>();
    return array ? *array : Array();
}

PropertyList::Dictionary PropertyList::toDictionary() const
{
    const auto* dictionary = as<Dictionary>();
    return dictionary ? *dictionary : Dictionary();
}

QStringList PropertyList::toStringList() const
{
    QStringList texts;
    for (const PropertyList& element : toArray()) {
        if (const auto* text = element.as<QString>())
            texts.append(*text);
    }
    return texts;
}

bool PropertyList::contains(const QString& key) const
{
    const auto* dictionary = as<Dictionary>();
    return dictionary && dictionary->contains(key);
}

PropertyList PropertyList::operator[](const QString& key) const
{
    const auto* dictionary = as<Dictionary>();
    return dictionary ? dictionary->value(key) : PropertyList();
}

int PropertyList::depth() const
{
    return m_node->depth;
}

const void* PropertyList::identity() const
{
    return m_node.data();
}

bool operator==(const PropertyList& a, const PropertyList& b)
{
    return Comparison().equal(a, b);
}

} // namespace quillory
