// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"

#include "support/OmniBarFixture.h"

#include <QColor>
#include <QQmlProperty>

QString rgba(double red, double green, double blue, double alpha)
{
    return QColor::fromRgbF(red, green, blue, alpha).name(QColor::HexArgb);
}

QString rgb(const QString &name)
{
    return QColor(name).name(QColor::HexArgb);
}

QString colourOf(QObject *item, const char *path)
{
    return QQmlProperty(item, QString::fromLatin1(path)).read().value<QColor>().name(QColor::HexArgb);
}

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QStringList tipsOf(OmniBarFixture &bar)
{
    QStringList texts;
    const auto items = bar.itemsWhere(bar.window()->contentItem(), [](QQuickItem *item) {
        return QByteArray(item->metaObject()->className()).startsWith("QQuickPopupItem")
            && OmniBarFixture::isSeen(item);
    });
    for (QQuickItem *popup : items) {
        const auto words = bar.itemsWhere(popup, [](QQuickItem *item) { return item->inherits("QQuickText"); });
        for (QQuickItem *word : words) {
            texts.append(word->property("text").toString());
        }
    }
    return texts;
}
