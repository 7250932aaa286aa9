// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "ui/aboutdialog.h"

#include "ui/productinfo.h"
#include "ui_aboutdialog.h"

#include <QDesktopServices>
#include <QIcon>
#include <QUrl>

AboutDialog::AboutDialog(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::AboutDialog>())
{
    ui->setupUi(this);
    setWindowTitle(tr("关于 Kestrel Pack"));
    fillIn();
    connect(ui->websiteLabel, &QLabel::linkActivated, this,
            [](const QString &link) { QDesktopServices::openUrl(QUrl(link, QUrl::TolerantMode)); });
}

AboutDialog::~AboutDialog() = default;

// Sets what the .ui file cannot contain: the texts from the build, and sizes for the screen's
// scaling.
void AboutDialog::fillIn()
{
    ui->logoLabel->setPixmap(QIcon(QStringLiteral(":/icons/logo.svg"))
                                 .pixmap(ui->logoLabel->maximumSize(), devicePixelRatio()));
    ui->versionLabel->setText(tr("版本: %1").arg(productinfo::version));
    // A style sheet cannot set the colour of a link.
    ui->websiteLabel->setText(QStringLiteral("<a href=\"%1\" style=\"color:#00b688\">%2</a>")
                                  .arg(productinfo::website.toHtmlEscaped(), tr("访问官方网站")));
    ui->copyrightLabel->setText(
        tr("© %1 %2 保留所有权利").arg(productinfo::copyrightYear, productinfo::company));
}

void AboutDialog::on_buttonBox_accepted()
{
    close();
}
