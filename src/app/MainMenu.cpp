#include "app/MainMenu.h"

#include "app/DocumentWindow.h"
#include "app/MenuTable.h"
#include "app/RefillingMenu.h"
#include "document/Document.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"

#include <QMenu>
#include <QMenuBar>

namespace quillory {

MainMenu::MainMenu(DocumentWindow& window) : QObject(&window), m_window(window)
{
    for (const MenuDefinition& definition : menuTable()) {
        QMenu* menu = window.menuBar()->addMenu(menuText(definition.title));
        connect(menu, &QMenu::aboutToShow, this, [this] {
            refresh();
            makeOffers();
        });
        connect(menu, &QMenu::aboutToHide, this, &MainMenu::withdrawOffers);
        m_menus.push_back(menu);
    }
    connect(&window, &DocumentWindow::firstPainted, this, &MainMenu::refresh);
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(0);
    connect(&m_refresh, &QTimer::timeout, this, &MainMenu::refresh);
    Document& document = window.document();
    connect(&document.undoManager(), &UndoManager::stepsChanged, this, &MainMenu::scheduleRefresh);
    connect(&document.textView(), &QPTextView::selectionDidChange, this,
            &MainMenu::scheduleRefresh);
    connect(&document, &Document::recordChanged, this, &MainMenu::scheduleRefresh);
}

void MainMenu::fill()
{
    auto menu = m_menus.begin();
    for (const MenuDefinition& definition : menuTable()) {
        for (const MenuItem& item : definition.items)
            addItem(**menu, item);
        if (definition.extend)
            refillOnShow(**menu, [this, &definition](QMenu& opening) {
                definition.extend(opening, m_window);
            });
        ++menu;
    }
}

void MainMenu::addItem(QMenu& menu, const MenuItem& item)
{
    if (!item.text) {
        menu.addSeparator();
        return;
    }
    QAction* action = nullptr;
    if (item.fill) {
        QMenu* submenu = menu.addMenu(menuText(item.text));
        refillOnShow(*submenu, [this, &item](QMenu& opening) { item.fill(opening, m_window); });
        action = submenu->menuAction();
    } else {
        action = menu.addAction(menuText(item.text));
        action->setShortcuts(keysOf(item));
        action->setCheckable(item.isChecked || item.preference);
        connect(action, &QAction::triggered, this, [this, &item](bool checked) {
            if (item.preference)
                setPreference(*item.preference, checked);
            else
                item.run(m_window);
            scheduleRefresh();
        });
    }
    m_commands.push_back({action, &item});
}

void MainMenu::setPreference(const DefaultsKey<bool>& key, bool on)
{
    const DocumentEnvironment& environment = m_window.environment();
    environment.defaults.setValue(key, on);
    environment.notifications.post(notifications::preferencesDidChange);
}

void MainMenu::refresh()
{
    if (m_commands.empty())
        fill();
    for (const Command& command : m_commands) {
        if (command.item->isEnabled)
            command.action->setEnabled(command.item->isEnabled(m_window));
        if (command.item->isChecked)
            command.action->setChecked(command.item->isChecked(m_window));
        if (command.item->preference)
            command.action->setChecked(
                m_window.environment().defaults.value(*command.item->preference));
        if (command.item->label && !command.item->offer)
            command.action->setText(command.item->label(m_window));
    }
}

void MainMenu::makeOffers()
{
    for (const Command& command : m_commands) {
        if (!command.item->offer)
            continue;
        const Offer offer = command.item->offer(m_window);
        if (command.item->label)
            command.action->setText(command.item->label(m_window));
        command.action->setEnabled(offer == Offer::Enabled);
        command.action->setVisible(offer != Offer::Hidden);
        if (offer == Offer::Unavailable)
            command.action->setText(tr("Unavailable"));
    }
}

void MainMenu::withdrawOffers()
{
    for (const Command& command : m_commands) {
        if (!command.item->offer)
            continue;
        command.action->setEnabled(true);
        if (command.item->label)
            command.action->setText(command.item->label(m_window));
    }
    scheduleRefresh();
}

std::shared_ptr<QMenu> MainMenu::newContextMenu()
{
    auto menu = std::make_shared<QMenu>();
    connect(menu.get(), &QMenu::aboutToShow, this, [this, menu = menu.get()] {
        refresh();
        if (menu->isEmpty())
            addContextCommands(*menu);
    });
    return menu;
}

void MainMenu::addContextCommands(QMenu& menu)
{
    for (const MenuDefinition& definition : menuTable()) {
        for (const MenuItem& item : definition.items) {
            if (!item.inContextMenu)
                continue;
            if (!item.text) {
                menu.addSeparator();
                continue;
            }
            for (const Command& command : m_commands) {
                if (command.item == &item)
                    menu.addAction(command.action);
            }
        }
    }
}

} // namespace quillory
