#include "app/StandardInput.h"

#include <QThread>
#include <gtest/gtest.h>
#include <unistd.h>

namespace quillory {
namespace {

/// Puts the reading end of a pipe in the place of standard input.
class InputPipe
{
public:
    InputPipe() : m_saved(dup(STDIN_FILENO))
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe(ends), 0);
        dup2(ends[0], STDIN_FILENO);
        close(ends[0]);
        m_end = ends[1];
    }
    ~InputPipe()
    {
        finish();
        dup2(m_saved, STDIN_FILENO);
        close(m_saved);
    }

    void send(const QByteArray& bytes) const
    {
        EXPECT_EQ(write(m_end, bytes.constData(), size_t(bytes.size())), bytes.size());
    }
    void finish()
    {
        if (m_end >= 0)
            close(std::exchange(m_end, -1));
    }

private:
    int m_saved;
    int m_end = -1;
};

TEST(StandardInputTest, readsWhatComesInPieces)
{
    InputPipe pipe;
    ReadResult result;
    const std::unique_ptr<QThread> reader(
        QThread::create([&result] { result = readStandardInput(false); }));
    reader->start();
    pipe.send("\xff\xfe"
              "a");
    pipe.send(QByteArray("\0b\0", 3));
    pipe.finish();
    reader->wait();
    ASSERT_TRUE(result.answer) << qPrintable(result.message);
    ASSERT_TRUE(result.text);
    EXPECT_EQ(result.text->string(), QStringLiteral("ab"));
    EXPECT_EQ(result.path, QString());
}

TEST(StandardInputTest, endsWhenTheUserCancels)
{
    const InputPipe pipe;
    ReadResult result;
    std::atomic_bool cancelled = false;
    const std::unique_ptr<QThread> reader(
        QThread::create([&] { result = readStandardInput(cancelled); }));
    reader->start();
    pipe.send("never finished");
    cancelled = true;
    EXPECT_TRUE(reader->wait(20'000));
    EXPECT_FALSE(result.answer);
}

} // namespace
} // namespace quillory
