// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// screenshooter APPLICATION-FOLDER PICTURE-FOLDER: takes the pictures for the documentation. It
// runs a real job on APPLICATION-FOLDER. The environment sets the settings store and the temporary
// directory.

#include "app/stylesheet.h"
#include "tools/screenshooter/camera.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

namespace {

constexpr int percentageOfRunningPicture = 35;

class Tour
{
public:
    Tour(const QString &application, const QString &pictures)
        : m_application(application)
        , m_camera(pictures)
    {
        m_window.show();
        settle();
    }

    void run()
    {
        shootEmptyWindow();
        shootRefusals();
        shootJob();
        shootAdvancedPage();
    }

private:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        return m_window.findChild<Widget *>(QLatin1String(name));
    }

    void click(const char *name) { find<QAbstractButton>(name)->click(); }

    void shootClick(const QString &picture, const char *button)
    {
        m_camera.shootWhatOpens(picture, [this, button] { click(button); });
    }

    static void settle()
    {
        QEventLoop loop;
        QTimer::singleShot(100, &loop, &QEventLoop::quit);
        loop.exec();
    }

    void shootEmptyWindow()
    {
        m_camera.shoot("start");
        shootClick("menu", "menuButton");
        m_camera.shootWhatOpens("about", [this] { m_window.on_aboutButton_clicked(); });
        shootClick("quit", "closeButton");
    }

    void shootRefusals()
    {
        shootClick("no-folder", "startButton");
        find<QLineEdit>("folderLineEdit")->setText(m_application);
        shootClick("no-program", "startButton");
        find<QComboBox>("mainExeComboBox")->addItem("hello.exe");
        shootClick("no-output", "startButton");
        find<QLineEdit>("outputLineEdit")->setText(QDir::tempPath());
        m_camera.shoot("basic");
    }

    void shootJob()
    {
        bool taken = false;
        const auto *bar = find<QProgressBar>("progressBar");
        QObject::connect(bar, &QProgressBar::valueChanged, &m_window, [this, &taken](int value) {
            if (!taken && value >= percentageOfRunningPicture) {
                taken = true;
                m_camera.shoot("running");
            }
        });
        QEventLoop loop;
        m_camera.shootWhatOpens("finished", [this, &loop] {
            click("startButton");
            QTimer ended;
            QObject::connect(&ended, &QTimer::timeout, &loop, [this, &loop] {
                if (find<QPushButton>("startButton")->isEnabled()
                    && QApplication::activeModalWidget() == nullptr) {
                    loop.quit();
                }
            });
            ended.start(20);
            loop.exec();
        });
        m_camera.shoot("done");
    }

    void shootAdvancedPage()
    {
        click("advancedTabButton");
        settle();
        m_camera.shoot("advanced");
        shootUnreadableIcon();
        shootClick("reset", "resetButton");
        m_camera.shootWhatOpens(
            "reset-done", [this] { click("resetButton"); },
            [](QWidget *opened) {
                auto *yes = qobject_cast<QMessageBox *>(opened)->button(QMessageBox::Yes);
                if (yes != nullptr) {
                    yes->click();
                }
                return yes != nullptr;
            });
    }

    void shootUnreadableIcon()
    {
        const QString text = m_application + "/greeting.txt";
        m_camera.shootWhatOpens(
            "unreadable-icon", [this] { click("iconButton"); },
            [&text](QWidget *opened) {
                auto *dialog = qobject_cast<QFileDialog *>(opened);
                if (dialog != nullptr) {
                    dialog->findChild<QLineEdit *>("fileNameEdit")->setText(text);
                    dialog->findChild<QDialogButtonBox *>()
                        ->button(QDialogButtonBox::Open)
                        ->click();
                }
                return dialog != nullptr;
            });
    }

    QString m_application;
    Camera m_camera;
    MainWindow m_window;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        return EXIT_FAILURE;
    }
    Camera(arguments[2]).shootWhatOpens("no-style-sheet", warnOfMissingStyleSheet);
    if (!loadStyleSheet(application)) {
        return EXIT_FAILURE;
    }
    Tour(arguments[1], arguments[2]).run();
    return EXIT_SUCCESS;
}
