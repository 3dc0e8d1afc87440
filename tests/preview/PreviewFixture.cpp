#include "PreviewFixture.h"

#include "preview/Confinement.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPalette>
#include <QPushButton>
#include <QTest>
#include <QWebEngineView>
#include <unistd.h>

namespace quillory::test {

namespace {

/// What has to be done before there is an application object.
const int gateSocket = [] {
    if (::geteuid() == 0) // the engine's sandbox is not for root
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    return confineEngine();
}();

bool prepare(bool isDark)
{
    static bool wasPrepared = false;
    if (std::exchange(wasPrepared, true))
        return !isDark;
    if (isDark) {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Base, Qt::black);
        palette.setColor(QPalette::Text, Qt::white);
        QApplication::setPalette(palette);
    }
    followPalette();
    return true;
}

} // namespace

PreviewFixture::PreviewFixture(Look look)
    : hasLook(prepare(look == Look::Dark)), gate(::dup(gateSocket)), window(gate)
{
    EXPECT_TRUE(QDir().mkpath(folder));
    QObject::connect(&window, &PreviewWindow::tells, &window,
                     [this](const QJsonObject& message) { messages += message; });
}

void PreviewFixture::show()
{
    window.receive({{QStringLiteral("do"), QStringLiteral("show")}});
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
}

void PreviewFixture::send(const QByteArray& html, bool isAsked)
{
    window.receive({{QStringLiteral("do"), QStringLiteral("load")},
                    {QStringLiteral("file"), write(QStringLiteral("../text"), html)},
                    {QStringLiteral("path"), QString(folder + QStringLiteral("/page.html"))},
                    {QStringLiteral("folder"), folder},
                    {QStringLiteral("isAsked"), isAsked}});
}

void PreviewFixture::load(const QByteArray& html, bool isAsked)
{
    const int before = told("loaded");
    send(html, isAsked);
    EXPECT_TRUE(QTest::qWaitFor([&] { return told("loaded") > before; }, patience));
    // It is told of sooner where loading takes long.
    EXPECT_TRUE(becomes(QStringLiteral("location.protocol === 'quillory-preview:' && "
                                       "document.readyState === 'complete'")));
}

QVariant PreviewFixture::script(const QString& code)
{
    const auto result = std::make_shared<std::optional<QVariant>>(); // it may come too late
    window.page().runJavaScript(code, [result](const QVariant& value) { *result = value; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return result->has_value(); }, patience)) << qPrintable(code);
    return result->value_or(QVariant());
}

bool PreviewFixture::becomes(const QString& code)
{
    return QTest::qWaitFor([&] { return script(code).toBool(); }, patience);
}

void PreviewFixture::pass(int milliseconds)
{
    QTest::qWait(milliseconds);
}

bool PreviewFixture::answer(const QString& label)
{
    for (QPushButton* button : window.strip().findChildren<QPushButton*>()) {
        if (button->isVisible() && button->text().remove(u'&') == label) {
            QTest::mouseClick(button, Qt::LeftButton);
            return true;
        }
    }
    return false;
}

int PreviewFixture::told(const char* what) const
{
    return int(std::count_if(messages.begin(), messages.end(), [&](const QJsonObject& message) {
        return message[QStringLiteral("tell")].toString() == QLatin1StringView(what);
    }));
}

QString PreviewFixture::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(QDir::cleanPath(folder + u'/' + name));
    QDir().mkpath(QFileInfo(file).path());
    EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    return file.fileName();
}

QUrl PreviewFixture::documentAddress() const
{
    QUrl url;
    url.setScheme(PreviewedFiles::scheme);
    url.setPath(folder + QStringLiteral("/page.html"));
    return url;
}

} // namespace quillory::test
