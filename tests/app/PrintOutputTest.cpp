#include "../support/EnvironmentVariable.h"

#include "app/PrintOutput.h"
#include "app/PrintSetup.h"

#include <QFile>
#include <QPrinter>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;
using Outcome = QPPrintableTextView::Outcome;

/// A print system that keeps what it was given.
class PrintQueueTest : public ::testing::Test
{
protected:
    void makeLp(const QByteArray& script) const
    {
        QFile lp(m_folder.filePath(u"lp"_s));
        ASSERT_TRUE(lp.open(QIODevice::WriteOnly | QIODevice::Truncate));
        lp.write("#!/bin/sh\n" + script);
        lp.close();
        ASSERT_TRUE(lp.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    QByteArray queued(const QString& name) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    PrintAnswer print(const GoOn& goOn = [](QPPrintableTextView::Progress) { return true; }) const
    {
        const EnvironmentVariable folder("QUEUE", m_folder.path().toUtf8());
        const EnvironmentVariable path("PATH", m_folder.path().toUtf8() + ':' + qgetenv("PATH"));
        QPPrintableTextView::Job job;
        job.text.text = TextSnapshot(u"words\n"_s.repeated(200));
        job.range = job.text.text.range();
        job.font = QFont(u"DejaVu Sans Mono"_s, 10);
        QPPrintableTextView view(job);
        return queuePages(view, {u"room 3"_s, {u"-n"_s, u"2"_s}},
                          {PrintSetup::usualLayout(), u"-a title"_s}, goOn);
    }

    QTemporaryDir m_folder;
};

const QByteArray keeps = "for last; do :; done\n"
                         "printf '%s\\n' \"$@\" > \"$QUEUE/arguments\"\n"
                         "cat \"$last\" > \"$QUEUE/pages\"\n";

TEST_F(PrintQueueTest, GetsAllOfThePages)
{
    makeLp(keeps);
    const PrintAnswer answer = print();
    EXPECT_EQ(answer.outcome, Outcome::Printed) << answer.error.toStdString();
    EXPECT_GT(answer.pageCount, 1);
    EXPECT_EQ(answer.currentPage, answer.pageCount);
    EXPECT_TRUE(queued(u"pages"_s).startsWith("%PDF-"));
    EXPECT_TRUE(queued(u"pages"_s).trimmed().endsWith("%%EOF"));
    const QByteArrayList arguments = queued(u"arguments"_s).split('\n');
    EXPECT_EQ(arguments.mid(0, 6), QByteArrayList({"-n", "2", "-d", "room 3", "-t", "-a title"}));
    EXPECT_FALSE(QFile::exists(QString::fromUtf8(arguments.value(6)))) << "the pages are left";
}

TEST_F(PrintQueueTest, GetsNothingOfWhatWasGivenUp)
{
    makeLp(keeps);
    const PrintAnswer given =
        print([](QPPrintableTextView::Progress progress) { return progress.page < 2; });
    EXPECT_EQ(given.outcome, Outcome::Cancelled);
    EXPECT_EQ(queued(u"arguments"_s), "(none)");

    makeLp("exec sleep 60\n");
    int looks = 0;
    const PrintAnswer silent = print(
        [&](QPPrintableTextView::Progress progress) { return progress.share < 1 || ++looks < 4; });
    EXPECT_EQ(silent.outcome, Outcome::Cancelled);
}

TEST_F(PrintQueueTest, SaysWhatThePrintSystemSays)
{
    makeLp("echo 'lp: The printer or class does not exist.' >&2; exit 1\n");
    const PrintAnswer refused = print();
    EXPECT_EQ(refused.outcome, Outcome::Failed);
    EXPECT_EQ(refused.error, u"lp: The printer or class does not exist."_s);

    ASSERT_TRUE(QFile::remove(m_folder.filePath(u"lp"_s)));
    const EnvironmentVariable path("PATH", m_folder.path().toUtf8());
    const PrintAnswer missing = print();
    EXPECT_EQ(missing.outcome, Outcome::Failed);
    EXPECT_TRUE(missing.error.contains(u"cups-client"_s));
}

TEST(PrinterQueue, HasWhatTheDialogSet)
{
    QPrinter printer;
    printer.setOutputFileName(u"unused.pdf"_s); // without a print service
    printer.setCopyCount(3);
    printer.setCollateCopies(true);
    printer.setPageSize(QPageSize(QPageSize::A5));
    printer.setPageOrientation(QPageLayout::Landscape);
    EXPECT_EQ(PrinterQueue::of(printer).options,
              QStringList({u"-n"_s, u"3"_s, u"-o"_s, u"Collate=True"_s, u"-o"_s, u"media=A5"_s,
                           u"-o"_s, u"sides=one-sided"_s, u"-o"_s, u"landscape"_s}));
}

} // namespace
} // namespace quillory::test
