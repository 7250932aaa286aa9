// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/accessrules.h"

#include <QTest>

Q_DECLARE_METATYPE(FolderAccess)

namespace {

const QString user = "S-1-5-21-1004336348-1177238915-682003330-1001";
const QString anotherUser = "S-1-5-21-1004336348-1177238915-682003330-1002";
const QString localSystem = "S-1-5-18";
const QString networkService = "S-1-5-20";
const QString administrators = "S-1-5-32-544";
const QString users = "S-1-5-32-545";
const QString authenticatedUsers = "S-1-5-11";
const QString everyone = "S-1-1-0";
const QString ownerRights = "S-1-3-4";
const QString trustedInstaller = "S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464";

constexpr quint32 full = 0x1f01ff;
constexpr quint32 modify = 0x1301bf;
constexpr quint32 readAndRun = 0x1200a9;
constexpr quint32 addFile = 0x2;
constexpr quint32 addFolder = 0x4;
constexpr quint32 traverse = 0x20;

// As Windows makes it for a user's profile.
FolderAccess privateFolder()
{
    return {user, false, {{localSystem, full}, {administrators, full}, {user, full}}};
}

FolderAccess privateFolderAnd(const AccessEntry &entry)
{
    FolderAccess folder = privateFolder();
    folder.entries << entry;
    return folder;
}

// C:\Windows\Temp
FolderAccess windowsTemp()
{
    return {localSystem,
            false,
            {{users, traverse | addFile | addFolder}, {administrators, full}, {localSystem, full}}};
}

} // namespace

class TestAccessRules : public QObject
{
    Q_OBJECT

private slots:
    void folders_data()
    {
        QTest::addColumn<FolderAccess>("folder");
        QTest::addColumn<QString>("who");
        QTest::addColumn<bool>("others");
        QTest::newRow("in the user's profile") << privateFolder() << user << false;
        QTest::newRow("the same, for another user") << privateFolder() << anotherUser << true;
        QTest::newRow("in the user's profile, for a service")
            << privateFolder() << localSystem << true;
        QTest::newRow("C:\\Windows\\Temp, for a service") << windowsTemp() << localSystem << true;
        QTest::newRow("C:\\Windows\\Temp, for an administrator") << windowsTemp() << user << true;
        QTest::newRow("C:\\Windows\\SystemTemp")
            << FolderAccess{localSystem, false, {{localSystem, full}, {administrators, full}}}
            << localSystem << false;
        QTest::newRow("a second drive's") << FolderAccess{administrators,
                                                          false,
                                                          {{administrators, full},
                                                           {localSystem, full},
                                                           {authenticatedUsers, modify}}}
                                          << user << true;
        QTest::newRow("the installer's")
            << FolderAccess{trustedInstaller,
                            false,
                            {{trustedInstaller, full}, {users, readAndRun}}}
            << user << false;
        QTest::newRow("without a list") << FolderAccess{user, true, {}} << user << true;
        QTest::newRow("with an empty list") << FolderAccess{user, false, {}} << user << false;
        QTest::newRow("another user's, with an empty list")
            << FolderAccess{anotherUser, false, {}} << user << true;
        QTest::newRow("nobody's") << FolderAccess{{}, false, {}} << user << true;
        QTest::newRow("nobody's, for nobody") << FolderAccess{{}, false, {}} << QString() << true;

        const auto addEntry
            = [](const char *name, const QString &who, quint32 rights, bool others) {
                  QTest::newRow(name) << privateFolderAnd({who, rights}) << user << others;
              };
        addEntry("everybody may read it", everyone, readAndRun, false);
        addEntry("everybody may add folders", everyone, addFolder, false);
        addEntry("everybody may add files", everyone, addFile, true);
        addEntry("another user may remove files", anotherUser, 0x40, true);
        addEntry("another user may change the list", anotherUser, 0x40000, true);
        addEntry("another user may take it over", anotherUser, 0x80000, true);
        addEntry("another user may do all, in general terms", anotherUser, 0x10000000, true);
        addEntry("another user may write, in general terms", anotherUser, 0x40000000, true);
        addEntry("another user may read, in general terms", anotherUser, 0x80000000U, false);
        addEntry("another service may do all", networkService, full, true);
        addEntry("somebody unknown may do all", QString(), full, true);
        addEntry("its owner may do all", ownerRights, full, false);
        addEntry("the installer may do all", trustedInstaller, full, false);
    }
    void folders()
    {
        QFETCH(FolderAccess, folder);
        QFETCH(QString, who);
        QTEST(othersMayWrite(folder, who), "others");
    }

    void files_data()
    {
        QTest::addColumn<QString>("owner");
        QTest::addColumn<QString>("who");
        QTest::addColumn<bool>("usableInShared");
        QTest::newRow("the user's own") << user << user << true;
        QTest::newRow("the service's own") << localSystem << localSystem << true;
        QTest::newRow("another service's own") << networkService << networkService << true;
        QTest::newRow("the system's") << localSystem << user << true;
        QTest::newRow("the administrators'") << administrators << localSystem << true;
        QTest::newRow("the installer's") << trustedInstaller << user << true;
        QTest::newRow("another user's") << anotherUser << user << false;
        QTest::newRow("a user's, for the system") << user << localSystem << false;
        QTest::newRow("another service's") << networkService << localSystem << false;
        QTest::newRow("one that begins like the user") << user + "0" << user << false;
        QTest::newRow("unknown") << QString() << user << false;
        QTest::newRow("unknown, for an unknown user") << QString() << QString() << false;
    }
    void files()
    {
        QFETCH(QString, owner);
        QFETCH(QString, who);
        QFETCH(bool, usableInShared);
        QCOMPARE(isUsable(windowsTemp(), owner, who), usableInShared);
        const FolderAccess own{who, false, {{who, full}}};
        QCOMPARE(isUsable(own, owner, who), usableInShared || !who.isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestAccessRules)
#include "tst_accessrules.moc"
