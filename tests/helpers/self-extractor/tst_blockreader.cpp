// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/blockreader.h"
#include "helpers/self-extractor/start/peimage.h"
#include "tests/helpers/self-extractor/memorysource.h"

#include <QTest>
#include <QtEndian>

using namespace sfx;

namespace {

QByteArray blockOf(const QByteArray &lines)
{
    return ";!@Install@!UTF-8!\n" + lines + ";!@InstallEnd@!\n";
}

QByteArray blockFor(const QByteArray &program, const QByteArray &path)
{
    return blockOf("RunProgram=\"" + program + "\"\nInstallPath=\"" + path + "\"\n");
}

QString toQString(const Text &text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

// An image with one section of 512 bytes at 512.
QByteArray smallImage()
{
    QByteArray image(1024, '\0');
    image.replace(0, 2, "MZ");
    qToLittleEndian<quint32>(64, image.data() + 0x3c);
    image.replace(64, 4, QByteArray("PE\0\0", 4));
    qToLittleEndian<quint16>(1, image.data() + 64 + 6);
    qToLittleEndian<quint16>(240, image.data() + 64 + 20);
    qToLittleEndian<quint32>(512, image.data() + 64 + 24 + 240 + 16);
    qToLittleEndian<quint32>(512, image.data() + 64 + 24 + 240 + 20);
    return image;
}

} // namespace

class TestBlockReader : public QObject
{
    Q_OBJECT

private slots:
    void readsTheBlockOfThePacker();
    void showsProgressOnlyWhenAsked();
    void acceptsAndRefuses_data();
    void acceptsAndRefuses();
    void stopsAtItsLimit();
    void findsTheEndOfTheImage_data();
    void findsTheEndOfTheImage();
    void readsBehindTheImage();
};

void TestBlockReader::readsTheBlockOfThePacker()
{
    const QByteArray bytes = blockOf("Title=\"my \xe7\xa8\x8b Portable\"\n"
                                     "BeginPrompt=\"\xe7\xa1\xae\xe5\xae\x9a?\"\n"
                                     "Progress=\"yes\"\n"
                                     "RunProgram=\"my \xf0\x9f\x98\x80.tool.exe\"\n"
                                     "InstallPath=\"%%T\\my \xe7\xa8\x8b\"\n"
                                     "GUIMode=\"2\"\nSilent=\"1\"\nOverwrite=\"1\"\n");
    const QByteArray file = bytes + "7z\xbc\xaf" + QByteArray(5000, 'x');
    ConfigBlock block;
    std::size_t size = 0;
    QCOMPARE(parseConfigBlock(file.constData(), static_cast<std::size_t>(file.size()), block, size),
             Status::Ok);
    QCOMPARE(size, static_cast<std::size_t>(bytes.size()));
    QCOMPARE(toQString(block.title), QStringLiteral("my \u7a0b Portable"));
    QCOMPARE(toQString(block.runProgram), QStringLiteral("my \U0001f600.tool.exe"));
    QCOMPARE(toQString(block.folderName), QStringLiteral("my \u7a0b"));
    QVERIFY(block.silent);
    QVERIFY(block.progress);
}

void TestBlockReader::showsProgressOnlyWhenAsked()
{
    for (const char *line : {"", "Progress=\"no\"\n", "Progress=\"\"\n"}) {
        const QByteArray bytes
            = blockOf(QByteArray(line) + "RunProgram=\"a.exe\"\nInstallPath=\"%%T\\a\"\n");
        ConfigBlock block;
        std::size_t size = 0;
        QCOMPARE(parseConfigBlock(bytes.constData(), static_cast<std::size_t>(bytes.size()), block,
                                  size),
                 Status::Ok);
        QVERIFY2(!block.progress, line);
    }
}

void TestBlockReader::acceptsAndRefuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("folder");
    const auto row = [](const char *name, const QByteArray &bytes, const QString &program = {},
                        const QString &folder = {}) {
        QTest::newRow(name) << bytes << !program.isEmpty() << program << folder;
    };
    const QString app = QStringLiteral("a.exe");
    const QString folder = QStringLiteral("a");
    row("a plain block", blockFor("a.exe", "%%T\\a"), app, folder);
    row("carriage returns", blockFor("a.exe", "%%T\\a").replace("\n", "\r\n"), app, folder);
    row("an unknown key", blockOf("Foo=\"1\"\nRunProgram=\"a.exe\"\nInstallPath=\"%%T\\a\"\n"), app,
        folder);
    row("a percent sign in the name", blockFor("100%.exe", "%%T\\100%"), QStringLiteral("100%.exe"),
        QStringLiteral("100%"));
    row("signs of the block's own syntax in the name", blockFor("a;b=c.exe", "%%T\\a"),
        QStringLiteral("a;b=c.exe"), folder);
    row("a folder name that is empty", blockFor("a.exe", "%%T\\"), app, QStringLiteral("app"));
    row("a folder name that is a device", blockFor("a.exe", "%%T\\nul"), app,
        QStringLiteral("app"));
    row("a program that is a device", blockFor("nul.exe", "%%T\\a"));
    row("a folder name that ends in a blank", blockFor("a.exe", "%%T\\a "), app,
        QStringLiteral("app"));
    row("a quote in the program's name", blockFor("a\"b.exe", "%%T\\a"));
    row("a folder above", blockFor("a.exe", "%%T\\.."));
    row("a folder elsewhere", blockFor("a.exe", "C:\\Windows"));
    row("a folder below another", blockFor("a.exe", "%%T\\a\\b"));
    row("a program in another folder", blockFor("..\\a.exe", "%%T\\a"));
    row("a program with a drive", blockFor("c:a.exe", "%%T\\a"));
    row("no program", blockOf("InstallPath=\"%%T\\a\"\n"));
    row("an empty program", blockFor("", "%%T\\a"));
    row("no folder", blockOf("RunProgram=\"a.exe\"\n"));
    row("a key that comes twice",
        blockOf("RunProgram=\"a.exe\"\nRunProgram=\"b.exe\"\n"
                "InstallPath=\"%%T\\a\"\n"));
    row("the title twice",
        blockOf("Title=\"a\"\nTitle=\"b\"\nRunProgram=\"a.exe\"\nInstallPath=\"%%T\\a\"\n"));
    row("a value without its second quote",
        blockOf("RunProgram=\"a.exe\nInstallPath=\"%%T\\a\"\n"));
    row("a line without a value", blockOf("RunProgram\nInstallPath=\"%%T\\a\"\n"));
    row("text that is not UTF-8", blockFor("a\xff.exe", "%%T\\a"));
    row("an overlong zero", blockFor("a\xc0\x80.exe", "%%T\\a"));
    row("no end", blockFor("a.exe", "%%T\\a").chopped(1));
    row("no beginning", blockFor("a.exe", "%%T\\a").mid(1));
    row("nothing", QByteArray());
}

