// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "I18nHelper.h"

#include <KLocalizedString>

QString I18nHelper::tr(const QString &text) const
{
    return ki18n(text.toUtf8().constData()).toString();
}
