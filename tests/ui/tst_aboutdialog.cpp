// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/support/waiting.h"
#include "ui/aboutdialog.h"

#include <QDesktopServices>
#include <QIcon>
#include <QLabel>
#include <QRegularExpression>
#include <QTest>
#include <QVBoxLayout>

// Catches addresses that would open in the web browser.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    UrlCatcher() { QDesktopServices::setUrlHandler("https", this, "take"); }
    ~UrlCatcher() override { QDesktopServices::unsetUrlHandler("https"); }

    QList<QUrl> taken;

public slots:
    void take(const QUrl &url) { taken.append(url); }
};

class TestAboutDialog : public QObject
{
    Q_OBJECT

private slots:
    void hasItsFixedSizes()
    {
        const AboutDialog dialog;
        QCOMPARE(dialog.objectName(), "AboutDialog");
        QCOMPARE(dialog.windowTitle(), "关于 Kestrel Pack");
        QCOMPARE(dialog.size(), QSize(243, 315));
        QCOMPARE(dialog.windowIcon().pixmap(32).toImage(),
                 QIcon(":/icons/logo.ico").pixmap(32).toImage());
        QCOMPARE(dialog.layout(), nullptr);

        const auto *content = dialog.findChild<QWidget *>("centralWidget");
        QVERIFY(content != nullptr);
        QCOMPARE(content->parentWidget(), &dialog);
        QCOMPARE(content->geometry(), QRect(0, 0, 242, 315));
    }

    void laysItsLabelsOutInOrder()
    {
        const AboutDialog dialog;
        const auto *layout
            = qobject_cast<QVBoxLayout *>(dialog.findChild<QWidget *>("centralWidget")->layout());
        QVERIFY(layout != nullptr);
        QCOMPARE(layout->objectName(), "verticalLayout");
        QCOMPARE(layout->spacing(), 0);
        QCOMPARE(layout->contentsMargins(), QMargins(15, 15, 15, 15));
        QStringList names;
        for (int i = 0; i < layout->count(); ++i) {
            names.append(layout->itemAt(i)->widget()->objectName());
        }
        QCOMPARE(names,
                 (QStringList{"logoLabel", "titleLabel", "versionLabel", "descriptionLabel",
                              "websiteLabel", "copyrightLabel"}));
        QCOMPARE(dialog.findChildren<QWidget *>().size(), 1 + names.size()); // no other widgets
    }

    void contentDoesNotFollowTheSize()
    {
        AboutDialog dialog;
        dialog.show();
        dialog.resize(500, 600);
        QCOMPARE(dialog.findChild<QWidget *>("centralWidget")->geometry(), QRect(0, 0, 242, 315));
    }

    void labelsSayWhatTheyShould_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<Qt::Alignment>("alignment");
        QTest::addColumn<bool>("wraps");

        const Qt::Alignment left = Qt::AlignLeft | Qt::AlignVCenter;
        QTest::newRow("logo") << "logoLabel"
                              << "" << (Qt::AlignHCenter | Qt::AlignTop) << false;
        QTest::newRow("title") << "titleLabel"
                               << "<h2>Kestrel Pack</h2>" << left << false;
        QTest::newRow("version") << "versionLabel"
                                 << "版本: 1\\.0\\.2\\.32" << left << false;
        QTest::newRow("description")
            << "descriptionLabel"
            << "一款简单易用的单文件程序制作工具，提供向导式操作界面，支持多种压缩方式，"
               "可自定义输出目录，轻松制作高效单文件程序。"
            << left << true;
        QTest::newRow("web site") << "websiteLabel"
                                  << "<a href=\"https://[^\"]+\"[^>]*>访问官方网站</a>" << left
                                  << false;
        QTest::newRow("copyright") << "copyrightLabel"
                                   << "© \\d{4} Halvorsoft 保留所有权利" << left << false;
    }

    void labelsSayWhatTheyShould()
    {
        QFETCH(QString, name);
        QFETCH(QString, pattern);
        const AboutDialog dialog;
        const auto *label = dialog.findChild<QLabel *>(name);
        QVERIFY(label != nullptr);
        const QRegularExpression expression(QRegularExpression::anchoredPattern(pattern));
        QVERIFY2(expression.match(label->text()).hasMatch(), qPrintable(label->text()));
        QTEST(label->alignment(), "alignment");
        QTEST(label->wordWrap(), "wraps");
    }

    void showsTheLogoAtItsSize()
    {
        AboutDialog dialog;
        dialog.show();
        const auto *logo = dialog.findChild<QLabel *>("logoLabel");
        QCOMPARE(logo->maximumSize(), QSize(64, 64));
        QCOMPARE(logo->size(), QSize(64, 64));
        QVERIFY(logo->hasScaledContents());
        QCOMPARE(logo->pixmap().toImage(), QIcon(":/icons/logo.svg").pixmap(64, 64).toImage());
    }

    void linkOpensTheBrowserAndLeavesTheDialogOpen()
    {
        AboutDialog dialog;
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog, patience));
        auto *label = dialog.findChild<QLabel *>("websiteLabel");
        QVERIFY(!label->openExternalLinks());
        QCOMPARE(label->textInteractionFlags(),
                 Qt::TextSelectableByMouse | Qt::LinksAccessibleByMouse);
        const UrlCatcher browser;
        QTest::mouseClick(label, Qt::LeftButton, {}, QPoint(20, label->height() / 2));
        QCOMPARE(browser.taken.size(), 1);
        QVERIFY(label->text().contains(browser.taken[0].toString()));
        QVERIFY(dialog.isVisible());
    }

    void escapeClosesIt()
    {
        AboutDialog dialog;
        dialog.show();
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
    }

    void slotOfTheMissingButtonsClosesIt()
    {
        AboutDialog dialog;
        dialog.show();
        QVERIFY(QMetaObject::invokeMethod(&dialog, "on_buttonBox_accepted"));
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(TestAboutDialog)

#include "tst_aboutdialog.moc"