void TestBlockReader::acceptsAndRefuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, accepted);
    ConfigBlock block;
    std::size_t size = 0;
    const Status status
        = parseConfigBlock(bytes.constData(), static_cast<std::size_t>(bytes.size()), block, size);
    QCOMPARE(status, accepted ? Status::Ok : Status::Damaged);
    if (accepted) {
        QTEST(toQString(block.runProgram), "program");
        QTEST(toQString(block.folderName), "folder");
    }
}

void TestBlockReader::stopsAtItsLimit()
{
    const QByteArray rest = blockOf("Pad=\"\"\nRunProgram=\"a.exe\"\nInstallPath=\"%%T\\a\"\n");
    const auto parse = [&rest](std::size_t blockSize) {
        const qsizetype padding = static_cast<qsizetype>(blockSize) - rest.size();
        const QByteArray bytes
            = QByteArray(rest).replace("Pad=\"", "Pad=\"" + QByteArray(padding, 'x'));
        ConfigBlock block;
        std::size_t size = 0;
        return parseConfigBlock(bytes.constData(), static_cast<std::size_t>(bytes.size()), block,
                                size);
    };
    QCOMPARE(parse(maxBlockSize), Status::Ok);
    QCOMPARE(parse(maxBlockSize + 1), Status::Damaged);
}

void TestBlockReader::findsTheEndOfTheImage_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<qint64>("end");
    QByteArray image = smallImage();
    QTest::newRow("an image alone") << image << qint64(1024);
    QTest::newRow("an image with data behind it") << image + "more" << qint64(1024);
    QTest::newRow("a truncated image") << image.left(1023) << qint64(-1);
    QTest::newRow("half a header") << image.left(70) << qint64(-1);
    QTest::newRow("nothing") << QByteArray() << qint64(-1);
    QTest::newRow("no MZ") << "XX" + image.mid(2) << qint64(-1);
    QByteArray far = image;
    qToLittleEndian<quint32>(0xfffffff0u, far.data() + 0x3c);
    QTest::newRow("a header beyond the file") << far << qint64(-1);
    QByteArray none = image;
    qToLittleEndian<quint16>(0, none.data() + 64 + 6);
    QTest::newRow("no sections") << none << qint64(-1);
    QByteArray many = image;
    qToLittleEndian<quint16>(0xffff, many.data() + 64 + 6);
    QTest::newRow("more sections than Windows loads") << many << qint64(-1);
    QByteArray huge = image;
    qToLittleEndian<quint32>(0xffffffffu, huge.data() + 64 + 24 + 240 + 16);
    QTest::newRow("a section that wraps around") << huge << qint64(-1);
}

void TestBlockReader::findsTheEndOfTheImage()
{
    QFETCH(QByteArray, image);
    QFETCH(qint64, end);
    MemorySource source(image);
    PeImage read;
    const Status status = read.read(source);
    QCOMPARE(status, end < 0 ? Status::Damaged : Status::Ok);
    if (end >= 0) {
        QCOMPARE(read.end(), static_cast<std::uint64_t>(end));
    }
}

void TestBlockReader::readsBehindTheImage()
{
    const QByteArray bytes = blockFor("a.exe", "%%T\\a");
    MemorySource source(smallImage() + bytes + "7z");
    ConfigBlock block;
    std::uint64_t offset = 0;
    QCOMPARE(readConfigBlock(source, 1024, {}, block, offset), Status::Ok);
    QCOMPARE(offset, static_cast<std::uint64_t>(1024 + bytes.size()));
    MemorySource bare(smallImage());
    QCOMPARE(readConfigBlock(bare, 1024, {}, block, offset), Status::Damaged);
}

QTEST_APPLESS_MAIN(TestBlockReader)
#include "tst_blockreader.moc"
