// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/versionresource.h"

#include "helpers/pe/programedit.h"
#include "tests/helpers/pe/nativepathof.h"
#include "tests/helpers/pe/petest.h"
#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

using Resources = pe::Result<std::vector<pe::VersionResource>>;

Resources resourcesOf(const QString &program)
{
    const auto file = pe::File::open(nativePathOf(program), pe::File::Access::Read);
    if (file.hasError()) {
        return file.error();
    }
    const auto headers = pe::PeHeaders::read(file.value());
    if (headers.hasError()) {
        return headers.error();
    }
    return pe::versionResourcesOf(file.value(), headers.value());
}

const pe::ResourceKey version{std::nullopt, pe::versionType};

} // namespace

class TestVersionResource : public QObject
{
    Q_OBJECT

private slots:
    void allLanguagesOfAProgram();
    void writingGivesTheBytesOfTheCompiler();
    void withoutOne();
    void damaged_data();
    void damaged();

private:
    QTemporaryDir m_dir;
};

void TestVersionResource::allLanguagesOfAProgram()
{
    const Resources read = resourcesOf(builtFile(KESTRELPACK_IDENTIFIED));
    QVERIFY(!read.hasError());
    QCOMPARE(read.value().size(), 2u);
    const pe::VersionResource &english = read.value()[0];
    QCOMPARE(english.name.id, 1U);
    QCOMPARE(english.language, 0x409);
    QVERIFY(english.info.fixed);
    QCOMPARE(english.info.fixed->file, (pe::VersionNumber{3, 4, 6, 65535}));
    QCOMPARE(english.info.tables.size(), 2u);
    QCOMPARE(english.info.tables[0].strings.size(), 7u);
    QCOMPARE(english.info.tables[1].key, std::u16string(u"040704b0"));
    QVERIFY(english.info.tables[1].strings[0]
            == (pe::VersionString{u"FileDescription", u"Tongenerator für alle"}));
    QVERIFY(english.info.translations
            == (std::vector<pe::VersionTranslation>{{0x409, 1200}, {0x407, 1200}}));
    const pe::VersionResource &chinese = read.value()[1];
    QCOMPARE(chinese.language, 0x804);
    QCOMPARE(chinese.info.tables[0].strings[0].value, std::u16string(u"音频发生器"));
}

void TestVersionResource::writingGivesTheBytesOfTheCompiler()
{
    const petest::PeFacts facts = petest::lookAt(readFile(builtFile(KESTRELPACK_IDENTIFIED)));
    const Resources read = resourcesOf(builtFile(KESTRELPACK_IDENTIFIED));
    QVERIFY(!read.hasError());
    for (const pe::VersionResource &resource : read.value()) {
        const QString key = QStringLiteral("16/1/%1").arg(resource.language);
        const auto written = pe::writeVersionInfo(resource.info);
        QVERIFY(!written.hasError());
        const QByteArray bytes(reinterpret_cast<const char *>(written.value().data()),
                               static_cast<qsizetype>(written.value().size()));
        QCOMPARE(bytes.toHex(), facts.resources.value(key).content.toHex());
    }
}

void TestVersionResource::withoutOne()
{
    const QString program = m_dir.filePath("none.exe");
    QVERIFY(writeFile(program, petest::makeProgram({.resources = false, .icons = false})));
    const Resources read = resourcesOf(program);
    QVERIFY(!read.hasError());
    QVERIFY(read.value().empty());
}

void TestVersionResource::damaged_data()
{
    QTest::addColumn<int>("size");  // of each resource
    QTest::addColumn<int>("count"); // of languages
    QTest::newRow("no structure") << 600 << 1;
    QTest::newRow("larger than possible") << 0x10000 << 1;
    QTest::newRow("too many languages") << 0xffff << 20;
}

void TestVersionResource::damaged()
{
    QFETCH(const int, size);
    QFETCH(const int, count);
    const QString program = m_dir.filePath("damaged.exe");
    QVERIFY(writeFile(program, petest::makeProgram({.icons = false})));
    pe::ProgramEdit edit;
    edit.removedTypes.push_back(version);
    for (int language = 0; language < count; ++language) {
        edit.resources.push_back({version,
                                  {std::nullopt, 1},
                                  static_cast<std::uint16_t>(language),
                                  pe::Bytes(static_cast<std::size_t>(size), 0x55)});
    }
    const auto path = nativePathOf(program);
    QVERIFY(!pe::editProgram(path, path, edit).hasError());
    const Resources read = resourcesOf(program);
    QVERIFY(read.hasError());
    QCOMPARE(read.error().kind, pe::ErrorKind::Damaged);
}

QTEST_APPLESS_MAIN(TestVersionResource)

#include "tst_versionresource.moc"
