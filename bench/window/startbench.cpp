// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "bench/window/startbench.h"

#include <QApplication>
#include <QFile>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>

namespace {

using namespace std::chrono_literals;

// Records the time right after the watched window's first paint event.
class FirstPaint : public QObject
{
public:
    explicit FirstPaint(QWidget *window) { window->installEventFilter(this); }

    qint64 nanoseconds = 0; // of the system's clock

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && nanoseconds == 0) {
            watched->removeEventFilter(this);
            QTimer::singleShot(0, this, [this] {
                const auto now = std::chrono::system_clock::now().time_since_epoch();
                nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
            });
        }
        return false;
    }
};

// Returns the value of a line in the process's status, such as "VmRSS", in KiB.
qint64 memory(const QByteArray &name)
{
    QFile status("/proc/self/status");
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith(name + ':')) {
                return line.mid(name.size() + 1).replace("kB", "").trimmed().toLongLong();
            }
        }
    }
    return 0;
}

} // namespace

int showAndMeasure(QWidget &window)
{
    const FirstPaint paint(&window);
    window.show();
    QTimer::singleShot(700ms, &window, &QApplication::quit);
    QApplication::exec();
    if (paint.nanoseconds == 0) {
        std::fputs("the window was never painted\n", stderr);
        return 1;
    }
    const qint64 start = qEnvironmentVariable("KESTRELPACK_BENCH_START").toLongLong();
    std::printf("%.1f %lld %lld\n", static_cast<double>(paint.nanoseconds - start) / 1e6,
                static_cast<long long>(memory("VmRSS")), static_cast<long long>(memory("RssAnon")));
    return 0;
}
