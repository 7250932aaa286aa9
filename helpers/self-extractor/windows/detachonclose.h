// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

namespace sfx {

class Job;

// Windows kills a console process five seconds after its console closes. While this object exists,
// closing the console first detaches the processes of `job` from this one, so GUI programs keep
// running, as they would without the module. Windows itself ends the programs in the console.
class DetachJobOnClose
{
public:
    explicit DetachJobOnClose(Job &job);
    DetachJobOnClose(const DetachJobOnClose &) = delete;
    DetachJobOnClose &operator=(const DetachJobOnClose &) = delete;
    ~DetachJobOnClose();
};

// Detaches the processes of the job for which a DetachJobOnClose exists. May be called by any thread.
void detachRunningJob();

} // namespace sfx
