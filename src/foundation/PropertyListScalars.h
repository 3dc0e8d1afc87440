#pragma once

#include "foundation/PropertyList.h"

#include <QByteArray>
#include <QStringView>
#include <optional>

namespace quillory {

/// How numbers and dates are spelled in property lists in XML form. Reading is strict: nothing for
/// a spelling that is not exactly right, blanks included.

/// An optional sign, then decimal digits or 0x and hexadecimal ones; -2^63 to 2^64-1.
std::optional<PropertyList> integerFromText(QStringView text);

/// A decimal number with an optional exponent, or nan, inf or infinity in any case. Nothing for one
/// that a double cannot hold.
std::optional<double> realFromText(QStringView text);

/// YYYY-MM-DDThh:mm:ssZ, of the Gregorian calendar, which is continued backwards.
std::optional<PropertyList::Date> dateFromText(QStringView text);

/// 17 significant digits, so that the same double is read back; zero, also a negative one, is "0.0"
/// and what is not finite is "nan", "+infinity" or "-infinity".
QByteArray textOfReal(double value);

/// Fractions of a second are cut off, towards the past. Nothing outside the years 0 to 9999.
std::optional<QByteArray> textOfDate(PropertyList::Date date);

} // namespace quillory
