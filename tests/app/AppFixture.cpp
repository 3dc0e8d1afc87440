#include "AppFixture.h"
#include "support/Folders.h"

#include "app/SaveFlow.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>

namespace quillory::test {

namespace {

constexpr int patience = 20000; ///< milliseconds; only a failing test waits that long

QString withoutMnemonic(QString text)
{
    return text.remove(u'&');
}

QAction* actionNamed(const QList<QAction*>& actions, const QString& name)
{
    for (QAction* action : actions) {
        if (withoutMnemonic(action->text()) == name)
            return action;
    }
    return nullptr;
}

} // namespace

AppFixture::AppFixture()
{
    folders.applicationSupport = folder.filePath(QStringLiteral("support"));
    folders.caches = folder.filePath(QStringLiteral("caches"));
    folders.resources = QStringLiteral(QUILLORY_SOURCE_DIR "/resources");
    folders.plugins = QStringLiteral(QUILLORY_BINARY_DIR "/src/app");
}

QString AppFixture::write(const char* name, const QByteArray& bytes) const
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    return file.fileName();
}

QByteArray AppFixture::bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

DocumentWindow& AppFixture::open(const QString& path)
{
    DocumentWindow* opened = nullptr;
    const auto connection =
        QObject::connect(&controller, &DocumentController::windowOpened, &controller,
                         [&opened](DocumentWindow* window) { opened = window; });
    controller.open({{path, {}}});
    if (!QTest::qWaitFor([&] { return opened != nullptr; }, patience))
        qFatal("no window was opened for %s", qPrintable(path));
    QObject::disconnect(connection);
    opened->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(opened));
    return *opened;
}

DocumentWindow& AppFixture::openNew()
{
    DocumentWindow* window = controller.newDocument();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    return *window;
}

QString AppFixture::textOf(const DocumentWindow& window)
{
    return window.document().completeString().string();
}

void AppFixture::press(DocumentWindow& window, const QStringList& keys)
{
    for (const QString& key : keys) {
        if (key.startsWith(u'\'')) {
            for (const QChar typed : key.mid(1, key.size() - 2))
                QTest::sendKeyEvent(QTest::Click, &window.view(), Qt::Key_unknown, QString(typed),
                                    Qt::NoModifier);
        } else {
            const QKeyCombination combination = QKeySequence::fromString(key)[0];
            // Through the window, so that the shortcuts of the menus are tried first.
            QTest::keyClick(window.windowHandle(), combination.key(),
                            combination.keyboardModifiers());
        }
        QCoreApplication::processEvents();
    }
}

void AppFixture::save(DocumentWindow& window)
{
    press(window, {QStringLiteral("Ctrl+S")});
    waitUntilIdle(window);
}

void AppFixture::waitUntilIdle(DocumentWindow& window)
{
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isBusy(); }, patience));
    QCoreApplication::processEvents();
}

bool AppFixture::pressWayOut(DocumentWindow& window, const QString& label)
{
    for (QPushButton* button : window.messages().findChildren<QPushButton*>()) {
        if (button->isVisible() && withoutMnemonic(button->text()).startsWith(label)) {
            QTest::mouseClick(button, Qt::LeftButton);
            return true;
        }
    }
    return false;
}

QAction* AppFixture::command(DocumentWindow& window, const QString& command)
{
    QList<QAction*> actions = window.menuBar()->actions();
    QAction* found = nullptr;
    for (const QString& name : command.split(u'/')) {
        if (found) {
            Q_EMIT found->menu()->aboutToShow();
            actions = found->menu()->actions();
        }
        found = actionNamed(actions, name);
        if (!found)
            return nullptr;
    }
    return found;
}

void AppFixture::choose(DocumentWindow& window, const QString& name)
{
    QAction* action = command(window, name);
    if (!action)
        qFatal("there is no command %s", qPrintable(name));
    EXPECT_TRUE(action->isEnabled()) << qPrintable(name);
    action->trigger();
    QCoreApplication::processEvents();
}

} // namespace quillory::test
