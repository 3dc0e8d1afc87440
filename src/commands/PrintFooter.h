#pragma once

#include <QString>

namespace quillory {

class UserDefaults;

/// The line below each printed page, as the user defaults ask for it.
struct PrintFooter
{
    static constexpr int fontSize = 9; ///< points

    QString title; ///< "(null)" where none was ever written; so is the author
    QString author;
    bool includesTitle = false;
    bool includesAuthor = false;
    bool includesNumber = false;
    bool isRaised = false; ///< to make room for numbers below it
    bool skipsFirstPage = false;
    int numberStyle = 0; ///< 0 "%d", 1 "-- %d --", 2 "Page %d", 3 "Page %d of %d"; others give none
    QString fontName;    ///< empty for the desktop's font

    static PrintFooter from(const UserDefaults& defaults);

    /// What stands below \a page of \a pageCount, both counted from 1, whether or not it is shown.
    /// A count of 0 is one that is not known yet.
    QString text(int page, int pageCount) const;
    bool isShownOn(int page) const { return page > 1 || !skipsFirstPage; }
    /// From the top of a page down to the top of a footer, all in points.
    double top(double pageHeight, double footerHeight) const;

private:
    QString pageText(int page, int pageCount) const;
};

} // namespace quillory
