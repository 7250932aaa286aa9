// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The settings that the window keeps from one start to the next. The store holds indexes into the
// lists, so the order of the list items must not change. A store that cannot be read counts as
// empty; a failure to write is ignored.

#include "ui/logappender.h"
#include "ui/mainwindow.h"
#include "ui_mainwindow.h"

#include <QMessageBox>
#include <QSettings>

namespace {

// The settings under this program's names. Create one object for each use, so that it sees what
// another window has written since.
class Store : public QSettings
{
public:
    Store() : QSettings(QStringLiteral("Vexo"), QStringLiteral("Kestrelpack")) {}
};

} // namespace

void MainWindow::loadSettings()
{
    const Store store;
    ui->folderLineEdit->setText(store.value("folderPath").toString());
    ui->outputLineEdit->setText(store.value("outputPath").toString());
    ui->iconLineEdit->setText(store.value("iconPath").toString());
    // Has no effect if the list is empty at this point.
    ui->mainExeComboBox->setCurrentText(store.value("lastExe").toString());
    ui->cmbCompression->setCurrentIndex(store.value("compressionLevel", 3).toInt());
    ui->cmbMethod->setCurrentIndex(store.value("compressionMethod", 0).toInt());
    ui->cmbDictSize->setCurrentIndex(store.value("dictionarySize", 2).toInt());
    ui->chkCleanup->setChecked(store.value("cleanupEnabled", true).toBool());
    ui->chkEncrypt->setChecked(store.value("encryptContent", false).toBool());
    ui->chkAdmin->setChecked(store.value("adminRequired", false).toBool());
    ui->chkTemp->setChecked(store.value("tempExtraction", true).toBool());
}

void MainWindow::saveSettings() const
{
    Store store;
    store.setValue("folderPath", ui->folderLineEdit->text());
    store.setValue("outputPath", ui->outputLineEdit->text());
    store.setValue("iconPath", ui->iconLineEdit->text());
    store.setValue("lastExe", ui->mainExeComboBox->currentText());
    store.setValue("compressionLevel", ui->cmbCompression->currentIndex());
    store.setValue("compressionMethod", ui->cmbMethod->currentIndex());
    store.setValue("dictionarySize", ui->cmbDictSize->currentIndex());
    store.setValue("cleanupEnabled", ui->chkCleanup->isChecked());
    store.setValue("encryptContent", ui->chkEncrypt->isChecked());
    store.setValue("adminRequired", ui->chkAdmin->isChecked());
    store.setValue("tempExtraction", ui->chkTemp->isChecked());
}

// Empties the store and the inputs. The option widgets keep their values, and closing the window
// stores them again.
void MainWindow::on_resetButton_clicked()
{
    const auto answer = QMessageBox::question(this, tr("重置确认"),
                                              tr("确定要重置所有设置吗？此操作无法撤销！"),
                                              QMessageBox::Yes | QMessageBox::No);
    if (answer != QMessageBox::Yes) {
        return;
    }
    ui->folderLineEdit->clear();
    ui->outputLineEdit->clear();
    ui->iconLineEdit->clear();
    ui->mainExeComboBox->clear();
    log->clear();
    ui->progressBar->setValue(0);

    Store store;
    store.clear();
    store.sync();
    QMessageBox::information(this, tr("重置成功"), tr("所有设置已恢复为默认值。"), QMessageBox::Ok);
}

bool MainWindow::isCleanupEnabled() const
{
    return ui->chkCleanup->isChecked();
}

bool MainWindow::isTempExtractionEnabled() const
{
    return ui->chkTemp->isChecked();
}

bool MainWindow::isEncryptionEnabled() const
{
    return ui->chkEncrypt->isChecked();
}

bool MainWindow::isAdminRequired() const
{
    return ui->chkAdmin->isChecked();
}
