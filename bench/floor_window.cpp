// The floors that the editor is measured against: an empty window of the same toolkit, and reading
// a file and copying it once.
//
//   floor_window            start to first paint, and memory, of a window with one word in it:
//                           whatever shows text loads the fonts
//   floor_window FILE       reads and copies FILE
//   floor_window FILE OUT   writes what FILE holds to OUT, durably

#include "Probe.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QMainWindow>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

using namespace quillory::bench;

namespace {

struct Bytes
{
    std::unique_ptr<char[]> data;
    qint64 size = 0;
};

Bytes readAll(const char* path)
{
    QFile file(QString::fromLocal8Bit(path));
    Bytes bytes;
    if (!file.open(QFile::ReadOnly | QFile::Unbuffered))
        return bytes;
    bytes.data = std::make_unique_for_overwrite<char[]>(size_t(file.size()));
    bytes.size = file.read(bytes.data.get(), file.size());
    return bytes;
}

void readAndCopy(const char* path)
{
    const qint64 start = now();
    const Bytes bytes = readAll(path);
    const auto copy = std::make_unique_for_overwrite<char[]>(size_t(bytes.size));
    std::memcpy(copy.get(), bytes.data.get(), size_t(bytes.size));
    report({{"seconds", double(now() - start) / 1e9}, {"last", copy[size_t(bytes.size) - 1]}});
}

void writeDurably(const char* source, const char* target)
{
    const Bytes bytes = readAll(source);
    const QByteArray temporary = QByteArray(target) + ".tmp";
    const qint64 start = now();
    const int descriptor =
        open(temporary.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    for (qint64 done = 0; done < bytes.size;) {
        const ssize_t count = write(descriptor, bytes.data.get() + done, size_t(bytes.size - done));
        if (count <= 0)
            std::exit(1);
        done += count;
    }
    fsync(descriptor);
    close(descriptor);
    if (rename(temporary.constData(), target) != 0)
        std::exit(1);
    report({{"seconds", double(now() - start) / 1e9}});
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3) {
        writeDurably(argv[1], argv[2]);
        return 0;
    }
    if (argc == 2) {
        readAndCopy(argv[1]);
        return 0;
    }
    QApplication application(argc, argv);
    QMainWindow window;
    QLabel label(QStringLiteral("Quillory"));
    window.setCentralWidget(&label);
    window.resize(800, 600);
    const PaintProbe paint([&](QObject* object) { return object == &label; },
                           [](qint64 at) {
                               report({{"at", double(at)}, {"memory", double(residentBytes())}});
                               std::_Exit(0);
                           });
    window.show();
    return QApplication::exec();
}
