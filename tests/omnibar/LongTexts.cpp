// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "LongTexts.h"

#include "OmniBarFixture.h"

#include <KLocalizedString>

#include <QCoreApplication>

#include <algorithm>

namespace
{

const QString s_isElided = QStringLiteral("is elided");
// What rounding to whole pixels may take, in pixels.
constexpr qreal s_tolerance = 1.5;

struct ShownText
{
    QQuickItem *item;
    QString text;
    QRectF place; //!< of its glyphs, in the window
};

//! The pseudo-translation has each text in brackets.
bool isTranslated(const ShownText &shown)
{
    return shown.text.contains(QLatin1Char('[')) && shown.text.contains(QLatin1Char(']'));
}

//! The room for the glyphs of an item, in its coordinates.
QRectF roomOf(QQuickItem *item)
{
    const auto padding = [item](const char *side) { return item->property(side).toReal(); };
    return QRectF(QPointF(), item->size())
        .adjusted(padding("leftPadding"), padding("topPadding"), -padding("rightPadding"), -padding("bottomPadding"));
}

QList<ShownText> textsOf(QQuickWindow *window)
{
    QList<ShownText> texts;
    const auto items = OmniBarFixture::itemsWhere(window->contentItem(), [](QQuickItem *item) {
        return item->inherits("QQuickText") && OmniBarFixture::isSeen(item)
            && !item->property("text").toString().trimmed().isEmpty();
    });
    for (QQuickItem *item : items) {
        texts.append({item, item->property("text").toString(), item->mapRectToScene(LongTexts::glyphsOf(item))});
    }
    return texts;
}

//! The nearest ancestor that has a visible edge or cuts off what is outside of it.
QQuickItem *frameOf(QQuickItem *item)
{
    QQuickItem *frame = item->parentItem();
    while (frame && !frame->clip() && !frame->inherits("QQuickRectangle") && !frame->inherits("QQuickControl")) {
        frame = frame->parentItem();
    }
    return frame;
}

//! Whether a shown text is the translation of a text, up to its first placeholder and from its last one on.
bool isTranslationOf(const QString &shown, const QString &text)
{
    const QString translation = LongTexts::translated(text);
    return shown.startsWith(translation.section(QLatin1Char('{'), 0, 0))
        && shown.endsWith(translation.section(QLatin1Char('}'), -1));
}

//! What is wrong with a text alone. Empty if nothing is.
QString faultOf(const ShownText &shown)
{
    QQuickItem *item = shown.item;
    if (item->property("truncated").toBool()) {
        return s_isElided;
    }
    if (item->property("contentWidth").toReal() > roomOf(item).width() + s_tolerance) {
        return QStringLiteral("is wider than its item");
    }
    if (item->property("contentHeight").toReal() > roomOf(item).height() + s_tolerance) {
        return QStringLiteral("is higher than its item");
    }
    QRectF place = shown.place;
    const QRectF window(QPointF(), QSizeF(item->window()->size()));
    // What is above or below can be scrolled to.
    for (QQuickItem *frame = frameOf(item); frame; frame = frameOf(frame)) {
        const QRectF edges = frame->mapRectToScene(QRectF(QPointF(), frame->size()));
        if (edges.isEmpty()) {
            continue;
        }
        if (place.left() < edges.left() - s_tolerance || place.right() > edges.right() + s_tolerance) {
            return QStringLiteral("sticks out of %1 \"%2\"")
                .arg(QString::fromLatin1(frame->metaObject()->className()), frame->objectName());
        }
        if (frame->clip()) {
            break;
        }
        if (place.top() < edges.top() - s_tolerance || place.bottom() > edges.bottom() + s_tolerance) {
            return QStringLiteral("is higher than %1 \"%2\"")
                .arg(QString::fromLatin1(frame->metaObject()->className()), frame->objectName());
        }
    }
    if (place.left() < window.left() - s_tolerance || place.right() > window.right() + s_tolerance) {
        return QStringLiteral("sticks out of the window");
    }
    return QString();
}

QString described(const ShownText &shown)
{
    QString name = shown.item->objectName();
    for (QQuickItem *parent = shown.item->parentItem(); parent && name.isEmpty(); parent = parent->parentItem()) {
        name = parent->objectName();
    }
    return QStringLiteral("\"%1\" (%2)").arg(QString(shown.text).replace(QLatin1Char('\n'), QLatin1Char(' ')), name);
}

} // namespace

bool LongTexts::use(const QString &language)
{
    const QString catalogues = QCoreApplication::applicationDirPath() + QStringLiteral("/../pseudo/locale");
    KLocalizedString::setApplicationDomain("loomra-kde");
    KLocalizedString::addDomainLocaleDir("loomra-kde", catalogues);
    KLocalizedString::setLanguages({language});
    return KLocalizedString::isApplicationTranslatedInto(language);
}

QString LongTexts::translated(const QString &text)
{
    return ki18n(text.toUtf8().constData()).toString();
}

QString LongTexts::faults(QQuickWindow *window, const QStringList &elided)
{
    QStringList found;
    const QList<ShownText> texts = textsOf(window);
    int translatedCount = 0;
    for (int i = 0; i < texts.size(); ++i) {
        const ShownText &shown = texts.at(i);
        if (shown.text.contains(QChar::ReplacementCharacter)) {
            found.append(described(shown) + QStringLiteral(" has a character that can't be shown"));
        }
        if (!isTranslated(shown)) {
            continue;
        }
        ++translatedCount;
        const QString fault = faultOf(shown);
        const bool mayBeElided = std::any_of(elided.begin(), elided.end(),
                                             [&](const QString &text) { return isTranslationOf(shown.text, text); });
        if (!fault.isEmpty() && !(mayBeElided && fault == s_isElided)) {
            found.append(described(shown) + QLatin1Char(' ') + fault);
        }
        for (int j = 0; j < texts.size(); ++j) {
            const QRectF common = shown.place & texts.at(j).place;
            const bool isOther = j > i || !isTranslated(texts.at(j));
            if (isOther && common.width() > s_tolerance && common.height() > 2 * s_tolerance
                && frameOf(shown.item) == frameOf(texts.at(j).item)) {
                found.append(described(shown) + QStringLiteral(" overlaps ") + described(texts.at(j)));
            }
        }
    }
    if (translatedCount == 0) {
        found.append(QStringLiteral("no text is translated"));
    }
    return found.join(QLatin1Char('\n'));
}

QRectF LongTexts::glyphsOf(QQuickItem *text)
{
    QRectF glyphs(0, 0, text->property("contentWidth").toReal(), text->property("contentHeight").toReal());
    const QRectF room = roomOf(text);
    const int horizontal = text->property("effectiveHorizontalAlignment").toInt();
    const int vertical = text->property("verticalAlignment").toInt();
    glyphs.moveTopLeft(room.topLeft());
    if (horizontal == Qt::AlignRight) {
        glyphs.moveRight(room.right());
    } else if (horizontal == Qt::AlignHCenter) {
        glyphs.moveLeft(room.center().x() - glyphs.width() / 2);
    }
    if (vertical == Qt::AlignBottom) {
        glyphs.moveBottom(room.bottom());
    } else if (vertical == Qt::AlignVCenter) {
        glyphs.moveTop(room.center().y() - glyphs.height() / 2);
    }
    return glyphs;
}
