#pragma once

#include <QFont>
#include <QObject>

namespace quillory {

class SyntaxColouring;
class TextViewWidget;
class UserDefaults;
struct DocumentEnvironment;

/// The font, the wrapping and the plain colours of a window's text: those of the user defaults and
/// the theme, the font enlarged or made smaller for this window.
class ViewAppearance : public QObject
{
    Q_OBJECT

public:
    ViewAppearance(TextViewWidget& view, const DocumentEnvironment& environment,
                   const SyntaxColouring& colouring);

    /// Brings the view up to date with the user defaults.
    void apply();

    void zoomIn() { zoomBy(1); }
    void zoomOut() { zoomBy(-1); }
    /// Enlarges the text by so many points.
    void zoomBy(int points) { setZoom(m_zoom + points); }
    void resetZoom() { setZoom(0); }
    bool isZoomed() const { return m_zoom != 0; }
    int zoom() const { return m_zoom; } ///< points added to the font's size

    /// The one that \a defaults ask for; where it is not installed, the desktop's fixed font in the
    /// size asked for.
    static QFont fontOf(const UserDefaults& defaults);
    /// Without the zoom.
    QFont font() const;

private:
    void setZoom(int points);
    void applyColours();

    TextViewWidget& m_view;
    const DocumentEnvironment& m_environment;
    const SyntaxColouring& m_colouring;
    int m_zoom = 0;
};

} // namespace quillory
