#include "app/FirstValues.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"
#include "support/Folders.h"
#include "syntax/Theme.h"

#include <QApplication>
#include <QPalette>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory::test {
namespace {

class FirstValuesTest : public ::testing::Test
{
protected:
    ~FirstValuesTest() override { QApplication::setPalette(m_palette); }

    static void makeDesktop(const QColor& paper)
    {
        QPalette palette(paper);
        palette.setColor(QPalette::Base, paper);
        QApplication::setPalette(palette);
    }

    static ApplicationFolders shipped()
    {
        ApplicationFolders folders;
        folders.resources = QStringLiteral(QUILLORY_SOURCE_DIR "/resources");
        return folders;
    }

    QString path() const { return m_folder.filePath(QStringLiteral("Quillory.conf")); }

private:
    QTemporaryDir m_folder;
    QPalette m_palette = QApplication::palette();
};

TEST_F(FirstValuesTest, CountUntilTheUserChoosesOthers)
{
    makeDesktop(Qt::white);
    const DefaultsKey<bool> switches[]{keys::highlight, keys::indentNewLinesBraces,
                                       keys::restoresWindows, keys::autosaveInPlace};
    {
        UserDefaults defaults(path());
        registerFirstValues(shipped(), defaults);
        for (const auto& key : switches) {
            EXPECT_TRUE(defaults.value(key)) << key.name;
            EXPECT_FALSE(defaults.isWritten(key)) << key.name;
            defaults.setValue(key, false);
        }
        EXPECT_EQ(defaults.value(keys::prefsPrintNumbers), 1);
        EXPECT_EQ(defaults.value(keys::prefsPrintNumbersTag), 3);
        EXPECT_EQ(defaults.value(keys::lightTheme), QStringLiteral("Default"));
        EXPECT_FALSE(defaults.isWritten(keys::selectedTheme));
        defaults.setValue(keys::prefsPrintNumbersTag, 0);
    }
    UserDefaults defaults(path());
    registerFirstValues(shipped(), defaults);
    for (const auto& key : switches)
        EXPECT_FALSE(defaults.value(key)) << key.name;
    EXPECT_EQ(defaults.value(keys::prefsPrintNumbersTag), 0);
}

TEST_F(FirstValuesTest, ADarkDesktopStartsWithTheDarkTheme)
{
    makeDesktop(QColor(35, 38, 41));
    ThemeList themes;
    const QString folder = shipped().resources + QStringLiteral("/Themes");
    themes.load(folder, 0, folder);
    const int dark = themes.indexOf(QStringLiteral("Insomniac"));
    ASSERT_GT(dark, 0);
    {
        UserDefaults defaults(path());
        registerFirstValues(shipped(), defaults);
        EXPECT_EQ(defaults.value(keys::selectedTheme), dark);
        defaults.setValue(keys::selectedTheme, 0);
    }
    UserDefaults defaults(path());
    registerFirstValues(shipped(), defaults);
    EXPECT_EQ(defaults.value(keys::selectedTheme), 0) << "the user has chosen";

    defaults.remove(keys::selectedTheme);
    defaults.setValue(keys::firstStartEver, true);
    registerFirstValues(shipped(), defaults);
    EXPECT_FALSE(defaults.isWritten(keys::selectedTheme)) << "not the first start";
}

} // namespace
} // namespace quillory::test
