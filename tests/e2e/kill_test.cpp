// Kills the editor in the midst of typing, and compares what its journal gives with a model of the
// text: kill_test [ROUNDS [SEED]]. Prints the seed of a round that fails.
//
// Each round starts this program again, which types into a window of the real classes by key events
// and says after each of them that it is done; this one kills it at a moment of its own. Afterwards
// every key press that was done is there, and of the one that was under way nothing or all.

#include "app/DialogQuestions.h"
#include "app/DocumentController.h"
#include "app/SaveFlow.h"
#include "document/Document.h"
#include "document/RecoveredDocument.h"
#include "document/RecoveryStore.h"
#include "document/SystemFileOps.h"
#include "foundation/ApplicationFolders.h"
#include "foundation/NotificationCenter.h"
#include "foundation/UserDefaults.h"
#include "support/Folders.h"
#include "view/TextViewWidget.h"

#include <QApplication>
#include <QDir>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace quillory;

namespace {

constexpr int keysInARound = 400; ///< more than are typed before the kill

/// One key press, the same ones from the same seed.
struct Key
{
    enum class Kind
    {
        Character,
        NewLine,
        Backspace,
        Left,
        Home,
        Replace, ///< select all, and type
        Save
    };
    Kind kind;
    QString text;
};

std::vector<Key> keysOf(unsigned seed)
{
    using Kind = Key::Kind;
    static const QStringList characters{QStringLiteral("a"), QStringLiteral("é"),
                                        QStringLiteral("漢"), QStringLiteral("😀"),
                                        QStringLiteral("z")};
    std::mt19937 random(seed);
    const bool named = seed % 2 == 0;
    std::vector<Key> keys;
    for (int i = 0; i < keysInARound; ++i) {
        const QString text = characters[int(random() % quint64(characters.size()))];
        const unsigned choice = random() % 40;
        if (choice < 3)
            keys.push_back({Kind::Backspace, {}});
        else if (choice < 6)
            keys.push_back({Kind::NewLine, QStringLiteral("\n")});
        else if (choice < 9)
            keys.push_back({Kind::Left, {}});
        else if (choice < 10)
            keys.push_back({Kind::Home, {}});
        else if (choice < 11)
            keys.push_back({Kind::Replace, text});
        else if (choice < 12 && named)
            keys.push_back({Kind::Save, {}});
        else
            keys.push_back({Kind::Character, text});
    }
    return keys;
}

/// What a text of no language makes of the keys.
struct Model
{
    QString text;
    qsizetype caret = 0;

    qsizetype before() const
    {
        const bool pair = caret > 1 && text[caret - 1].isLowSurrogate();
        return std::max<qsizetype>(0, caret - (pair ? 2 : 1));
    }

    void press(const Key& key)
    {
        switch (key.kind) {
        case Key::Kind::Character:
        case Key::Kind::NewLine:
            text.insert(caret, key.text);
            caret += key.text.size();
            break;
        case Key::Kind::Backspace: {
            const qsizetype to = before();
            text.remove(to, caret - to);
            caret = to;
            break;
        }
        case Key::Kind::Left:
            caret = before();
            break;
        case Key::Kind::Home:
            caret = caret == 0 ? 0 : text.lastIndexOf(u'\n', caret - 1) + 1;
            break;
        case Key::Kind::Replace:
            text = key.text;
            caret = text.size();
            break;
        case Key::Kind::Save:
            break;
        }
    }
};

const QString firstText = QStringLiteral("first\nsecond\n");

struct Place
{
    explicit Place(const QString& path) : folder(path), store(ops, path + u"/recovery") {}

    QString file() const { return folder + u"/a.txt"; }

