// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The inputs of a job: how the user chooses them, and the checks before a job starts.

#include "ui/mainwindow.h"
#include "ui_mainwindow.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QMessageBox>
#include <QPixmap>
#include <QStandardPaths>

namespace {

bool isReadableImage(const QString &path)
{
    QImageReader reader(path, QByteArray());
    reader.setAutoTransform(true);
    QImage image = reader.read();
    if (image.isNull()) {
        return false;
    }
    if (!image.hasAlphaChannel()) {
        image.convertTo(QImage::Format_ARGB32);
    }
    return !QPixmap::fromImage(image).isNull();
}

} // namespace

// The dialog opens in its default folder, unlike the dialog for the output.
void MainWindow::on_selectFolderButton_clicked()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("选择源文件夹"), QString(),
                                                             QFileDialog::ShowDirsOnly);
    if (folder.isEmpty()) {
        return;
    }
    ui->folderLineEdit->setText(folder);
    populateMainExeList(folder);
    saveSettings();
}

void MainWindow::populateMainExeList(const QString &folder)
{
    ui->mainExeComboBox->clear();
    const QFileInfoList programs
        = QDir(folder).entryInfoList({QStringLiteral("*.exe")}, QDir::Files, QDir::NoSort);
    for (const QFileInfo &program : programs) {
        ui->mainExeComboBox->addItem(program.fileName());
    }
    if (ui->mainExeComboBox->count() == 0) {
        ui->mainExeComboBox->clearEditText();
    }
}

// Keeps only the file's name, because the job looks for the file in the source folder.
void MainWindow::on_mainExeButton_clicked()
{
    const QString file = QFileDialog::getOpenFileName(this, tr("选择主程序"),
                                                      ui->folderLineEdit->text(),
                                                      tr("可执行文件 (*.exe)"));
    if (file.isEmpty()) {
        return;
    }
    const QString name = QFileInfo(file).fileName();
    int index = ui->mainExeComboBox->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index < 0) {
        index = ui->mainExeComboBox->count();
        ui->mainExeComboBox->addItem(name);
    }
    ui->mainExeComboBox->setCurrentIndex(index);
    saveSettings();
}

void MainWindow::on_outputButton_clicked()
{
    QString start = ui->outputLineEdit->text();
    if (start.isEmpty()) {
        start = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    }
    const QString folder
        = QFileDialog::getExistingDirectory(this, tr("选择输出目录"), start,
                                            QFileDialog::ShowDirsOnly
                                                | QFileDialog::DontResolveSymlinks);
    if (folder.isEmpty()) {
        return;
    }
    ui->outputLineEdit->setText(folder);
    saveSettings();
}

// Accepts every image here; the worker checks the file's structure.
void MainWindow::on_iconButton_clicked()
{
    const QString file
        = QFileDialog::getOpenFileName(this, tr("选择图标文件"), QString(), tr("图标文件 (*.ico)"));
    if (file.isEmpty()) {
        return;
    }
    if (!isReadableImage(file)) {
        QMessageBox::warning(this, tr("错误"), tr("无法加载图标文件！"), QMessageBox::Ok);
        return;
    }
    ui->iconLineEdit->setText(file);
    saveSettings();
}

bool MainWindow::validateInputs()
{
    const QString problem = problemOfInputs();
    if (problem.isEmpty()) {
        return true;
    }
    QMessageBox::warning(this, tr("警告"), problem, QMessageBox::Ok);
    return false;
}

// Returns the first problem, or an empty text if a job may start.
QString MainWindow::problemOfInputs() const
{
    if (ui->folderLineEdit->text().isEmpty()) {
        return tr("请选择源文件夹！");
    }
    if (ui->mainExeComboBox->currentText().isEmpty()) {
        return tr("请选择主程序！");
    }
    if (!QFileInfo(ui->outputLineEdit->text()).isDir()) {
        return tr("输出路径必须是一个目录（例如 C:/Output）！");
    }
    return QString();
}
