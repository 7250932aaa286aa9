// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/helpers/self-extractor/moduletest.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

QString ModuleTest::assembleWithData() const
{
    return m_run.assemble(Tree{{u"main.exe"_s, ModuleRun::programBytes()},
                               {u"data.txt"_s, "still here"}},
                          u"main.exe"_s);
}

std::unique_ptr<QProcess> ModuleTest::startWaiting(const QString &file, QString &folder,
                                                   int milliseconds) const
{
    auto process = m_run.start(file, u" --wait"_s);
    if (process == nullptr
        || ModuleRun::waitForOutput(*process, "program=", 1, milliseconds).isEmpty()) {
        return nullptr;
    }
    const QStringList names = QDir(m_run.temporaryFolder()).entryList({u"kp-*"_s}, QDir::Dirs);
    folder = m_run.temporaryFolder() + u'/' + names.value(0) + u"/main"_s;
    return process;
}

void ModuleTest::initTestCase()
{
    QVERIFY(m_run.setUp());
}

void ModuleTest::init()
{
    QVERIFY(m_run.renewTemporaryFolder());
}

void ModuleTest::cleanup()
{
    QCOMPARE(m_run.leftovers(), QStringList());
}
