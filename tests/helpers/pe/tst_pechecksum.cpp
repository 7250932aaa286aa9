// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/pechecksum.h"

#include "tests/helpers/pe/petest.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestPeCheckSum : public QObject
{
    Q_OBJECT

private:
    static pe::ByteView view(const QByteArray &bytes)
    {
        return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                static_cast<std::size_t>(bytes.size())};
    }

private slots:
    // Programs that carry a checksum of their linker's making.
    void realProgramsHaveTheCheckSumThatIsComputed_data()
    {
        QTest::addColumn<QString>("path");
        for (const char *name : {"lzma-amd64-unicode", "lzma-x86-unicode", "zlib-x86-ansi"}) {
            QTest::newRow(name) << QStringLiteral("/usr/share/nsis/Stubs/%1").arg(name);
        }
    }
    void realProgramsHaveTheCheckSumThatIsComputed()
    {
        QFETCH(QString, path);
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            QSKIP("this program (package nsis) is not installed");
        }
        const QByteArray program = file.readAll();
        const quint32 carried = petest::lookAt(program).checkSum;
        const quint32 computed = petest::naiveCheckSum(program);
        if (carried == 0) {
            QSKIP("the program carries no checksum");
        }
        QCOMPARE(computed, carried);
    }

    void theSumFollowsAChange_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("length");
        QTest::newRow("a word") << 0x400 << 2;
        QTest::newRow("an odd number of bytes at an even place") << 0x400 << 7;
        QTest::newRow("at an odd place") << 0x401 << 6;
        QTest::newRow("one byte at an odd place") << 0x403 << 1;
        QTest::newRow("nothing") << 0x400 << 0;
        QTest::newRow("a long stretch") << 0x401 << 2001;
    }
    void theSumFollowsAChange()
    {
        QFETCH(int, offset);
        QFETCH(int, length);
        petest::Recipe recipe;
        recipe.overlay = 4001;
        const QByteArray before = petest::makeProgram(recipe);
        QByteArray after = before;
        for (int i = 0; i < length; ++i) {
            after[offset + i] = static_cast<char>(after[offset + i] + 13 * i + 1);
        }
        const auto size = static_cast<std::uint64_t>(before.size());
        pe::WordSum sum = pe::WordSum::fromCheckSum(petest::naiveCheckSum(before), size);
        sum.remove(view(before.mid(offset, length)), static_cast<std::uint64_t>(offset));
        sum.add(view(after.mid(offset, length)), static_cast<std::uint64_t>(offset));
        QCOMPARE(sum.checkSum(size), petest::naiveCheckSum(after));
    }
};

QTEST_APPLESS_MAIN(TestPeCheckSum)
#include "tst_pechecksum.moc"
