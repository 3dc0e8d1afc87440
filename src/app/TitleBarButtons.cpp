#include "app/TitleBarButtons.h"

#include "app/ActionMenu.h"
#include "app/DocumentWindow.h"
#include "app/FunctionMenu.h"
#include "app/RefillingMenu.h"
#include "app/StatisticsPopover.h"
#include "app/StatusLine.h"
#include "app/TintedIcon.h"
#include "view/TextViewWidget.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QMenu>
#include <QProxyStyle>
#include <QStyleOptionToolButton>
#include <QToolButton>

namespace quillory {

namespace {

/// Has no arrow, which would cover the icon.
class PullDownButton : public QToolButton
{
public:
    explicit PullDownButton(QWidget* parent) : QToolButton(parent)
    {
        setPopupMode(QToolButton::InstantPopup);
    }

protected:
    void initStyleOption(QStyleOptionToolButton* option) const override
    {
        QToolButton::initStyleOption(option);
        option->features &= ~QStyleOptionToolButton::HasMenu;
    }
};

/// Has menus that do not fit the screen scroll, where the desktop's style would go on beside it.
class ScrollingMenuStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override
    {
        return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

/// The menu of \a button, made when it is first needed.
QMenu& menuOf(QToolButton& button, const std::function<void(QMenu&)>& fill)
{
    if (!button.menu()) {
        auto* menu = new QMenu(&button);
        menu->setToolTipsVisible(true);
        auto* style = new ScrollingMenuStyle;
        style->setParent(menu);
        menu->setStyle(style);
        refillOnShow(*menu, fill);
        button.setMenu(menu);
    }
    return *button.menu();
}

} // namespace

TitleBarButtons::TitleBarButtons(DocumentWindow& window)
    : QWidget(&window), m_window(window), m_infoButton(new QToolButton(this)),
      m_settingsButton(new QToolButton(this)), m_navigationButton(new PullDownButton(this)),
      m_actionButton(new PullDownButton(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 2, 0);
    layout->setSpacing(0);
    const auto list = [](const char* key) {
        return QKeySequence(QLatin1StringView(key)).toString(QKeySequence::NativeText);
    };
    add(*m_infoButton, QStringLiteral("information"), tr("Information"),
        tr("The file, and the characters, words and lines in it (%1)").arg(list("Alt+Return")));
    add(*m_settingsButton, QStringLiteral("advanced"), tr("Settings"),
        tr("The document's language, encoding and line breaks"));
    add(*m_navigationButton, QStringLiteral("navigation"), tr("Functions"),
        tr("Go to a function (%1 for a list to search)").arg(list("Ctrl+R")));
    add(*m_actionButton, QStringLiteral("actions"), tr("Actions"),
        tr("Actions on this text (%1 for a list to search)").arg(list("Ctrl+Shift+P")));
    connect(m_infoButton, &QToolButton::clicked, this, [this] { information().showInfoPopOver(); });
    connect(m_settingsButton, &QToolButton::clicked, &m_window.statusLine(),
            &StatusLine::formClicked);
    // The button's own answer to the press, which came before, found no menu the first time.
    const auto openFirst = [](QToolButton* button, QMenu& (TitleBarButtons::*menu)()) {
        return [button, menu, this_ = static_cast<TitleBarButtons*>(button->parentWidget())] {
            if (!button->menu()) {
                (this_->*menu)();
                button->showMenu();
            }
        };
    };
    connect(m_navigationButton, &QToolButton::pressed, this,
            openFirst(m_navigationButton, &TitleBarButtons::navigationMenu));
    connect(m_actionButton, &QToolButton::pressed, this,
            openFirst(m_actionButton, &TitleBarButtons::actionMenu));
}

void TitleBarButtons::add(QToolButton& button, const QString& icon, const QString& name,
                          const QString& toolTip)
{
    button.setAutoRaise(true);
    button.setFocusPolicy(Qt::NoFocus);
    button.setIcon(tintedIcon(icon));
    button.setToolTip(toolTip);
    button.setAccessibleName(name);
    layout()->addWidget(&button);
}

QMenu& TitleBarButtons::navigationMenu()
{
    return menuOf(*m_navigationButton,
                  [this](QMenu& menu) { functions().generateFunctions(menu); });
}

QMenu& TitleBarButtons::actionMenu()
{
    return menuOf(*m_actionButton, [this](QMenu& menu) { fillActionMenu(menu, m_window); });
}

FunctionMenu& TitleBarButtons::functions()
{
    if (!m_functions)
        m_functions = new FunctionMenu(m_window, *m_navigationButton);
    return *m_functions;
}

StatisticsPopover& TitleBarButtons::information()
{
    if (!m_information) {
        m_information = new StatisticsPopover(m_window, *m_infoButton);
        connect(m_information, &Popover::closed, &m_window, [this](bool hadFocus) {
            if (hadFocus)
                m_window.view().setFocus();
        });
    }
    return *m_information;
}

} // namespace quillory
