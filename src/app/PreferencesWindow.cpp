#include "app/PreferencesWindow.h"

#include "app/PreferencesController.h"
#include "app/PreferencesPane.h"
#include "app/TintedIcon.h"

#include <QDialogButtonBox>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>
#include <QWindow>

namespace quillory {

namespace {

constexpr double screenShare = 0.9; ///< of the screen that the window takes at most
const QString shownPane = QStringLiteral("preferencesPane");

/// As large as the pane in it wants; scrolls where the window is smaller.
class PaneScroller : public QScrollArea
{
public:
    explicit PaneScroller(QWidget* pane)
    {
        setWidgetResizable(true);
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidget(pane);
        // The tab's ground shows through.
        pane->setAutoFillBackground(false);
        viewport()->setAutoFillBackground(false);
    }

    QSize sizeHint() const override { return widget()->sizeHint(); }
};

} // namespace

PreferencesWindow::PreferencesWindow(PreferencesController& controller, QSettings& state)
    : m_controller(controller), m_state(state), m_bindings(controller.defaults()),
      m_panes(new QTabWidget(this))
{
    setWindowTitle(tr("Preferences"));
    setSizeGripEnabled(true);
    connect(&m_bindings, &PreferenceBindings::changedByUser, &controller,
            &PreferencesController::sendPrefsNotification);
    addPanes();
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_panes);
    layout->addWidget(buttons);
    resize(sizeHint().boundedTo(screen()->availableSize() * screenShare));
}

void PreferencesWindow::addPanes()
{
    for (const PreferencesPaneDefinition& definition : preferencesTable()) {
        auto* pane = new PreferencesPane(definition, m_controller, m_bindings);
        m_panes->addTab(new PaneScroller(pane), tintedIcon(QString::fromLatin1(definition.icon)),
                        preferenceText(definition.title));
    }
    m_panes->setCurrentIndex(m_state.value(shownPane).toInt());
    connect(m_panes, &QTabWidget::currentChanged, this,
            [this](int index) { m_state.setValue(shownPane, index); });
}

void PreferencesWindow::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!std::exchange(m_followsScreen, true))
        connect(windowHandle(), &QWindow::screenChanged, &m_controller,
                &PreferencesController::windowDidChangeScreen);
}

} // namespace quillory
