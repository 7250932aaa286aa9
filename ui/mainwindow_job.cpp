// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// Starts a job and shows the worker's signals. A job cannot be cancelled.

#include "packaging/compressionoptions.h"
#include "packaging/worker.h"
#include "ui/logappender.h"
#include "ui/mainwindow.h"
#include "ui_mainwindow.h"

#include <QFile>
#include <QMessageBox>

void MainWindow::on_startButton_clicked()
{
    if (!validateInputs()) {
        log->append(tr("输入验证失败，操作中止"));
        return;
    }
    setProcessingState(true);
    ui->progressBar->setValue(0);
    log->clear();
    // If an archive of an earlier job exists, the archiver adds files to it. That job may have
    // packed another folder.
    const QString archive = tempDir + QStringLiteral("/temp.7z");
    QFile::remove(archive);
    QMetaObject::invokeMethod(worker.get(), "createPortableApp", Qt::AutoConnection,
                              Q_ARG(QString, ui->folderLineEdit->text()), Q_ARG(QString, archive),
                              Q_ARG(QString, ui->outputLineEdit->text()),
                              Q_ARG(QString, ui->mainExeComboBox->currentText()),
                              Q_ARG(QString, ui->iconLineEdit->text()),
                              Q_ARG(QString, compressionLevelText()),
                              Q_ARG(QString, compressionMethodText()),
                              Q_ARG(QString, dictionarySizeText()));
}

// Disables the buttons that could start a second job or disturb the running one. The fields and
// lists stay enabled, because the job has copies of their values.
void MainWindow::setProcessingState(bool busy)
{
    const QList<QWidget *> controls = {ui->startButton, ui->selectFolderButton, ui->outputButton,
                                       ui->iconButton,  ui->mainExeButton,      ui->resetButton,
                                       ui->menuButton};
    for (QWidget *control : controls) {
        control->setEnabled(!busy);
    }
}

void MainWindow::onWorkerProgress(int value)
{
    // A progress bar repaints itself and the window's shadow at once for each value. While updates
    // are off it only posts a request, so values that arrive together are painted once.
    ui->progressBar->setUpdatesEnabled(false);
    ui->progressBar->setValue(value);
    ui->progressBar->setUpdatesEnabled(true);
}

void MainWindow::onWorkerLog(const QString &message)
{
    log->append(message);
}

void MainWindow::onWorkerFinished(bool success)
{
    log->whenShown([this, success] {
        setProcessingState(false);
        if (success) {
            QMessageBox::information(this, tr("完成"), tr("便携应用创建成功！"), QMessageBox::Ok);
        }
    });
}

QString MainWindow::compressionLevelText() const
{
    return ::compressionLevelText(ui->cmbCompression->currentIndex());
}

QString MainWindow::compressionMethodText() const
{
    return ::compressionMethodText(ui->cmbMethod->currentIndex());
}

QString MainWindow::dictionarySizeText() const
{
    return ::dictionarySizeText(ui->cmbDictSize->currentIndex());
}
