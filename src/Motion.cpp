// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Motion.h"

#include <KConfigGroup>
#include <KConfigWatcher>
#include <KSharedConfig>

#include <QQmlEngine>

namespace
{

constexpr double s_defaultFactor = 1;
// Slower than the slowest speed that the desktop's settings offer.
constexpr double s_maxFactor = 20;

double factorOf(const QString &setting)
{
    bool isNumber = false;
    const double factor = setting.toDouble(&isNumber);
    // NaN fails both comparisons.
    return isNumber && factor >= 0 && factor <= s_maxFactor ? factor : s_defaultFactor;
}

} // namespace

Motion::Motion(QObject *parent)
    : QObject(parent)
    // Not the program's own configuration, which the watcher would reload.
    , m_watcher(KConfigWatcher::create(KSharedConfig::openConfig(QStringLiteral("kdeglobals"))))
{
    load();
    connect(m_watcher.data(), &KConfigWatcher::configChanged, this, &Motion::load);
}

void Motion::registerSingleton()
{
    qmlRegisterSingletonType<Motion>("org.kde.loomra", 1, 0, "Motion",
                                     [](QQmlEngine *, QJSEngine *) { return new Motion; });
}

void Motion::load()
{
    const double factor = factorOf(m_watcher->config()->group("KDE").readEntry("AnimationDurationFactor", QString()));
    if (factor != m_durationFactor) {
        m_durationFactor = factor;
        Q_EMIT durationFactorChanged();
    }
}
