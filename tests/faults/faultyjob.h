// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "packaging/packagingjob.h"
#include "tests/fakes/fakeplatform.h"
#include "tests/fakes/privatetemp.h"
#include "tests/faults/conditions.h"

#include <QMetaType>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

class FaultyJob;

// How a job ended, against what is on the disk then.
enum class Ending {
    Failed,   // it says that it failed
    Done,     // it says that it is done, and the output is whole
    Unnoticed // it says that it is done, and the output is not what it should be
};

enum class Rights { Own, Ordinary };

// One row of the matrix: what goes wrong, and what comes of it.
struct Fault
{
    std::function<void(FaultyJob &)> spoil;
    Ending ending = Ending::Failed;
    QString line;      // part of the log
    QString output;    // what the output directory holds in the end; see FaultyJob::leftInOutput()
    QString temporary; // the same for the temporary directory, without the three helpers
    Rights rights = Rights::Own;
};
Q_DECLARE_METATYPE(Fault)

// A job that would succeed, over a folder with a few files, with fake helpers, and with an older output in
// place. A row spoils what it is about. The worker lives in the test's thread.
class FaultyJob
{
public:
    FaultyJob();
    ~FaultyJob();

    // Spoils, runs, compares, and notes the row for the document. Fails the running test.
    void check(const Fault &fault);

    void run(Rights rights = Rights::Own);

    QString source(const QString &name = {}) const;
    QString output(const QString &name = "my.exe") const;

    // `script` runs first; then the archive is made.
    void useArchiver(const QByteArray &script);
    void useRealArchiver();
    // Puts that content in a helper's place; it may be executed.
    void replaceHelper(const QString &name, const QByteArray &content) const;
    // Calls `action` once, when the moment comes (see FakePlatform::before).
    void atMoment(const QString &moment, const std::function<void()> &action);
    // The folder that is packed, or the directory, becomes an empty disk of that size; files in it are gone.
    void putOnSmallDisk(const QString &folder, int kibibytes);
    // The row cannot be brought about here; the first reason counts.
    void skip(const QString &reason) { m_reason = m_reason.isEmpty() ? reason : m_reason; }
    // Nobody else may open the file while the job runs.
    void hold(const QString &path);
    // What others do to the source folder is not the job's doing: names that are not compared.
    void leaveOutOfComparison(const QString &name = {}) { m_changedByOthers << source(name); }

    Ending ending() const;
    QString leftInOutput() const;
    QString leftInTemporary() const;
    QStringList sourceState() const;

    static QByteArray block();
    static constexpr int archiveSize = 1500000;

    QTemporaryDir folders; // made before the private temporary directory, so it is not in there
    PrivateTemp temp;
    std::optional<FakePlatform> platform{std::in_place}; // reset() for the system's own
    PackagingJob job;
    QByteArray older = "the older one"; // what the output holds before
    QStringList log;                    // lines, long ones cut; and "progress 37"
    bool success = false;

private:
    QString describedOutput() const;

    std::unique_ptr<SmallDisk> m_disk;
    QString m_heldPath; // empty: none
    QString m_reason;
    QStringList m_changedByOthers;
};
