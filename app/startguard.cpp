// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "app/startguard.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

struct Remark
{
    QtMsgType type;
    QByteArray file;
    int line;
    QByteArray function;
    QByteArray category;
    QString text;
};

// The messages held back. Before Qt aborts it prints several lines; the first one names the reason.
std::vector<Remark> remarks;

// A release build of Qt names no file and no function.
const char *orNull(const QByteArray &text)
{
    return text.isNull() ? nullptr : text.constData();
}

void holdBack(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type != QtFatalMsg) {
        remarks.push_back(
            {type, context.file, context.line, context.function, context.category, text});
        return;
    }
    const QString reason = remarks.empty() ? text : remarks.front().text;
    std::fprintf(
        stderr, "kestrelpack: cannot open a window: %s (kestrelpack-cli works without a display)\n",
        qUtf8Printable(reason.simplified()));
    std::fflush(stderr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace

StartGuard::StartGuard() : m_previous(qInstallMessageHandler(holdBack)) {}

StartGuard::~StartGuard()
{
    qInstallMessageHandler(m_previous);
    for (const Remark &remark : remarks) {
        const QMessageLogContext context(orNull(remark.file), remark.line, orNull(remark.function),
                                         orNull(remark.category));
        qt_message_output(remark.type, context, remark.text);
    }
    remarks.clear();
}
