// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "app/stylesheet.h"

#include <QApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QMessageBox>

bool loadStyleSheet(QApplication &application)
{
    if (!QFile::exists(QStringLiteral(":/"))) {
        qCritical() << "资源系统未初始化！";
        return false;
    }
    const QString path = QStringLiteral(":/qss/default.css");
    qDebug().noquote() << "样式文件路径:" << path;

    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCritical().noquote() << "无法打开样式表:" << file.errorString();
        qCritical().noquote() << "当前工作目录:" << QDir::currentPath();
        return false;
    }
    const QString sheet = QString::fromUtf8(file.readAll());
    file.close();
    if (sheet.isEmpty()) {
        qWarning() << "样式表为空！";
        return false;
    }
    application.setStyleSheet(sheet);
    qDebug() << "样式表加载成功";
    return true;
}

void warnOfMissingStyleSheet()
{
    QMessageBox::warning(nullptr, QStringLiteral("警告"),
                         QStringLiteral("无法加载样式表，将使用默认外观。\n"
                                        "这可能会影响应用程序的外观，但功能不受影响。"),
                         QMessageBox::Ok);
}
