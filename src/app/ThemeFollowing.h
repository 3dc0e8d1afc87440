#pragma once

#include "app/DesktopScheme.h"

#include <functional>

namespace quillory {

class Theme;
struct DocumentEnvironment;

/// Selects the theme for a light or for a dark desktop as the desktop changes, while the user wants
/// that (themeFollowsDesktop). A theme that is chosen meanwhile, in whatever window, becomes the
/// one for the desktop as it is; the one in use when the user begins to want that, by its
/// background, the one for light or for dark.
class ThemeFollowing : public QObject
{
    Q_OBJECT

public:
    /// \a environment outlives this.
    explicit ThemeFollowing(const DocumentEnvironment& environment);

    /// To be called once the first window is painted. Until then the theme is that of the last
    /// session.
    void start();
    DesktopScheme& scheme() { return m_scheme; }

private:
    void noteWritten(QLatin1StringView key);
    void selectForScheme();
    void adoptSelected(const std::function<bool(const Theme&)>& isForDark);

    const DocumentEnvironment& m_environment;
    DesktopScheme m_scheme;
    bool m_started = false;
    bool m_selecting = false;
};

} // namespace quillory
