// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/folderlisting.h"

#include "tests/support/testfiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

using Kind = SourceEntry::Kind;
using Target = SourceEntry::Target;

namespace {

constexpr uid_t nobody = 65534;

// Finds an entry; one without a path if there is none.
SourceEntry entryOf(const SourceListing &listing, const QString &path)
{
    for (const SourceEntry &entry : listing.entries) {
        if (entry.path == path) {
            return entry;
        }
    }
    return {};
}

} // namespace

class TestFolderListingUnix : public QObject
{
    Q_OBJECT

private:
    QString path(const QString &name) const { return m_temp->filePath(name); }
    QByteArray nameOf(const QString &name) const { return QFile::encodeName(path(name)); }
    void makeLink(const QString &name, const QString &target) const
    {
        QCOMPARE(symlink(QFile::encodeName(target).constData(), nameOf(name).constData()), 0);
    }

    std::unique_ptr<QTemporaryDir> m_temp;

private slots:
    void init()
    {
        m_temp = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir(m_temp->path()).mkpath("a/b"));
        QVERIFY(writeFile(path("a/file"), "123"));
    }

    void links_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("target");
        const auto row = [](const char *name, const char *text, Target kind, const char *target) {
            QTest::newRow(name) << QString(text) << static_cast<int>(kind) << QString(target);
        };
        row("to a file", "a/file", Target::Inside, "a/file");
        row("to a folder", "a/b", Target::Inside, "a/b");
        row("with dots", "a/b/../file", Target::Inside, "a/file");
        row("to the folder itself", ".", Target::Inside, "");
        row("over a link", "other", Target::Inside, "a/file");
        row("absolute, inside", "HERE/a/file", Target::Inside, "a/file");
        row("to the parent", "..", Target::Outside, "..");
        row("absolute, outside", "/etc", Target::Outside, "/etc");
        row("to a folder with a longer name", "HERE-2", Target::Outside, "HERE-2");
        row("to nothing", "gone", Target::Missing, "gone");
        row("through a file", "a/file/x", Target::Missing, "a/file/x");
        row("to itself", "link", Target::Circle, "link");
    }

    void links()
    {
        QFETCH(QString, text);
        QFETCH(QString, target);
        const QString here = path("root");
        QVERIFY(QDir(m_temp->path()).mkdir("root") && QDir(m_temp->path()).mkdir("root-2"));
        QVERIFY(QDir(m_temp->path()).rename("a", "root/a"));
        makeLink("root/link", text.replace("HERE", here));
        makeLink("root/other", "a/file");
        const SourceEntry link = entryOf(listFolder(here), "link");
        QCOMPARE(link.kind, Kind::Link);
        QTEST(static_cast<int>(link.targetKind), "kind");
        QCOMPARE(link.target, target.replace("HERE", here));
    }

    void aFolderThatIsALinkIsListed()
    {
        makeLink("link", "a");
        QCOMPARE(entryOf(listFolder(path("link")), "file").size, 3);
    }

    void linksAreNotEntered()
    {
        makeLink("a/up", "..");
        QCOMPARE(listFolder(m_temp->path()).entries.size(), 4);
    }

    void pipesSocketsAndDevices()
    {
        QCOMPARE(mkfifo(nameOf("pipe").constData(), 0600), 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, nameOf("socket").constData(), sizeof address.sun_path);
        const int server = socket(AF_UNIX, SOCK_STREAM, 0);
        QCOMPARE(bind(server, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        close(server);
        const bool hasDevice = mknod(nameOf("device").constData(), S_IFCHR | 0600, makedev(1, 3))
            == 0; // as root only
        const SourceListing listing = listFolder(m_temp->path());
        QCOMPARE(entryOf(listing, "pipe").kind, Kind::Pipe);
        QCOMPARE(entryOf(listing, "socket").kind, Kind::Socket);
        if (hasDevice) {
            QCOMPARE(entryOf(listing, "device").kind, Kind::Device);
        }
    }

    void namesThatAreNoUtf8AreMarked()
    {
        const QByteArray name = QFile::encodeName(m_temp->path()) + "/caf\xe9";
        QCOMPARE(mkdir(name.constData(), 0700), 0);
        QCOMPARE(mkdir((name + "/inside").constData(), 0700), 0);
        const SourceListing listing = listFolder(m_temp->path());
        // Qt cannot remove such folders.
        QCOMPARE(rmdir((name + "/inside").constData()), 0);
        QCOMPARE(rmdir(name.constData()), 0);
        const SourceEntry entry = entryOf(listing, QString("caf") + QChar(0xfffd));
        QCOMPARE(entry.kind, Kind::Folder);
        QVERIFY(entry.nameIsDamaged);
        QCOMPARE(listing.entries.size(), 5); // what is inside can be left out by a pattern, too
    }

    void whatCannotBeReadIsMarked()
    {
        QCOMPARE(chmod(QFile::encodeName(m_temp->path()).constData(), 0755), 0);
        QCOMPARE(chmod(nameOf("a").constData(), 0755), 0);
        QCOMPARE(chmod(nameOf("a/file").constData(), 0000), 0);
        QCOMPARE(chmod(nameOf("a/b").constData(), 0000), 0);
        const bool wasRoot = geteuid() == 0;
        if (wasRoot) {
            QCOMPARE(seteuid(nobody), 0);
        }
        const SourceListing listing = listFolder(m_temp->path());
        if (wasRoot) {
            QCOMPARE(seteuid(0), 0);
        }
        QCOMPARE(chmod(nameOf("a/b").constData(), 0700), 0);
        QCOMPARE(entryOf(listing, "a").kind, Kind::Folder);
        for (const char *name : {"a/file", "a/b"}) {
            QCOMPARE(entryOf(listing, name).kind, Kind::Unreadable);
            QVERIFY(!entryOf(listing, name).problem.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(TestFolderListingUnix)
#include "tst_folderlisting_unix.moc"
