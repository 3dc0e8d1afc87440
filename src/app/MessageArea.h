#pragma once

#include "app/Message.h"

#include <QMap>
#include <QWidget>

namespace quillory {

class MessageBar;

/// The messages of a window, one below the other; at most one about each subject.
class MessageArea : public QWidget
{
    Q_OBJECT

public:
    /// What a message is about; the order is that on the screen.
    enum class Subject
    {
        Recovery,
        DamagedJournals, ///< of whatever documents
        Journal,
        Saving,
        Autosaving,
        Versions,
        FileOnDisk,
        Encoding,
        LineBreaks,
        RoundTrip,
        Definitions,
        Export,
        Programs,
        Preview,
        Version, ///< of the program
    };

    explicit MessageArea(QWidget* parent = nullptr);

    /// Shows \a message in the place of an earlier one about the same subject.
    void show(Subject subject, const Message& message);
    void clear(Subject subject);
    /// All that is about the document.
    void clearAll();
    /// The text shown about \a subject; empty where there is none.
    QString text(Subject subject) const;

Q_SIGNALS:
    /// A message was put away; the keyboard goes back to the text.
    void dismissed();

private:
    QMap<Subject, MessageBar*> m_bars;
};

} // namespace quillory
