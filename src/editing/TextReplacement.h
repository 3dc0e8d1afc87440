#pragma once

#include "text/TextSnapshot.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QString>
#include <optional>

namespace quillory {

class QPTextView;
class UserDefaults;

/// Puts the user's own texts in the place of the shortcuts that he types, while the user default
/// "textReplacement" is on.
///
/// A shortcut counts when a character that no word goes on with is typed behind it: a blank, a
/// sign, Return or Tab. Before it must stand no letter, digit or underscore where it begins with
/// one. Of several the longest counts. The replacement is an undo step of its own, so that undoing
/// it gives back what was typed. What is pasted is not looked at.
///
/// The shortcuts are the keys of a property list; it is read when it is first needed, and again
/// when the file has changed. What is no text in it counts as absent. Typing costs the same however
/// many there are.
class TextReplacement : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype longestShortcut = 100; ///< UTF-16 code units; longer ones are absent
    static constexpr qint64 largestFile = 1'000'000;  ///< bytes; a larger one is not read

    /// All three outlive this. \a path is the property list, which need not exist.
    TextReplacement(QPTextView& textView, const UserDefaults& defaults, QString path);

private:
    struct Found
    {
        TextRange range;
        QString text;
    };

    void followTyping(const QString& typed);
    std::optional<Found> shortcutBefore(const TextSnapshot& text, TextOffset end) const;
    void readIfChanged();

    QPTextView& m_textView;
    const UserDefaults& m_defaults;
    QString m_path;
    QDateTime m_modified;
    qint64 m_size = -1;
    QHash<QString, QString> m_texts; ///< by their shortcuts
    qsizetype m_longest = 0;         ///< of the shortcuts
};

} // namespace quillory
