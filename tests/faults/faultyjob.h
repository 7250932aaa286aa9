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

// How a job ended, compared with the files on the disk after it.
enum class Ending {
    Failed,   // it reports a failure
    Done,     // it reports success, and the output is whole
    Unnoticed // it reports success, and the output is not as it should be
};

enum class Rights { Own, Ordinary };

// One row of the matrix: the fault, and its result.
struct Fault
{
    std::function<void(FaultyJob &)> spoil;
    Ending ending = Ending::Failed;
    QString line;      // a part of the log
    QString output;    // content of the output directory at the end; see FaultyJob::leftInOutput()
    QString temporary; // the same for the temporary directory, without the three helpers
    Rights rights = Rights::Own;
};
Q_DECLARE_METATYPE(Fault)

// A job that would succeed: a folder with a few files, fake helpers, and an older output. Each row
// damages the part that it tests. The worker lives in the test's thread.
class FaultyJob
{
public:
    FaultyJob();
    ~FaultyJob();

    // Applies the fault, runs the job, compares the result, and writes the row for the document.
    // Fails the running test if they differ.
    void check(const Fault &fault);

    void run(Rights rights = Rights::Own);

    QString source(const QString &name = {}) const;
    QString output(const QString &name = "my.exe") const;

    // The archiver runs `script` first. Then it makes the archive.
    void useArchiver(const QByteArray &script);
    void useRealArchiver();
    // Replaces a helper with that content and makes it executable.
    void replaceHelper(const QString &name, const QByteArray &content) const;
    // Calls `action` once, at the given moment (see FakePlatform::before).
    void atMoment(const QString &moment, const std::function<void()> &action);
    // Makes `folder` an empty disk of that size. Its files disappear.
    void putOnSmallDisk(const QString &folder, int kibibytes);
    // Says that the row cannot be tested here. The first reason counts.
    void skip(const QString &reason) { m_reason = m_reason.isEmpty() ? reason : m_reason; }
    // No other process can open the file while the job runs.
    void hold(const QString &path);
    // Other processes change these names in the source folder, so they are not compared.
    void leaveOutOfComparison(const QString &name = {}) { m_changedByOthers << source(name); }

    Ending ending() const;
    QString leftInOutput() const;
    QString leftInTemporary() const;
    QStringList sourceState() const;

    static QByteArray block();
    static constexpr int archiveSize = 1500000;

    QTemporaryDir folders; // made before the private temporary directory, so it is not inside that
    PrivateTemp temp;
    std::optional<FakePlatform> platform{std::in_place}; // reset() selects the system's platform
    PackagingJob job;
    QByteArray older = "the older one"; // the output's content before the job
    QStringList log;                    // lines, long ones cut; and "progress 37"
    bool success = false;

private:
    QString describedOutput() const;

    std::unique_ptr<SmallDisk> m_disk;
    QString m_heldPath; // empty: no file
    QString m_reason;
    QStringList m_changedByOthers;
};
