// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

namespace sfx {

class Job;

// Windows kills a console process five seconds after its console closes. While this object exists,
// the processes of `job` are detached from this process when the console closes, so GUI programs
// keep running, as they would without the module. Programs in the console are ended by Windows
// itself.
class DetachJobOnClose
{
public:
    explicit DetachJobOnClose(Job &job);
    DetachJobOnClose(const DetachJobOnClose &) = delete;
    DetachJobOnClose &operator=(const DetachJobOnClose &) = delete;
    ~DetachJobOnClose();
};

// Detaches the processes of the job that a DetachJobOnClose exists for. Any thread may call it.
void detachRunningJob();

} // namespace sfx
