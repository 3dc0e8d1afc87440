#include "PreferencesFixture.h"

#include "view/TextViewWidget.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QListView>
#include <QProcess>

namespace quillory::test {

/// What a desktop's settings portal answers and tells.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    uint scheme = 0;

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString& group, const QString& key)
    {
        const bool isKnown = group == u"org.freedesktop.appearance" && key == u"color-scheme";
        return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? scheme : 99)));
    }

Q_SIGNALS:
    Q_SCRIPTABLE void SettingChanged(const QString& group, const QString& key,
                                     const QDBusVariant& value);
};

namespace {

using namespace Qt::StringLiterals;

/// The tests have a message bus of their own, whatever desktop they run on.
class ThemeFollowingTest : public PreferencesFixture
{
protected:
    /// One that starts no services: the desktop's own portal must not come in.
    static void SetUpTestSuite()
    {
        const QTemporaryDir folder;
        QFile configuration(folder.filePath(u"bus.conf"_s));
        ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
        configuration.write(
            "<busconfig><type>session</type><auth>EXTERNAL</auth><listen>unix:dir=" +
            QDir::tempPath().toUtf8() +
            "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
            "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
        configuration.close();
        bus().start(u"dbus-daemon"_s, {u"--nofork"_s, u"--print-address"_s,
                                       u"--config-file="_s + configuration.fileName()});
        if (bus().waitForReadyRead(5000))
            qputenv("DBUS_SESSION_BUS_ADDRESS", bus().readLine().trimmed());
        else
            qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    }
    static void TearDownTestSuite()
    {
        bus().terminate();
        bus().waitForFinished(5000);
    }
    static QProcess& bus()
    {
        static QProcess process;
        return process;
    }

    ThemeFollowingTest()
    {
        defaults.setValue(keys::dontAsk, true);
        defaults.registerDefault(keys::lightTheme, u"Default"_s);
        defaults.registerDefault(keys::darkTheme, u"Insomniac"_s);
    }
    ~ThemeFollowingTest() override { QApplication::setPalette(m_palette); }

    static void darken(bool isDark)
    {
        QPalette palette;
        palette.setColor(QPalette::Base, isDark ? Qt::black : Qt::white);
        palette.setColor(QPalette::Text, isDark ? Qt::white : Qt::black);
        QApplication::setPalette(palette);
    }
    bool comesTo(int theme) const
    {
        return QTest::qWaitFor([&] { return defaults.value(keys::selectedTheme) == theme; }, 3000);
    }

    // As the themes are listed.
    static constexpr int light = 0;    ///< Default
    static constexpr int fluffish = 2; ///< light too
    static constexpr int dark = 3;     ///< Insomniac

private:
    QPalette m_palette = QApplication::palette();
};

TEST_F(ThemeFollowingTest, thePaletteChoosesTheTheme)
{
    DocumentWindow& document = openNew();
    PreferencesWindow& window = preferences(document);
    auto& list = *window.findChild<QListView*>(u"themes"_s);
    auto& lights = control<QComboBox>(window, u"Light"_s);
    darken(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(defaults.value(keys::selectedTheme), light) << "nobody asked for it";
    EXPECT_FALSE(lights.isEnabled());

    defaults.setValue(keys::selectedTheme, fluffish);
    click(button(window, u"Follow the desktop:"_s));
    EXPECT_TRUE(comesTo(dark));
    EXPECT_EQ(list.currentIndex().row(), dark);
    EXPECT_LT(document.view().colours().background.lightnessF(), 0.3F);
    EXPECT_EQ(lights.currentText(), u"Fluffish"_s) << "the one that was in use";
    darken(false);
    EXPECT_TRUE(comesTo(fluffish));
    EXPECT_GT(document.view().colours().background.lightnessF(), 0.7F);

    // What is chosen meanwhile is chosen for the desktop as it is, or as it is not.
    choose(document, u"View/Theme/Solarized Light"_s);
    EXPECT_EQ(lights.currentText(), u"Solarized Light"_s);
    auto& darks = control<QComboBox>(window, u"Dark"_s);
    QTest::keyClick(&darks, Qt::Key_Home);
    EXPECT_EQ(darks.currentText(), u"Default"_s);
    EXPECT_EQ(list.currentIndex().row(), 4);
    QTest::keyClick(&lights, Qt::Key_Up);
    EXPECT_EQ(list.currentIndex().row(), 3);
    darken(true);
    EXPECT_TRUE(comesTo(light));

    click(button(window, u"Follow the desktop:"_s));
    darken(false);
    QTest::qWait(50);
    EXPECT_EQ(defaults.value(keys::selectedTheme), light);
}

TEST_F(ThemeFollowingTest, theDesktopsPreferenceGoesBeforeThePalette)
{
    if (bus().state() != QProcess::Running)
        GTEST_SKIP() << "dbus-daemon is not installed";
    FakePortal portal;
    QDBusConnection connection = QDBusConnection::connectToBus(
        QString::fromUtf8(qgetenv("DBUS_SESSION_BUS_ADDRESS")), u"portal"_s);
    ASSERT_TRUE(connection.registerService(u"org.freedesktop.portal.Desktop"_s))
        << connection.lastError().message().toStdString();
    ASSERT_TRUE(connection.registerObject(u"/org/freedesktop/portal/desktop"_s, &portal,
                                          QDBusConnection::ExportScriptableContents));
    portal.scheme = 1;
    darken(false);
    defaults.setValue(keys::themeFollowsDesktop, true);
    openNew();
    EXPECT_TRUE(comesTo(dark)) << "at the start";
    const auto tell = [&](const QString& key, uint value) {
        Q_EMIT portal.SettingChanged(u"org.freedesktop.appearance"_s, key,
                                     QDBusVariant(QVariant(value)));
    };
    tell(u"color-scheme"_s, 2);
    EXPECT_TRUE(comesTo(light));
    darken(true);
    tell(u"contrast"_s, 1);
    QTest::qWait(50);
    EXPECT_EQ(defaults.value(keys::selectedTheme), light);
    tell(u"color-scheme"_s, 0); // no preference
    EXPECT_TRUE(comesTo(dark));
    connection.unregisterService(u"org.freedesktop.portal.Desktop"_s);
    QDBusConnection::disconnectFromBus(u"portal"_s);
}

} // namespace
} // namespace quillory::test

#include "ThemeFollowingTest.moc"
