// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/startplan.h"
#include "tests/helpers/self-extractor/memorysource.h"
#include "tests/helpers/self-extractor/settingsimage.h"

#include <QTest>

using namespace sfx;
using namespace Qt::StringLiterals;

namespace {

const QByteArray usualBlock = ";!@Install@!UTF-8!\nTitle=\"block\"\nRunProgram=\"block.exe\"\n"
                              "InstallPath=\"%%T\\block\"\nSilent=\"1\"\n;!@InstallEnd@!\n";

QByteArray blockFor(const QByteArray &program, const QByteArray &path)
{
    return ";!@Install@!UTF-8!\nRunProgram=\"" + program + "\"\nInstallPath=\"" + path
        + "\"\n;!@InstallEnd@!\n";
}

class CountingSource final : public ByteSource
{
public:
    explicit CountingSource(const QByteArray &bytes) : m_bytes(bytes) {}
    bool readAt(std::uint64_t offset, void *data, std::size_t size) override
    {
        ++m_reads;
        return m_bytes.readAt(offset, data, size);
    }
    std::uint64_t size() const override { return m_bytes.size(); }
    int reads() const { return m_reads; }

private:
    MemorySource m_bytes;
    int m_reads = 0;
};

Status read(const QByteArray &file, StartPlan &plan)
{
    MemorySource source(file);
    std::uint64_t offset = 0;
    const Status status = readStartPlan(source, plan, offset);
    if (status == Status::Ok && offset != static_cast<std::uint64_t>(file.size())) {
        return Status::ReadFailed; // the block is the end of these files
    }
    return status;
}

QString toQString(const Text &text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

// What a produced file is to do, from the settings in its resources and from its block.
class TestStartPlan : public QObject
{
    Q_OBJECT

private slots:
    void takesTheBlockWithoutSettings();
    void takesTheSettingsFirst();
    void showsProgressUnlessItIsSilent_data();
    void showsProgressUnlessItIsSilent();
    void needsTheBlocksNamesOnlyIfItUsesThem_data();
    void needsTheBlocksNamesOnlyIfItUsesThem();
    void findsTheResource_data();
    void findsTheResource();
    void refusesEveryTruncation();
    void readsTheFileInFewPieces();
};

void TestStartPlan::takesTheBlockWithoutSettings()
{
    StartPlan plan;
    QCOMPARE(read(settingsimage::withText({}) + usualBlock, plan), Status::Ok);
    QCOMPARE(toQString(plan.program()), u"block.exe"_s);
    QCOMPARE(toQString(plan.folderName()), u"block"_s);
    QCOMPARE(toQString(plan.title()), u"block"_s);
    QVERIFY(plan.isSilent());
}

void TestStartPlan::takesTheSettingsFirst()
{
    StartPlan plan;
    const QByteArray settings = "Program=\"bin/app.exe\"\nFolder=\"app\"\nTitle=\"mine\"\n"
                                "Silent=\"0\"\n";
    QCOMPARE(read(settingsimage::withText(settings) + usualBlock, plan), Status::Ok);
    QCOMPARE(toQString(plan.program()), u"bin/app.exe"_s);
    QCOMPARE(toQString(plan.folderName()), u"app"_s);
    QCOMPARE(toQString(plan.title()), u"mine"_s);
    QVERIFY(!plan.isSilent());
    StartPlan untitled;
    QCOMPARE(read(settingsimage::withText("Title=\"\"\n") + usualBlock, untitled), Status::Ok);
    QCOMPARE(toQString(untitled.title()), QString());
}

void TestStartPlan::showsProgressUnlessItIsSilent_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<bool>("asked"); // by the block
    QTest::addColumn<bool>("isForConsole");
    QTest::addColumn<bool>("shown");
    QTest::newRow("asked") << QByteArray() << true << false << true;
    QTest::newRow("not asked") << QByteArray() << false << false << false;
    QTest::newRow("silent by the settings")
        << QByteArray("Silent=\"1\"\n") << true << false << false;
    QTest::newRow("for the console") << QByteArray() << true << true << false;
}

void TestStartPlan::showsProgressUnlessItIsSilent()
{
    QFETCH(QByteArray, settings);
    QFETCH(bool, asked);
    QFETCH(bool, isForConsole);
    StartPlan plan;
    const QByteArray block
        = QByteArray(usualBlock).replace("Silent=\"1\"", asked ? "Progress=\"yes\"" : "");
    QCOMPARE(read(settingsimage::withText(settings) + block, plan), Status::Ok);
    QTEST(plan.showsProgress(isForConsole), "shown");
}

void TestStartPlan::needsTheBlocksNamesOnlyIfItUsesThem_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<bool>("isRight");
    const QByteArray program = "Program=\"bin/app.exe\"\n";
    const QByteArray both = program + "Folder=\"app\"\n";
    const QByteArray inFolder = blockFor("bin/app.exe", "%%T\\bin/app");
    QTest::newRow("a program in a folder, without settings") << QByteArray() << inFolder << false;
    QTest::newRow("with both settings") << both << inFolder << true;
    QTest::newRow("with the program only: the folder counts") << program << inFolder << false;
    QTest::newRow("with the program only, and a folder that is right")
        << program << blockFor("bin/app.exe", "%%T\\app") << true;
    QTest::newRow("with the folder only: the program counts")
        << QByteArray("Folder=\"app\"\n") << inFolder << false;
    QTest::newRow("values that lead out, not used") << both << blockFor("..\\x", "C:\\") << true;
    QTest::newRow("values that are no UTF-8, not used") << both << blockFor("\xff", "\xff") << true;
    QTest::newRow("no values at all, not used")
        << both << QByteArray(";!@Install@!UTF-8!\n;!@InstallEnd@!\n") << true;
    QTest::newRow("a key that occurs twice is damage all the same")
        << both
        << QByteArray(";!@Install@!UTF-8!\nRunProgram=\"a\"\nRunProgram=\"a\"\n;!@InstallEnd@!\n")
        << false;
}

