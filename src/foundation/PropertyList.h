#pragma once

#include <QByteArray>
#include <QExplicitlySharedDataPointer>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <concepts>
#include <variant>

namespace quillory {

/// A value of a property list: a truth value, a number, a text, data, a date, a reference inside a
/// keyed archive, or an array or dictionary of such values.
///
/// A value never changes once made, and copies share it; so a copy costs a pointer, and a list in
/// which one value is referred to many times stays as small as its file. Such a list may be
/// exponentially large when it is written out: whoever walks one either remembers what it has seen,
/// by identity(), or bounds its output.
class PropertyList
{
public:
    using Array = QList<PropertyList>;

    /// Sorted by the UTF-16 code units of the keys.
    using Dictionary = QMap<QString, PropertyList>;

    /// Seconds since 2001-01-01 00:00 UTC, without leap seconds.
    struct Date
    {
        double seconds = 0;
        bool operator==(const Date&) const = default;
    };

    /// Refers to an object of a keyed archive by its index.
    struct Uid
    {
        quint32 index = 0;
        bool operator==(const Uid&) const = default;
    };

    /// An integer is a quint64 only where it exceeds the range of qint64.
    using Value = std::variant<bool, qint64, quint64, double, QString, QByteArray, Date, Uid, Array,
                               Dictionary>;

    /// Arrays and dictionaries nested deeper than this are neither read nor written.
    static constexpr int maximumDepth = 512;

    /// False, which is how everything absent reads.
    PropertyList();

    // The kinds convert implicitly, so that a list can be written as nested braces. One pitfall: an
    // array of nothing but one Array must spell out PropertyList, or it is a copy of that array.
    template<std::same_as<bool> T>
    PropertyList(T value) : PropertyList(boolean(value))
    {}
    template<std::signed_integral T>
    requires(!std::same_as<T, bool>) PropertyList(T value) : PropertyList(integer(qint64(value))) {}
    template<std::unsigned_integral T>
    requires(!std::same_as<T, bool>) PropertyList(T value) : PropertyList(integer(quint64(value)))
    {}
    PropertyList(double value);
    PropertyList(QString value);
    PropertyList(QByteArray value);
    PropertyList(Date value);
    PropertyList(Uid value);
    PropertyList(Array value);
    PropertyList(Dictionary value);

    PropertyList(const PropertyList& other);
    PropertyList(PropertyList&& other) noexcept; ///< leaves \a other good for assignment only
    PropertyList& operator=(const PropertyList& other);
    PropertyList& operator=(PropertyList&& other) noexcept;
    ~PropertyList();

    const Value& value() const;

    /// Null where the value is of another kind.
    template<class T>
    const T* as() const
    {
        return std::get_if<T>(&value());
    }

    /// What the value means where a certain kind is expected. A text means the number that it
    /// begins with, after blanks (one old form of lists knows no numbers); as a truth value "YES"
    /// and "true", also by their first letter, count as well. A number outside the range becomes
    /// the nearest in it. What means nothing is false, 0 or empty.
    bool toBool() const;
    qint64 toInteger() const;
    double toReal() const;
    QString toString() const;
    QByteArray toData() const;
    Array toArray() const;
    Dictionary toDictionary() const;
    QStringList toStringList() const; ///< the texts among an array's elements

    bool contains(const QString& key) const;

    /// The value for \a key; false where it is absent or this is no dictionary.
    PropertyList operator[](const QString& key) const;

    /// How many arrays and dictionaries lie within each other here: 0 for a leaf, 1 for [].
    int depth() const;

    /// The same for values that share their content, and for no others while these exist.
    const void* identity() const;

    /// Same kind and same content; an integer never equals a real, and nan equals nan.
    friend bool operator==(const PropertyList& a, const PropertyList& b);

private:
    struct Node;

    explicit PropertyList(const Node* node);
    static PropertyList boolean(bool value);
    static PropertyList integer(qint64 value);
    static PropertyList integer(quint64 value);

    QExplicitlySharedDataPointer<const Node> m_node;
};

} // namespace quillory

Q_DECLARE_TYPEINFO(quillory::PropertyList, Q_RELOCATABLE_TYPE);
