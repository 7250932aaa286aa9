/* SPDX-FileCopyrightText: 2026 The Kestrelpack developers */
/* SPDX-License-Identifier: MIT */

/* For the resource compiler too. */
#pragma once

#define progressDialog 1
#define progressBar 100
#define smoothBar 1 /* PBS_SMOOTH of commctrl.h, which the resource compiler cannot read */
