#pragma once

#include "preview/NetworkGate.h"
#include "preview/PreviewPage.h"
#include "preview/PreviewWindow.h"
#include "preview/Strip.h"
#include "support/RecordingServer.h"

#include <QJsonObject>
#include <QTemporaryDir>
#include <QVariant>
#include <gtest/gtest.h>

namespace quillory::test {

constexpr int patience = 20000; ///< milliseconds; only a failing test waits that long

/// A preview window, as the editor would use it, over a document's folder and what lies around it.
class PreviewFixture : public ::testing::Test
{
protected:
    enum class Look
    {
        Light,
        Dark
    };

    explicit PreviewFixture(Look look = Look::Light);

    void show();
    /// Loads \a html as the document's text.
    void send(const QByteArray& html, bool isAsked = false);
    /// The same, and waits until it is loaded.
    void load(const QByteArray& html, bool isAsked = true);
    /// What \a code comes to in the page.
    QVariant script(const QString& code);
    /// Waits until \a code comes to true.
    bool becomes(const QString& code);
    /// Lets the page do what it does for that many milliseconds.
    static void pass(int milliseconds);
    bool answer(const QString& button);
    QString titleTold() const;
    int told(const char* what) const;

    /// Writes a file beside the document, or elsewhere with a path that says so.
    QString write(const QString& name, const QByteArray& bytes) const;
    QUrl documentAddress() const;

    QTemporaryDir outside;
    QString folder = outside.filePath(QStringLiteral("the document's folder"));
    const bool hasLook; ///< it is too late for it in all but the first window of a process
    NetworkGate gate;
    PreviewWindow window;
    QList<QJsonObject> messages;
};

} // namespace quillory::test
