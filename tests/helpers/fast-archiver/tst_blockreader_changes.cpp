// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/blockreader.h"

#include "platform/nativepath.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>

#include "7zCrc.h"

using namespace fast;

// Files that change between the listing and the end of the packing.
class TestBlockReaderChanges : public QObject
{
    Q_OBJECT

private:
    // A source with one file that had `size` bytes when it was listed.
    Source sourceOf(std::uint64_t size) const
    {
        Source source;
        source.folder = toNativePath(m_temp.path() + '/');
        SourceFile file;
        file.path = u"file";
        file.place = toNativePath("file");
        file.size = size;
        source.files.push_back(file);
        return source;
    }

    QString path() const { return m_temp.filePath("file"); }

    // Reads the block to its end. Returns the failure's message, or an empty text.
    static QString readToEnd(BlockReader &reader, QByteArray &content)
    {
        for (;;) {
            const auto bytes = reader.next();
            if (bytes.hasFailed()) {
                const Failure &failure = bytes.failure();
                return failure.status == ExitStatus::Unreadable
                    ? QString::fromStdString(failure.message)
                    : "another status";
            }
            if (bytes.value().empty()) {
                return {};
            }
            content.append(reinterpret_cast<const char *>(bytes.value().data()),
                           static_cast<qsizetype>(bytes.value().size()));
        }
    }

    QTemporaryDir m_temp;
    std::atomic<bool> m_stopped = false;

private slots:
    void initTestCase() { CrcGenerateTable(); }
    void init() { m_stopped = false; }

    void aFileThatDoesNotChangeIsRead()
    {
        const QByteArray written(3000000, 'x');
        QVERIFY(writeFile(path(), written));
        const Source source = sourceOf(3000000);
        const SolidBlock block{{0}, 3000000, false, false};
        Progress progress(m_stopped);
        BlockReader reader(source, block, progress);
        QByteArray content;
        QCOMPARE(readToEnd(reader, content), QString());
        QCOMPARE(content, written);
        QCOMPARE(reader.checkSums(),
                 std::vector<std::uint32_t>{CrcCalc(written.constData(), 3000000)});
    }

    void aFileThatIsNotAsItWasListed_data()
    {
        QTest::addColumn<quint64>("listedSize");
        QTest::newRow("it is longer") << quint64(99);
        QTest::newRow("it is shorter") << quint64(101);
    }
    void aFileThatIsNotAsItWasListed()
    {
        QFETCH(quint64, listedSize);
        QVERIFY(writeFile(path(), QByteArray(100, 'x')));
        const Source source = sourceOf(listedSize);
        const SolidBlock block{{0}, listedSize, false, false};
        Progress progress(m_stopped);
        BlockReader reader(source, block, progress);
        QByteArray content;
        const QString message = readToEnd(reader, content);
        QVERIFY2(message.endsWith("file: has changed while it was packed"), qPrintable(message));
    }

    void aFileThatChangesWhileItIsRead_data()
    {
        QTest::addColumn<qint64>("newSize");
        QTest::newRow("it grows") << qint64(3000001);
        QTest::newRow("it shrinks") << qint64(2999999);
    }
    void aFileThatChangesWhileItIsRead()
    {
#ifdef Q_OS_WIN
        QSKIP("nobody else can write to a file that is being packed");
#endif
        QFETCH(qint64, newSize);
        QVERIFY(writeFile(path(), QByteArray(3000000, 'x')));
        const Source source = sourceOf(3000000);
        const SolidBlock block{{0}, 3000000, false, false};
        Progress progress(m_stopped);
        BlockReader reader(source, block, progress);
        QVERIFY(!reader.next().hasFailed());
        QVERIFY(QFile::resize(path(), newSize));
        QByteArray content;
        const QString message = readToEnd(reader, content);
        QVERIFY2(message.endsWith("file: has changed while it was packed"), qPrintable(message));
    }

    void aFileThatHasVanished()
    {
        QFile::remove(path());
        const Source source = sourceOf(100);
        const SolidBlock block{{0}, 100, false, false};
        Progress progress(m_stopped);
        BlockReader reader(source, block, progress);
        QByteArray content;
        const QString message = readToEnd(reader, content);
        QVERIFY2(message.contains("file: cannot be opened - "), qPrintable(message));
    }

    void anInterruptionEndsIt()
    {
        QVERIFY(writeFile(path(), QByteArray(100, 'x')));
        const Source source = sourceOf(100);
        const SolidBlock block{{0}, 100, false, false};
        Progress progress(m_stopped);
        BlockReader reader(source, block, progress);
        m_stopped = true;
        const auto bytes = reader.next();
        QVERIFY(bytes.hasFailed());
        QVERIFY(bytes.failure().status == ExitStatus::Interrupted);
    }
};

QTEST_APPLESS_MAIN(TestBlockReaderChanges)
#include "tst_blockreader_changes.moc"