    QString folder;
    SystemFileOps ops;
    RecoveryStore store;
};

/// The one that is killed.
int typeUntilKilled(const QString& folder, unsigned seed)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc = 1;
    char name[] = "kill_test";
    char* argv[] = {name, nullptr};
    QApplication application(argc, argv);
    Place place(folder);
    ApplicationFolders folders;
    folders.applicationSupport = folder + u"/support";
    folders.caches = folder + u"/caches";
    folders.resources = QStringLiteral(QUILLORY_SOURCE_DIR "/resources");
    UserDefaults defaults(folder + u"/Quillory.conf");
    NotificationCenter notifications;
    QSettings state(folder + u"/Windows.conf", QSettings::IniFormat);
    DialogQuestions questions;
    const DocumentEnvironment environment{folders, defaults, notifications, place.ops, place.store};
    DocumentController controller(environment, questions, state);
    if (seed % 2 == 0)
        controller.open({{place.file(), {}}});
    else
        controller.newDocument();
    DocumentWindow& window = *controller.windows().front();
    QWidget& view = window.view();
    for (const Key& key : keysOf(seed)) {
        switch (key.kind) {
        case Key::Kind::Backspace:
            QTest::keyClick(&view, Qt::Key_Backspace);
            break;
        case Key::Kind::Left:
            QTest::keyClick(&view, Qt::Key_Left);
            break;
        case Key::Kind::Home:
            QTest::keyClick(&view, Qt::Key_Home);
            break;
        case Key::Kind::NewLine:
            QTest::keyClick(&view, Qt::Key_Return);
            break;
        case Key::Kind::Save:
            window.saving().save();
            break;
        case Key::Kind::Replace:
            window.document().textView().selectAll();
            [[fallthrough]];
        case Key::Kind::Character:
            QTest::sendKeyEvent(QTest::Click, &view, Qt::Key_unknown, key.text, Qt::NoModifier);
            break;
        }
        if (write(STDOUT_FILENO, "k", 1) != 1)
            return 1;
        QCoreApplication::processEvents();
    }
    return 0;
}

/// What the next start of the program would show.
QString textBroughtBack(Place& place, bool named)
{
    for (const QString& id : JournalFile::idsIn(place.ops, place.store)) {
        const RecoveredDocument recovered = recoverJournal(place.ops, place.store, id);
        if (recovered.state == RecoveredDocument::State::Text)
            return recovered.document.text->string();
        if (recovered.state == RecoveredDocument::State::Pieces)
            return QStringLiteral("(pieces)");
    }
    QFile file(place.file());
    return named && file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Waits for so many key presses; answers how many there were, and fewer at the end only.
int waitForKeys(int descriptor, int count)
{
    std::array<char, 64> buffer;
    int got = 0;
    while (got < count) {
        const ssize_t size =
            read(descriptor, buffer.data(), std::min<size_t>(buffer.size(), size_t(count - got)));
        if (size <= 0)
            break;
        got += int(size);
    }
    return got;
}

bool passesRound(const char* program, unsigned seed)
{
    const QTemporaryDir folder;
    Place place(folder.path());
    const bool named = seed % 2 == 0;
    if (named) {
        QFile file(place.file());
        if (!file.open(QFile::WriteOnly) || file.write(firstText.toUtf8()) < 0)
            return false;
    }
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    QByteArray path = folder.path().toUtf8();
    QByteArray number = QByteArray::number(seed);
    QByteArray self(program);
    char option[] = "--type";
    char* arguments[] = {self.data(), option, path.data(), number.data(), nullptr};
    pid_t child = 0;
    const int started =
        posix_spawn(&child, "/proc/self/exe", &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (started != 0)
        return false;

    std::mt19937 random(seed * 7919);
    int done = waitForKeys(ends[0], int(1 + random() % 60));
    usleep(random() % 4000);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    done += waitForKeys(ends[0], keysInARound);
    close(ends[0]);

    const std::vector<Key> keys = keysOf(seed);
    Model model;
    if (named)
        model.text = firstText;
    for (int i = 0; i < done; ++i)
        model.press(keys[size_t(i)]);
    const QString expected = model.text;
    if (done < keysInARound)
        model.press(keys[size_t(done)]);
    const QString got = textBroughtBack(place, named);
    if (got == expected || got == model.text)
        return true;
    std::fprintf(stderr, "seed %u, after %d keys:\n  expected %s\n  got      %s\n", seed, done,
                 qUtf8Printable(expected), qUtf8Printable(got));
    return false;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc == 4 && std::string_view(argv[1]) == "--type")
        return typeUntilKilled(QString::fromUtf8(argv[2]), unsigned(std::atoi(argv[3])));
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 200;
    const unsigned first = argc > 2 ? unsigned(std::atoi(argv[2])) : 1;
    int failed = 0;
    for (int i = 0; i < rounds; ++i)
        failed += passesRound(argv[0], first + unsigned(i)) ? 0 : 1;
    std::printf("%d rounds from seed %u, %d failed\n", rounds, first, failed);
    return failed == 0 ? 0 : 1;
}
