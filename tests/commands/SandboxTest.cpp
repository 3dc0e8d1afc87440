#include "commands/Sandbox.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;
using Kind = Sandbox::Kind;

TEST(Sandbox, IsKnownByWhatItLeaves)
{
    const QTemporaryDir folder;
    const auto touch = [&](const QString& path, const QByteArray& text = {}) {
        QDir().mkpath(QFileInfo(folder.filePath(path)).path());
        QFile file(folder.filePath(path));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        file.write(text);
        return folder.filePath(path);
    };
    touch(u"flatpak/.flatpak-info"_s);
    touch(u"podman/run/.containerenv"_s);
    touch(u"docker/.dockerenv"_s);
    touch(u"classic/meta/snap.yaml"_s, "name: quillory\nconfinement: classic\n");
    touch(u"strict/meta/snap.yaml"_s, "name: quillory\nconfinement: strict\n");
    const QString classic = folder.filePath(u"classic"_s);
    const QString strict = folder.filePath(u"strict"_s);

    const struct
    {
        QString root;
        QString variable;
        QString value;
        QString program;
        Kind kind;
        bool isSandboxed;
    } cases[]{
        {u"plain"_s, u"HOME"_s, u"/home/ann"_s, u"/usr/bin/quillory"_s, Kind::None, false},
        {u"flatpak"_s, u"container"_s, u"flatpak"_s, u"/app/bin/quillory"_s, Kind::Flatpak, true},
        {u"plain"_s, u"SNAP"_s, strict, strict + u"/bin/quillory"_s, Kind::Snap, true},
        {u"plain"_s, u"SNAP"_s, classic, classic + u"/bin/quillory"_s, Kind::None, false},
        {u"plain"_s, u"SNAP"_s, strict, u"/usr/bin/quillory"_s, Kind::None, false},
        {u"plain"_s, u"container"_s, u"toolbox"_s, u"/usr/bin/quillory"_s, Kind::Container, false},
        {u"podman"_s, u"HOME"_s, u"/root"_s, u"/usr/bin/quillory"_s, Kind::Container, false},
        {u"docker"_s, u"HOME"_s, u"/root"_s, u"/usr/bin/quillory"_s, Kind::Container, false},
    };
    for (const auto& c : cases) {
        QProcessEnvironment environment;
        environment.insert(c.variable, c.value);
        const Sandbox found = Sandbox::of({environment, c.program, folder.filePath(c.root)});
        EXPECT_EQ(found.kind, c.kind) << qPrintable(c.root + u' ' + c.value);
        EXPECT_EQ(found.isSandboxed(), c.isSandboxed) << qPrintable(c.root + u' ' + c.value);
        EXPECT_EQ(found.name.isEmpty(), c.kind == Kind::None);
    }
}

} // namespace
} // namespace quillory
