// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "ui/mainwindow.h"

#include "packaging/worker.h"
#include "ui/aboutdialog.h"
#include "ui/logappender.h"
#include "ui_mainwindow.h"

#include <QDateTime>
#include <QDir>
#include <QMenu>
#include <QThread>

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent, Qt::Window | Qt::FramelessWindowHint)
    , ui(std::make_unique<Ui::MainWindow>())
    , process(new QProcess(this))
    , futureWatcher(new QFutureWatcher<bool>(this))
{
    ui->setupUi(this);
    log = new LogAppender(ui->logTextEdit);

    startWorkerThread();
    groupTabButtons();
    makeFrameless();
    ui->stackedWidget->setCurrentIndex(0);
    loadSettings();
    ui->progressBar->setRange(0, 100);
    ui->progressBar->setValue(0);
    connectSignals();
    buildMenu();

    tempDir = QDir::tempPath() + QStringLiteral("/Kestrelpack_")
        + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddhhmmss"));
    QDir().mkpath(tempDir);
}

MainWindow::~MainWindow()
{
    // A running job is not interrupted. The window is hidden, because it no longer handles events.
    hide();
    workerThread->quit();
    workerThread->wait();
    worker.reset();
    saveSettings();
    cleanupTempDir();
    delete process;
    delete futureWatcher;
}

void MainWindow::startWorkerThread()
{
    workerThread = new QThread(this);
    worker = std::make_unique<Worker>();
    worker->moveToThread(workerThread);
    connect(worker.get(), &Worker::progressChanged, this, &MainWindow::onWorkerProgress);
    connect(worker.get(), &Worker::logMessage, this, &MainWindow::onWorkerLog);
    connect(worker.get(), &Worker::finished, this, &MainWindow::onWorkerFinished);
    workerThread->start();
}

void MainWindow::connectSignals()
{
    connect(process, &QProcess::readyReadStandardOutput, this, &MainWindow::handleProcessOutput);
    connect(process, &QProcess::finished, this, &MainWindow::handleProcessFinished);
    connect(process, &QProcess::errorOccurred, this, &MainWindow::handleProcessError);
    connect(futureWatcher, &QFutureWatcher<bool>::progressValueChanged, this,
            &MainWindow::updateProgress);
    connect(ui->minButton, &QPushButton::clicked, this, &MainWindow::onMinimizeButtonClicked);
    connect(ui->closeButton, &QPushButton::clicked, this, &MainWindow::onCloseButtonClicked);
}

void MainWindow::buildMenu()
{
    auto *menu = new QMenu(this);
    menu->addAction(tr("关于Kestrelpack"), this, &MainWindow::on_aboutButton_clicked);
    const QPushButton *button = ui->menuButton;
    connect(
        button, &QPushButton::clicked, button,
        [button, menu] { menu->exec(button->mapToGlobal(QPoint(0, button->height()))); },
        Qt::DirectConnection);
}

void MainWindow::on_aboutButton_clicked()
{
    AboutDialog dialog(this);
    dialog.exec();
}

void MainWindow::cleanupTempDir()
{
    QDir directory(tempDir);
    if (directory.exists()) {
        directory.removeRecursively();
    }
}

QString MainWindow::versionInfoText() const
{
    return QStringLiteral("ProductName=Portable Application\n"
                          "ProductVersion=1.0\n"
                          "CompanyName=Halvorsoft\n"
                          "FileVersion=1.0.2.32\n"
                          "FileDescription=Portable Application");
}
