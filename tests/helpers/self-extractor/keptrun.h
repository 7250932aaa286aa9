// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/helpers/self-extractor/modulerun.h"

#include <QObject>

// A test of produced files that keep their files in the user's profile. Each function begins with an
// empty temporary folder, which must be empty again at its end, and with a profile that contains
// only files of the user's own, which must still be there.
class KeptTest : public QObject
{
    Q_OBJECT

protected:
    // The module that sees an ordinary user's rights, which Wine does not have.
    static constexpr const char *ordinaryModule = "/ordinary.sfx";
    // An executable that keeps `tree`, which gets the test program as main.exe. Further settings
    // are lines. Returns an empty text on failure.
    QString assemble(const QString &name, Tree tree, const QByteArray &settings = QByteArray(),
                     const QString &module = QString::fromLatin1(ordinaryModule));
    // One with the tree of this test, and with its usual settings.
    QString assembleUsual(const QByteArray &settings = QByteArray());
    static Tree usualTree();

    // Makes another profile. Without a name it is the usual one.
    [[nodiscard]] bool renewProfile(const QString &name = QStringLiteral("profile"));
    QStringList options() const;
    std::unique_ptr<QProcess> start(const QString &file, const QString &tail = QString()) const;
    Run run(const QString &file, const QString &tail = QString()) const;

    // Whether this run's program lay in a kept folder, and whether it lay in a private one.
    static bool isKept(const Run &run);
    static bool isPrivate(const Run &run);
    // The kept folders, and everything that lies beside them.
    QStringList keptFolders() const;
    QStringList besideKept() const;
    // Linux paths: the folder that all lie in, and the application's folder in the first one.
    QString base() const { return m_profile + QStringLiteral("/Kestrelpack"); }
    QString application() const;
    // Whether the application's folder contains all of this tree.
    bool hasTree(const Tree &tree) const;
    // For each file in the application's folder, what changes if it is written again.
    QMap<QString, QString> marks() const;

    ModuleRun m_run;
    QString m_profile;
    std::unique_ptr<QProcess> m_holder; // keeps Wine's server, which stands for a running system

protected slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();
};

// Gives the file other content, but not another size or time.
[[nodiscard]] bool changeSecretly(const QString &path);
// Sets a file's time to a number of days before now.
[[nodiscard]] bool setAge(const QString &path, int days);
