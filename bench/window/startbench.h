// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

// Shows the window and waits until it is painted and idle. Prints the milliseconds from the time in
// KESTRELPACK_BENCH_START (nanoseconds of the system's clock) to the first painting. Then prints
// the process's resident memory in KiB: all of it, and the part that does not belong to files.
int showAndMeasure(QWidget &window);
