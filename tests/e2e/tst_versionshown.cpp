// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/identity.h"
#include "preparation/preparedmodule.h"
#include "tests/e2e/productrun.h"
#include "tests/support/builtfile.h"
#include "tests/support/testfiles.h"

#include <QTemporaryDir>
#include <QTest>

// What Windows' own functions say about a prepared module.
class TestVersionShown : public QObject
{
    Q_OBJECT

private:
    static QString shownFor(const QString &file)
    {
        return startProduct(builtFile(KESTRELPACK_READVERSION), {file}).output.remove('\r');
    }

    static QString shownFor(const std::vector<pe::VersionResource> &ofProgram,
                            const QList<IdentityField> &fields)
    {
        const auto identity = identityOf(ofProgram, "tone.exe", fields);
        const QTemporaryDir dir;
        const auto refused
            = writePreparedModule({ProgramKind::Console,
                                   {{"Title", "Tone"}},
                                   std::get<std::vector<pe::VersionResource>>(identity)},
                                  dir.path());
        return refused ? textOf(*refused) : shownFor(dir.filePath("7zS2.sfx"));
    }

private slots:
    // The user's language decides which resource Windows takes.
    void theMainProgramsIdentity()
    {
        const auto program = readMainProgram(builtFile(KESTRELPACK_IDENTIFIED));
        const QString shown
            = shownFor(std::get<MainProgram>(program).identity, {{"FileVersion", "7.8.9"}});
        const QString english = "7.8.9.0\n0409 [Tone generator] [tone.exe]\n"
                                "0407 [Tongenerator für alle] [tone.exe]\n";
        const QString chinese = "7.8.9.0\n0804 [音频发生器] [tone.exe]\n";
        QVERIFY2(shown == english || shown == chinese, qPrintable(shown));
    }

    void anIdentityFromFieldsAlone()
    {
        QCOMPARE(shownFor({}, {{"FileDescription", "音 maker"}, {"FileVersion", "3.4"}}),
                 "3.4.0.0\n0000 [音 maker] [tone.exe]\n");
    }

    void noneAtAll() { QCOMPARE(shownFor({}, {}), "no version information\n"); }
};

QTEST_GUILESS_MAIN(TestVersionShown)
#include "tst_versionshown.moc"
