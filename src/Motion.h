// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QObject>
#include <QSharedPointer>

class KConfigWatcher;

//! The animation speed that the user chose for the desktop. A singleton of QML, created when it is first used. It
//! applies to animations whose duration the design leaves open. Main thread.
class Motion : public QObject
{
    Q_OBJECT
    //! What to multiply a duration with, from 0 (no animations) to 20. 1 by default and if the setting is invalid.
    Q_PROPERTY(double durationFactor READ durationFactor NOTIFY durationFactorChanged)

public:
    explicit Motion(QObject *parent = nullptr);

    //! Registers the singleton as "Motion" of the module org.kde.loomra.
    static void registerSingleton();

    double durationFactor() const { return m_durationFactor; }

Q_SIGNALS:
    void durationFactorChanged();

private:
    void load();

    QSharedPointer<KConfigWatcher> m_watcher;
    double m_durationFactor = 1;
};
