// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

// Shows the window, waits until it is painted and at rest. Prints the milliseconds from the moment
// in KESTRELPACK_BENCH_START (nanoseconds of the system's clock) to the first painting, and the
// process's memory at rest in KiB: all that is resident, and what of it is no file's.
int showAndMeasure(QWidget &window);
