#pragma once

#include "app/ThemeModel.h"

#include <QFont>
#include <QItemSelectionModel>
#include <QPointer>
#include <QTimer>
#include <memory>

class QSettings;

namespace quillory {

class PreferencesWindow;
class UserDefaults;
class UserQuestions;
struct DocumentEnvironment;

/// Runs the preferences window, which is made when it is first shown: the list of themes, the
/// choice of a font and of a folder, and the broadcast that tells every document to read its
/// settings anew. What else is set there the window binds to the user defaults by itself.
class PreferencesController : public QObject
{
    Q_OBJECT

public:
    /// \a state keeps from one session to the next which pane is shown. All outlive this.
    PreferencesController(const DocumentEnvironment& environment, UserQuestions& questions,
                          QSettings& state);
    ~PreferencesController() override;

    /// Shows the window, on the screen of \a near when it was closed; brings it to the front.
    void showWindow(const QWidget& near);
    /// Null before it is first shown.
    PreferencesWindow* window() const { return m_window.get(); }
    const DocumentEnvironment& environment() const { return m_environment; }
    UserDefaults& defaults() const;

    // Themes

    const std::vector<Theme>& themesArray() const { return m_themes.themes(); }
    /// Presents the themes; the current row is the selected one.
    QItemSelectionModel& themesArrayController() { return m_selection; }
    ThemeModel& themeModel() { return m_themes; }

    // Operations of the window

    /// Centres the window.
    void awakeFromNib();
    /// Reads the themes, selects the stored one and centres the window.
    void windowDidLoad();
    /// Opens the font dialog over \a parent. A font that is looked at there is used at once; giving
    /// up brings the one before back.
    void chooseFont(QWidget* parent);
    /// Makes \a font the custom font, and uses it. Of its size, whole points from 11 to 23 are
    /// kept. The broadcast follows a tenth of a second after the last call.
    void changeFont(const QFont& font);
    /// Stores which theme is selected, if one is, and tells all documents.
    void sendPrefsNotification();
    void windowDidChangeScreen();
    void selectDropboxPath();

private:
    void selectStoredTheme();
    void centre();

    const DocumentEnvironment& m_environment;
    UserQuestions& m_questions;
    QSettings& m_state;
    ThemeModel m_themes;
    QItemSelectionModel m_selection{&m_themes};
    std::unique_ptr<PreferencesWindow> m_window;
    QTimer m_fontTimer;
    bool m_showingTheme = false; ///< the selection follows what is stored, not the user
};

} // namespace quillory
