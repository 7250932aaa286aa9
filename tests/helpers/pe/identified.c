// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// A console program with an icon and version information in two languages.
int main(void)
{
    return 0;
}
