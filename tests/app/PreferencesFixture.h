#pragma once

#include "AppFixture.h"

#include "app/PreferencesWindow.h"

#include <QAbstractButton>
#include <QTabWidget>
#include <QTest>

namespace quillory::test {

/// Reaches the controls of the preferences window as a user does.
class PreferencesFixture : public AppFixture
{
protected:
    PreferencesWindow& preferences(DocumentWindow& window)
    {
        choose(window, QStringLiteral("Edit/Preferences…"));
        PreferencesWindow& shown = *controller.preferences().window();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&shown));
        return shown;
    }

    static QString plain(QString label) { return label.remove(u'&'); }

    /// The check box or button whose label is \a label, mnemonics aside; its pane is brought up.
    static QAbstractButton& button(PreferencesWindow& window, const QString& label)
    {
        for (QAbstractButton* found : window.findChildren<QAbstractButton*>()) {
            if (plain(found->text()) == label) {
                bringUp(window, *found);
                return *found;
            }
        }
        qFatal("there is no button %s", qPrintable(label));
    }

    /// The control that assistive technologies know as \a name.
    template<class Control>
    static Control& control(PreferencesWindow& window, const QString& name)
    {
        for (Control* found : window.findChildren<Control*>()) {
            if (found->accessibleName() == name) {
                bringUp(window, *found);
                return *found;
            }
        }
        qFatal("there is no control %s", qPrintable(name));
    }

    static void click(QAbstractButton& button)
    {
        QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
        QCoreApplication::processEvents();
    }

private:
    static void bringUp(PreferencesWindow& window, const QWidget& control)
    {
        auto& panes = *window.findChild<QTabWidget*>();
        for (int i = 0; i < panes.count(); ++i) {
            if (panes.widget(i)->isAncestorOf(&control))
                panes.setCurrentIndex(i);
        }
    }
};

} // namespace quillory::test
