// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Looks.h"

#include "OmniBarFixture.h"

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

QStringList iconsIn(QQuickItem *root)
{
    QStringList names;
    const auto icons = OmniBarFixture::itemsWhere(root, [](QQuickItem *item) {
        // Kirigami's icon.
        return item->metaObject()->indexOfProperty("isMask") >= 0 && OmniBarFixture::isSeen(item);
    });
    for (QQuickItem *icon : icons) {
        // Its wrapper, FallbackIcon. The source starts with the name that is used.
        const QQuickItem *wrapper = icon->parentItem();
        const QString name = wrapper->property("name").toString();
        const bool isFirst = icon->property("source").toString().startsWith(name);
        names.append(isFirst ? name : wrapper->property("fallback").toString());
    }
    return names;
}

QQuickItem *backgroundOf(QQuickItem *button)
{
    return button->property("background").value<QQuickItem *>();
}

QString borderOf(QQuickItem *button)
{
    QQuickItem *background = backgroundOf(button);
    const int width = QQmlProperty::read(background, QStringLiteral("border.width")).toInt();
    return width == 0 ? QString() : QStringLiteral("%1 %2").arg(width).arg(colourOf(background, "border.color"));
}

QStringList runningIn(const QObject *item)
{
    QStringList found;
    const auto steps = item->findChildren<QObject *>();
    for (const QObject *step : steps) {
        if (!step->inherits("QQuickPropertyAnimation")) {
            continue;
        }
        // Only the sequence as a whole is reported as running.
        const QObject *sequence = step->parent();
        const QObject *whole = sequence->inherits("QQuickAnimationGroup") ? sequence : step;
        if (whole->property("running").toBool()) {
            found.append(QStringLiteral("%1 to %2, %3")
                             .arg(step->property("from").toString(), step->property("to").toString(),
                                  OmniBarFixture::animationSpec(step)));
        }
    }
    return found;
}

void haltPulses(QQuickItem *item)
{
    const auto parts = item->findChildren<QObject *>();
    for (QObject *part : parts) {
        if (part->inherits("QQuickSequentialAnimation") && part->property("running").toBool()) {
            part->setProperty("paused", true);
        }
    }
    item->setOpacity(1.0);
}
