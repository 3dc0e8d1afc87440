#pragma once

#include <QColor>
#include <QObject>

namespace quillory {

class DocumentWindow;
class GradientView;
class LineView;

/// The ground behind the pop-over buttons of a window and the lines around them, in colours between
/// those of the desktop and of the theme; drawn anew as either changes, and as a window comes to
/// another screen ("WINDOWDIDCHANGESCREENNF").
class TitleBarDecoration : public QObject
{
    Q_OBJECT

public:
    /// Decorates \a buttons, the right end of the menus of \a window, and the edge of \a content
    /// below the menus.
    TitleBarDecoration(DocumentWindow& window, QWidget& buttons, QWidget& content);

    /// Where the ground is the closest to the theme: \a ground with so much of \a theme that what
    /// is written on it in \a ink can still be read.
    static QColor tint(const QColor& ground, const QColor& theme, const QColor& ink);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();
    void renew();

    DocumentWindow& m_window;
    QWidget& m_buttons;
    QWidget& m_content;
    GradientView* m_ground;
    LineView* m_leadingLine;
    LineView* m_edge; ///< between the menus and what is below
};

} // namespace quillory
