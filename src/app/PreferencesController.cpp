#include "app/PreferencesController.h"

#include "app/PreferencesWindow.h"
#include "app/UserQuestions.h"
#include "app/ViewAppearance.h"
#include "document/DocumentEnvironment.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "syntax/FontChoice.h"

#include <QDir>
#include <QFontDialog>
#include <QScopedValueRollback>
#include <QScreen>
#include <algorithm>
#include <array>
#include <functional>

namespace quillory {

namespace {

constexpr std::chrono::milliseconds fontDelay(100);

/// Makes \a key what it is now, also where it was never written.
template<class T>
std::function<void()> asBefore(UserDefaults& defaults, const DefaultsKey<T>& key)
{
    if (!defaults.isWritten(key))
        return [&] { defaults.remove(key); };
    return [&, value = defaults.value(key)] { defaults.setValue(key, value); };
}

} // namespace

PreferencesController::PreferencesController(const DocumentEnvironment& environment,
                                             UserQuestions& questions, QSettings& state)
    : m_environment(environment), m_questions(questions), m_state(state)
{
    m_fontTimer.setSingleShot(true);
    m_fontTimer.setInterval(fontDelay);
    connect(&m_fontTimer, &QTimer::timeout, this, &PreferencesController::sendPrefsNotification);
    connect(&m_selection, &QItemSelectionModel::currentChanged, this, [this] {
        if (!m_showingTheme)
            sendPrefsNotification();
    });
    connect(&environment.defaults, &UserDefaults::changed, this, [this](QLatin1StringView key) {
        if (key == QLatin1StringView(keys::selectedTheme.name))
            selectStoredTheme();
    });
}

PreferencesController::~PreferencesController() = default;

UserDefaults& PreferencesController::defaults() const
{
    return m_environment.defaults;
}

// The window

void PreferencesController::showWindow(const QWidget& near)
{
    const bool isNew = !m_window;
    if (isNew)
        m_window = std::make_unique<PreferencesWindow>(*this, m_state);
    if (!m_window->isVisible()) {
        m_window->setScreen(near.screen());
        isNew ? awakeFromNib() : centre();
        windowDidLoad();
    }
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void PreferencesController::awakeFromNib()
{
    centre();
}

void PreferencesController::windowDidLoad()
{
    const QScopedValueRollback<bool> showing(m_showingTheme, true);
    const ApplicationFolders& folders = m_environment.folders;
    const QString shipped = folders.resources + QStringLiteral("/Themes");
    ThemeList themes;
    themes.load(folders.applicationSupport + QStringLiteral("/Themes"), 0, shipped);
    m_themes.setThemes(themes.arrangedObjects());
    selectStoredTheme();
    centre();
}

void PreferencesController::centre()
{
    if (!m_window)
        return;
    QRect frame({}, m_window->size());
    frame.moveCenter(m_window->screen()->availableGeometry().center());
    m_window->move(frame.topLeft());
}

void PreferencesController::windowDidChangeScreen()
{
    m_environment.notifications.post(notifications::windowDidChangeScreen);
}

// Themes

void PreferencesController::selectStoredTheme()
{
    const QScopedValueRollback<bool> showing(m_showingTheme, true);
    m_selection.setCurrentIndex(m_themes.index(defaults().value(keys::selectedTheme)),
                                QItemSelectionModel::ClearAndSelect);
}

void PreferencesController::sendPrefsNotification()
{
    const QModelIndex selected = m_selection.currentIndex();
    if (selected.isValid() && selected.row() != defaults().value(keys::selectedTheme))
        defaults().setValue(keys::selectedTheme, selected.row());
    m_environment.notifications.post(notifications::preferencesDidChange);
}

// The font

void PreferencesController::chooseFont(QWidget* parent)
{
    auto* dialog = new QFontDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QFontDialog::MonospacedFonts);
    dialog->setCurrentFont(ViewAppearance::fontOf(defaults()));
    const auto giveBack = [this, before = std::array{asBefore(defaults(), keys::customFontName),
                                                     asBefore(defaults(), keys::fontSize),
                                                     asBefore(defaults(), keys::font)}] {
        m_fontTimer.stop();
        for (const auto& restore : before)
            restore();
        sendPrefsNotification();
    };
    connect(dialog, &QFontDialog::currentFontChanged, this, &PreferencesController::changeFont);
    connect(dialog, &QFontDialog::fontSelected, this, &PreferencesController::changeFont);
    connect(dialog, &QDialog::rejected, this, giveBack);
    dialog->open();
}

void PreferencesController::changeFont(const QFont& font)
{
    const int size = std::clamp(font.pointSize(), FontChoice::smallest, FontChoice::largest);
    defaults().setValue(keys::customFontName, font.family());
    defaults().setValue(keys::fontSize, size - FontChoice::smallest);
    defaults().setValue(keys::font, FontChoice::custom);
    m_fontTimer.start();
}

// The folder

void PreferencesController::selectDropboxPath()
{
    const QString before = defaults().value(keys::dropboxPath).toLocalFile();
    m_questions.askForFolder(m_window.get(), tr("Choose the Dropbox Folder"),
                             before.isEmpty() ? QDir::homePath() : before,
                             [this, guard = QPointer(this)](const QString& chosen) {
                                 if (!guard || chosen.isEmpty())
                                     return;
                                 defaults().setValue(keys::dropboxPath,
                                                     QUrl::fromLocalFile(chosen));
                                 if (m_window) {
                                     m_window->raise();
                                     m_window->activateWindow();
                                 }
                             });
}

} // namespace quillory
