// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFutureWatcher>
#include <QMainWindow>
#include <QPoint>
#include <QProcess>
#include <QString>

#include <memory>

class LogAppender;
class QButtonGroup;
class QThread;
class Worker;

namespace Ui {
class MainWindow;
}

// The program's window. It takes the inputs of a job, lets the worker run the job on another
// thread, and shows the worker's signals. Use it on the GUI thread. The destructor waits for a
// running job.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    // The states of the four options. The settings keep them, but no job depends on them yet.
    bool isCleanupEnabled() const;
    bool isTempExtractionEnabled() const;
    bool isEncryptionEnabled() const;
    bool isAdminRequired() const;

    // The choices in the three lists as the archiver writes them (packaging/compressionoptions.h).
    QString compressionLevelText() const;
    QString compressionMethodText() const;
    QString dictionarySizeText() const;

    // Version information for a produced executable: five lines "Name=value". Not used yet.
    QString versionInfoText() const;

public slots:
    // `index` is the number of a page: 0 is basic, 1 is advanced.
    void onTabButtonClicked(int index);
    void onMinimizeButtonClicked();
    void onCloseButtonClicked();
    void on_aboutButton_clicked();

    void on_selectFolderButton_clicked();
    void on_mainExeButton_clicked();
    void on_outputButton_clicked();
    void on_iconButton_clicked();
    void on_startButton_clicked();
    void on_resetButton_clicked();

    // The worker's signals, queued from its thread; see packaging/worker.h.
    void onWorkerProgress(int value);
    void onWorkerLog(const QString &message);
    void onWorkerFinished(bool success);

    // The first three are connected to `process`, which nothing starts yet. updateProgress() takes
    // a percentage and is connected to `futureWatcher`, which watches nothing yet.
    void handleProcessOutput();
    void handleProcessFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void handleProcessError(QProcess::ProcessError error);
    void updateProgress(int value);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    void startWorkerThread();
    void groupTabButtons();
    void makeFrameless();
    void connectSignals();
    void buildMenu();
    bool startsDrag(const QPoint &position) const;

    void loadSettings();
    void saveSettings() const;

    void populateMainExeList(const QString &folder);
    bool validateInputs();
    QString problemOfInputs() const;

    void setProcessingState(bool busy);
    void cleanupTempDir();

    std::unique_ptr<Ui::MainWindow> ui;
    QProcess *process;
    QFutureWatcher<bool> *futureWatcher;
    QString tempDir;
    QButtonGroup *tabButtonGroup = nullptr;
    QThread *workerThread = nullptr;
    std::unique_ptr<Worker> worker;
    bool dragging = false;
    QPoint dragStartPosition;   // the mouse, in screen coordinates
    QPoint windowStartPosition; // the window's frame, in screen coordinates
    LogAppender *log = nullptr;
};
