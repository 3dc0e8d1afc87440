#pragma once

#include <QListView>
#include <QStringListModel>

namespace quillory {

/// The list of words that may complete the one being typed: a small window of its own, which never
/// takes the keyboard.
class CompletionPopup : public QListView
{
    Q_OBJECT

public:
    static constexpr int mostRows = 10;

    explicit CompletionPopup(QWidget* parent);

    /// Offers \a words, of which the first \a typedLength code units are there already, and has the
    /// row at \a index current.
    void setWords(const QStringList& words, qsizetype typedLength, int index = 0);
    int count() const { return m_model.rowCount(); }
    QString word(int index) const { return m_model.index(index).data().toString(); }
    QString currentWord() const { return currentIndex().data().toString(); }

    /// Makes the word so many rows further down current, or up where negative. From the last goes
    /// on to the first, and back, where \a around.
    void moveBy(int rows, bool around);

    /// Shows the words such that they stand right below those that begin at the left of \a line, a
    /// stretch of a text's row on the screen; above it where there is no room.
    void showAt(const QRect& line);

Q_SIGNALS:
    /// A word was clicked.
    void accepted();

private:
    QSize sizeForWords() const;

    QStringListModel m_model;
};

} // namespace quillory
