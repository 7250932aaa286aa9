// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "app/stylesheet.h"

#include "tests/app/bundleswap.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTest>

namespace {

QStringList messages;

void collect(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    const char *level = type == QtDebugMsg ? "debug: "
        : type == QtWarningMsg             ? "warning: "
        : type == QtCriticalMsg            ? "critical: "
                                           : "other: ";
    messages.append(level + text);
}

// The messages that the loader writes to Qt's log, and the value it returns.
bool load(QStringList &said)
{
    messages.clear();
    const auto previous = qInstallMessageHandler(collect);
    const bool loaded = loadStyleSheet(*qApp);
    qInstallMessageHandler(previous);
    said = messages;
    return loaded;
}

} // namespace

class TestStyleSheet : public QObject
{
    Q_OBJECT

private slots:
    void init() { qApp->setStyleSheet(QString()); }

    void appliesTheSheetOfTheBundle()
    {
        QStringList said;
        QVERIFY(load(said));
        QCOMPARE(said,
                 (QStringList{"debug: 样式文件路径: :/qss/default.css", "debug: 样式表加载成功"}));
        QFile file(":/qss/default.css");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(qApp->styleSheet(), QString::fromUtf8(file.readAll()));
    }

    void missingSheetIsCritical()
    {
        removeBundle();
        const auto restore = qScopeGuard(restoreBundle);
        QStringList said;
        QVERIFY(!load(said));
        QFile file(":/qss/default.css");
        QVERIFY(!file.open(QIODevice::ReadOnly));
        QCOMPARE(said,
                 (QStringList{"debug: 样式文件路径: :/qss/default.css",
                              "critical: 无法打开样式表: " + file.errorString(),
                              "critical: 当前工作目录: " + QDir::currentPath()}));
        QCOMPARE(qApp->styleSheet(), "");
    }

    void emptySheetIsAWarning()
    {
        QVERIFY(useEmptySheet());
        const auto restore = qScopeGuard(dropEmptySheet);
        QStringList said;
        QVERIFY(!load(said));
        QCOMPARE(said,
                 (QStringList{"debug: 样式文件路径: :/qss/default.css", "warning: 样式表为空！"}));
        QCOMPARE(qApp->styleSheet(), "");
    }
};

QTEST_MAIN(TestStyleSheet)

#include "tst_stylesheet.moc"
