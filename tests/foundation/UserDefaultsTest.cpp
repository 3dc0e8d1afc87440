#include "foundation/UserDefaults.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

class UserDefaultsTest : public ::testing::Test
{
protected:
    /// What a program that starts now reads.
    UserDefaults reopened() const { return UserDefaults(m_path); }

    void writeFile(const QByteArray& content) const
    {
        QFile file(m_path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(QStringLiteral("Quillory/Quillory.conf"));
};

TEST_F(UserDefaultsTest, UnwrittenKeysReadAsNothing)
{
    const UserDefaults defaults = reopened();
    EXPECT_FALSE(defaults.value(keys::wrapLines));
    EXPECT_EQ(defaults.value(keys::fontSize), 0);
    EXPECT_EQ(defaults.value(keys::customFontName), QString());
    EXPECT_EQ(defaults.value(keys::dropboxPath), QUrl());
    EXPECT_FALSE(defaults.isWritten(keys::wrapLines));
}

TEST_F(UserDefaultsTest, WrittenValuesOutliveTheProgram)
{
    const QString title = QStringLiteral("Ünï, \"quoted\"; @value\n=");
    const QUrl folder = QUrl::fromLocalFile(QStringLiteral("/home/me/My Dropbox #1"));
    {
        UserDefaults defaults = reopened();
        defaults.setValue(keys::wrapLines, true);
        defaults.setValue(keys::isiCloudAvailable, true);
        defaults.setValue(keys::isIcloudAvailable, false);
        defaults.setValue(keys::selectedTheme, -1);
        defaults.setValue(keys::footerTitle, title);
        defaults.setValue(keys::dropboxPath, folder);
        EXPECT_TRUE(defaults.synchronize());
    }
    const UserDefaults defaults = reopened();
    EXPECT_TRUE(defaults.value(keys::wrapLines));
    EXPECT_TRUE(defaults.value(keys::isiCloudAvailable)); // two keys, in spite of their names
    EXPECT_FALSE(defaults.value(keys::isIcloudAvailable));
    EXPECT_EQ(defaults.value(keys::selectedTheme), -1);
    EXPECT_EQ(defaults.value(keys::footerTitle), title);
    EXPECT_EQ(defaults.value(keys::dropboxPath), folder);
}

TEST_F(UserDefaultsTest, RegisteredValuesStandInUntilWritten)
{
    UserDefaults defaults = reopened();
    defaults.registerDefault(keys::wrapLines, true);
    defaults.registerDefault(keys::fontSize, 2);
    EXPECT_TRUE(defaults.value(keys::wrapLines));
    EXPECT_EQ(defaults.value(keys::fontSize), 2);

    defaults.setValue(keys::wrapLines, false);
    defaults.registerDefault(keys::wrapLines, true);
    EXPECT_FALSE(defaults.value(keys::wrapLines));
    EXPECT_FALSE(reopened().isWritten(keys::fontSize));

    defaults.remove(keys::wrapLines);
    EXPECT_TRUE(defaults.value(keys::wrapLines));
}

TEST_F(UserDefaultsTest, TellsOfEachKeyThatIsWritten)
{
    UserDefaults defaults = reopened();
    QStringList told;
    QObject::connect(&defaults, &UserDefaults::changed, &defaults, [&](QLatin1StringView key) {
        told += QString(key) + QString::number(defaults.value(keys::fontSize));
    });
    defaults.registerDefault(keys::fontSize, 5);
    defaults.setValue(keys::fontSize, 2);
    defaults.setValue(keys::wrapLines, false);
    defaults.remove(keys::fontSize);
    EXPECT_EQ(told, (QStringList{QStringLiteral("fontSize2"), QStringLiteral("wrapLines2"),
                                 QStringLiteral("fontSize5")}));
}

TEST_F(UserDefaultsTest, ReadsWhatPeopleWrite)
{
    UserDefaults(m_path).setValue(keys::font, 1); // makes the folder
    writeFile("[General]\nwrapLines=YES\nhighlight=NO\nshowCompletions=1\nsmartCopy=off\n"
              "fontSize=many\nfont=3\nfooterTitle=Notes, 2026\nprefsPrintNumbers=true\n"
              "dropboxPath=/srv/share\n");
    const UserDefaults defaults = reopened();
    EXPECT_TRUE(defaults.value(keys::wrapLines));
    EXPECT_FALSE(defaults.value(keys::highlight));
    EXPECT_TRUE(defaults.value(keys::showCompletions));
    EXPECT_FALSE(defaults.value(keys::smartCopy));
    EXPECT_EQ(defaults.value(keys::fontSize), 0);
    EXPECT_EQ(defaults.value(keys::font), 3);
    EXPECT_EQ(defaults.value(keys::footerTitle), u"Notes, 2026");
    EXPECT_EQ(defaults.value(keys::prefsPrintNumbers), 1);
    EXPECT_EQ(defaults.value(keys::dropboxPath), QUrl::fromLocalFile(QStringLiteral("/srv/share")));
}

} // namespace
} // namespace quillory