void TestStartPlan::needsTheBlocksNamesOnlyIfItUsesThem()
{
    QFETCH(QByteArray, settings);
    QFETCH(QByteArray, block);
    QFETCH(bool, isRight);
    StartPlan plan;
    QCOMPARE(read(settingsimage::withText(settings) + block, plan),
             isRight ? Status::Ok : Status::Damaged);
}

void TestStartPlan::findsTheResource_data()
{
    using namespace settingsimage;
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<Status>("status");
    QTest::addColumn<bool>("found");
    const QByteArray image = withText("Title=\"found\"\n");
    const auto with
        = [&image](const char *row, qsizetype position, auto value, Status status, bool found) {
              QTest::newRow(row) << changed(image, position, value) << status << found;
          };
    constexpr quint32 table = 0x80000000;
    QTest::newRow("as it should be") << image << Status::Ok << true;
    with("no directory of resources", resourceAddress, 0u, Status::Ok, false);
    with("a directory of no size", resourceAddress + 4, 0u, Status::Ok, false);
    with("too few data directories", directoryCount, 2u, Status::Ok, false);
    with("a 32-bit program", magic, quint16(0x10b), Status::Ok, false);
    with("resources of another type", types + 16, 11u, Status::Ok, false);
    with("a type with a name", types + 16, table | 88, Status::Ok, false);
    with("another name", name + 2, quint16('T'), Status::Ok, false);
    with("the name in small letters", name + 2, quint16('s'), Status::Ok, false);
    with("a shorter name", name, quint16(7), Status::Ok, false);
    with("a longer name", name, quint16(9), Status::Ok, false);
    with("an id in place of the name", names + 16, 88u, Status::Ok, false);
    with("in any language", languages + 16, 0x804u, Status::Ok, true);
    with("no language", languages + 14, quint16(0), Status::Damaged, false);
    with("two languages", languages + 14, quint16(2), Status::Damaged, false);
    with("directory outside of the section", resourceAddress, 0x900u, Status::Damaged, false);
    with("directory at the end of the section", resourceAddress, address + 510, Status::Damaged,
         false);
    with("more types than fit", types + 14, quint16(0xffff), Status::Damaged, false);
    with("a type without a table", types + 20, 24u, Status::Damaged, false);
    with("a name without a table", names + 20, 48u, Status::Damaged, false);
    with("a table of names far away", types + 20, 0xffffffffu, Status::Damaged, false);
    with("a name far away", names + 16, 0xffffffffu, Status::Ok, false);
    with("a language that is a table", languages + 20, table | 24, Status::Damaged, false);
    with("data far away", languages + 20, 0x7fffffffu, Status::Damaged, false);
    with("text far away", data, 0xfffffff0u, Status::Damaged, false);
    with("text at the headers", data, 0u, Status::Damaged, false);
    with("more text than fits", data + 4, 60000u, Status::Damaged, false);
    with("more text than is allowed", data + 4, 0x10001u, Status::Damaged, false);
    with("text of nearly 4 GiB", data + 4, 0xffffffffu, Status::Damaged, false);
    with("no text", data + 4, 0u, Status::Ok, false);
    with("less text", data + 4, 13u, Status::Damaged, false);
}

void TestStartPlan::findsTheResource()
{
    QFETCH(QByteArray, image);
    QFETCH(Status, status);
    QFETCH(bool, found);
    StartPlan plan;
    QCOMPARE(read(image + usualBlock, plan), status);
    QCOMPARE(toQString(plan.settings.title), found ? u"found"_s : QString());
}

void TestStartPlan::refusesEveryTruncation()
{
    const QByteArray file = settingsimage::withText("Title=\"a\"\n") + usualBlock;
    for (qsizetype size = 0; size < file.size(); ++size) {
        StartPlan plan;
        QCOMPARE(read(file.left(size), plan), Status::Damaged);
    }
}

// Each piece is a call of the system, at every start.
void TestStartPlan::readsTheFileInFewPieces()
{
    const auto readsOf = [](const QByteArray &image) {
        CountingSource source(image + usualBlock);
        StartPlan plan;
        std::uint64_t offset = 0;
        return readStartPlan(source, plan, offset) == Status::Ok ? source.reads() : 0;
    };
    const QByteArray image = settingsimage::withText("Title=\"a\"\n");
    QCOMPARE(readsOf(settingsimage::changed(image, settingsimage::types + 16, 11u)), 7);
    QCOMPARE(readsOf(image), 14);
}

QTEST_APPLESS_MAIN(TestStartPlan)
#include "tst_startplan.moc"
