// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/accessrights.h"

#include <QTest>

using namespace sfx;

// The access rights of a private folder, for every kind of token.
class TestAccessRights : public QObject
{
    Q_OBJECT

private slots:
    void fitTheToken_data();
    void fitTheToken();
};

namespace {

struct Token
{
    bool isElevated = false;
    bool isAdministrator = false;
    bool hasHighIntegrity = false;
    bool isRestricted = false;
    const char16_t *appContainer = u"";
};

const QString begin = QStringLiteral("D:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)");
const QString userAll = QStringLiteral("(A;OICI;FA;;;S-1-5-21-1-2-3-1001)");
const QString userReads = QStringLiteral("(A;OICI;FRFX;;;S-1-5-21-1-2-3-1001)");
const QString high = QStringLiteral("S:(ML;OICI;NW;;;HI)");

} // namespace

Q_DECLARE_METATYPE(Token)

void TestAccessRights::fitTheToken_data()
{
    QTest::addColumn<Token>("token");
    QTest::addColumn<QString>("rights");
    QTest::newRow("an ordinary user") << Token{} << begin + userAll;
    QTest::newRow("the only token of an administrator, without UAC")
        << Token{false, true, true} << begin + userAll;
    QTest::newRow("as administrator") << Token{true, true, true} << begin + userReads + high;
    QTest::newRow("as administrator, with less integrity")
        << Token{true, true, false} << begin + userReads;
    QTest::newRow("elevated, but not an administrator: a backup operator")
        << Token{true, false, true} << begin + userAll + high;
    QTest::newRow("elevated, with neither") << Token{true, false, false} << begin + userAll;
    QTest::newRow("in an AppContainer") << Token{false, false, false, false, u"S-1-15-2-5-6"}
                                        << begin + userAll + "(A;OICI;FA;;;S-1-15-2-5-6)";
    QTest::newRow("restricted") << Token{false, false, false, true}
                                << begin + userAll + "(A;OICI;FA;;;RC)(A;OICI;FA;;;S-1-5-33)";
    QTest::newRow("all at once") << Token{true, true, true, true, u"S-1-15-2-5-6"}
                                 << begin + userReads
            + "(A;OICI;FA;;;S-1-15-2-5-6)(A;OICI;FA;;;RC)(A;OICI;FA;;;S-1-5-33)" + high;
}

void TestAccessRights::fitTheToken()
{
    QFETCH(Token, token);
    TokenFacts facts;
    facts.isElevated = token.isElevated;
    facts.isAdministrator = token.isAdministrator;
    facts.hasHighIntegrity = token.hasHighIntegrity;
    facts.isRestricted = token.isRestricted;
    QVERIFY(facts.user.append(u"S-1-5-21-1-2-3-1001"));
    QVERIFY(facts.appContainer.append(token.appContainer));
    Text rights;
    QVERIFY(describeRights(facts, rights));
    QTEST(QString::fromUtf16(rights.data()), "rights");
}

QTEST_APPLESS_MAIN(TestAccessRights)
#include "tst_accessrights.moc"
