#include "foundation/PropertyListScalars.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>

namespace quillory {
namespace {

using namespace std::chrono;

constexpr sys_days reference = sys_days(year(2001) / 1 / 1);

int digitValue(char16_t unit)
{
    if (unit >= u'0' && unit <= u'9')
        return unit - u'0';
    if (unit >= u'a' && unit <= u'f')
        return unit - u'a' + 10;
    if (unit >= u'A' && unit <= u'F')
        return unit - u'A' + 10;
    return 16;
}

std::optional<quint64> magnitudeFromText(QStringView digits, unsigned base)
{
    if (digits.isEmpty())
        return std::nullopt;
    quint64 magnitude = 0;
    for (const QChar digit : digits) {
        const unsigned value = unsigned(digitValue(digit.unicode()));
        if (value >= base || magnitude > (std::numeric_limits<quint64>::max() - value) / base)
            return std::nullopt;
        magnitude = magnitude * base + value;
    }
    return magnitude;
}

} // namespace

std::optional<PropertyList> integerFromText(QStringView text)
{
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+'))
        text = text.sliced(1);
    const bool hexadecimal = text.startsWith(u"0x") || text.startsWith(u"0X");
    const auto magnitude =
        hexadecimal ? magnitudeFromText(text.sliced(2), 16) : magnitudeFromText(text, 10);
    if (!magnitude)
        return std::nullopt;
    if (!negative)
        return PropertyList(*magnitude);
    constexpr quint64 largest = quint64(1) << 63;
    if (*magnitude > largest)
        return std::nullopt;
    return PropertyList(qint64(0 - *magnitude));
}

std::optional<double> realFromText(QStringView text)
{
    const bool negative = text.startsWith(u'-');
    const QStringView rest = negative || text.startsWith(u'+') ? text.sliced(1) : text;
    if (rest.compare(u"nan", Qt::CaseInsensitive) == 0)
        return std::numeric_limits<double>::quiet_NaN();
    if (rest.compare(u"inf", Qt::CaseInsensitive) == 0 ||
        rest.compare(u"infinity", Qt::CaseInsensitive) == 0) {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        return negative ? -infinity : infinity;
    }
    for (const QChar unit : text) {
        if (!QStringView(u"0123456789+-.eE").contains(unit))
            return std::nullopt;
    }
    bool valid = false;
    const double value = text.toDouble(&valid);
    return valid ? std::optional(value) : std::nullopt;
}

std::optional<PropertyList::Date> dateFromText(QStringView text)
{
    constexpr QStringView pattern = u"dddd-dd-ddTdd:dd:ddZ";
    if (text.size() != pattern.size())
        return std::nullopt;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool fits =
            pattern[i] == u'd' ? digitValue(text[i].unicode()) < 10 : text[i] == pattern[i];
        if (!fits)
            return std::nullopt;
    }
    const auto number = [text](qsizetype at, qsizetype count) {
        return text.sliced(at, count).toInt();
    };
    const year_month_day day = year(number(0, 4)) / month(unsigned(number(5, 2))) /
                               std::chrono::day(unsigned(number(8, 2)));
    const int hour = number(11, 2);
    const int minute = number(14, 2);
    const int second = number(17, 2);
    if (!day.ok() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    const auto since = sys_days(day) - reference + hours(hour) + minutes(minute) + seconds(second);
    return PropertyList::Date{double(duration_cast<seconds>(since).count())};
}

QByteArray textOfReal(double value)
{
    if (std::isnan(value))
        return "nan";
    if (std::isinf(value))
        return value > 0 ? "+infinity" : "-infinity";
    if (value == 0)
        return "0.0";
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::general, 17);
    return {digits.data(), end.ptr - digits.data()};
}

std::optional<QByteArray> textOfDate(PropertyList::Date date)
{
    constexpr auto first = sys_days(year(0) / 1 / 1);
    constexpr auto beyond = sys_days(year(10000) / 1 / 1);
    const double whole = std::floor(date.seconds);
    if (!(whole >= double(seconds(first - reference).count()) &&
          whole < double(seconds(beyond - reference).count())))
        return std::nullopt;
    const sys_seconds time = reference + seconds(qint64(whole));
    const auto midnight = floor<days>(time);
    const year_month_day day(midnight);
    const hh_mm_ss clock(time - midnight);
    return QString::asprintf("%04d-%02u-%02uT%02d:%02d:%02dZ", int(day.year()),
                             unsigned(day.month()), unsigned(day.day()), int(clock.hours().count()),
                             int(clock.minutes().count()), int(clock.seconds().count()))
        .toLatin1();
}

} // namespace quillory
