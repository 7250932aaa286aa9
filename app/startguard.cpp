// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "app/startguard.h"

#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

struct Remark
{
    QtMsgType type;
    QString text;
};

// Held back: before a refusal, Qt explains it in several lines, of which the first has the reason.
std::vector<Remark> remarks;

void holdBack(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtFatalMsg) {
        remarks.push_back({type, text});
        return;
    }
    const QString reason = remarks.empty() ? text : remarks.front().text;
    std::fprintf(stderr,
                 "kestrelpack: no window can be opened here (%s); kestrelpack-cli needs none\n",
                 qUtf8Printable(reason.simplified()));
    std::fflush(stderr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace

StartGuard::StartGuard()
{
    qInstallMessageHandler(holdBack);
}

StartGuard::~StartGuard()
{
    qInstallMessageHandler(nullptr);
    for (const Remark &remark : remarks) {
        qt_message_output(remark.type, QMessageLogContext(), remark.text);
    }
    remarks.clear();
}
