#pragma once

#include "AppFixture.h"

#include "app/DocumentWindow.h"
#include "app/PrintFlow.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

namespace quillory::test {

/// Prints to a file, and reads back what is in it.
class PrintFixture : public AppFixture
{
protected:
    static constexpr int patience = 30000; ///< milliseconds; only a failing test waits that long

    void SetUp() override
    {
        if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
            GTEST_SKIP() << "pdftotext (poppler-utils) is not installed";
    }

    static bool isPrinted(DocumentWindow& window)
    {
        return QTest::qWaitFor([&] { return !window.printing().isPrinting(); }, patience);
    }

    /// Chooses File > Save as PDF and waits until the file is there.
    void savePages(DocumentWindow& window)
    {
        questions.savePath = pdf;
        choose(window, QStringLiteral("File/Save as PDF…"));
        ASSERT_TRUE(isPrinted(window));
    }

    static QString outputOf(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.start(program, arguments);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput());
    }

    /// The text of the PDF file, a page a string.
    QStringList pages() const
    {
        QStringList pages = outputOf(QStringLiteral("pdftotext"),
                                     {QStringLiteral("-layout"), pdf, QStringLiteral("-")})
                                .split(u'\f');
        pages.removeLast(); // each page ends with a form feed
        return pages;
    }

    /// What pdfinfo says of the file after \a label.
    QString fact(const QString& label) const
    {
        for (const QString& line : outputOf(QStringLiteral("pdfinfo"), {pdf}).split(u'\n'))
            if (line.startsWith(label + u':'))
                return line.mid(label.size() + 1).trimmed();
        return {};
    }

    /// "row 1" and so on.
    static QByteArray rows(int count)
    {
        QByteArray text;
        for (int i = 1; i <= count; ++i)
            text += "row " + QByteArray::number(i) + '\n';
        return text;
    }

    const QString pdf = folder.filePath(QStringLiteral("out.pdf"));
};

} // namespace quillory::test
