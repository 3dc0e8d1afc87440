#pragma once

#include <QObject>

namespace quillory {

class AutoHidingMenuBar;
class DocumentWindow;

/// What a document window does beside showing its document: it floats above other windows, fills
/// the screen, and follows when it moves to another screen.
class WindowPresentation : public QObject
{
    Q_OBJECT

public:
    /// Gives \a window, which has no menus yet, a menu bar that goes out of the way in full screen.
    explicit WindowPresentation(DocumentWindow& window);

    bool isFloating() const;
    /// Between the level of all windows and the one above them.
    void toggleFloatingWindow();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void windowDidBecomeKey();
    void windowDidChangeScreen();
    void windowDidEnterFullScreen();
    void windowDidExitFullScreen();
    void followState();

    DocumentWindow& m_window;
    AutoHidingMenuBar* m_menuBar;
    bool m_followsScreen = false;
    bool m_isFullScreen = false;
};

} // namespace quillory
