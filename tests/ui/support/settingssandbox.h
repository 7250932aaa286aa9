// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/ui/support/registrysandbox.h"

#include <QSettings>
#include <QTemporaryDir>

#include <memory>

// A private settings store, empty at first.
class SettingsSandbox
{
public:
    SettingsSandbox()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_directory.path());
    }

    QSettings &store()
    {
        m_store = std::make_unique<QSettings>("Vexo", "Kestrelpack");
        return *m_store;
    }

    // Reads the store again, as another process would.
    QVariant value(const QString &key) { return store().value(key); }
    QStringList keys() { return store().allKeys(); }

    void set(const QString &key, const QVariant &value)
    {
        store().setValue(key, value);
        m_store->sync();
    }

private:
    QTemporaryDir m_directory;
    [[maybe_unused]] RegistrySandbox m_registry;
    std::unique_ptr<QSettings> m_store;
};
