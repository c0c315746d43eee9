// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"

#include "LongTexts.h"

#include "AgentBridge.h"
#include "Timeouts.h"

#include <QQmlProperty>
#include <QTest>

#include <algorithm>

bool Conversation::begin()
{
    return open()
        && QTest::qWaitFor([this] { return item(QStringLiteral("messageList")) != nullptr; }, Timeouts::Default);
}

ScriptedBridge::Request Conversation::ask(const QString &prompt)
{
    type(prompt);
    key(Qt::Key_Return);
    return bridge.takeRequest(QStringLiteral("chat"));
}

bool Conversation::answer(const ScriptedBridge::Request &request, const QString &reply, QJsonObject more)
{
    const int before = count();
    if (more.contains(QStringLiteral("sessionId"))) {
        spoil(); // the client keeps its session for as long as it lives
    }
    more.insert(QStringLiteral("response"), reply);
    bridge.reply(request, more);
    return QTest::qWaitFor([&] { return count() == before + 1 && agent()->status() == AgentStatus::Idle; },
                           Timeouts::Default);
}

bool Conversation::exchange(const QString &prompt, const QString &reply, const QJsonObject &more)
{
    return answer(ask(prompt), reply, more);
}

void Conversation::emitReply(const QString &reply)
{
    Q_EMIT agent()->agentReplied(reply);
}

void Conversation::reportPhase(const QString &phase)
{
    bridge.event(QStringLiteral("plan.phase"), {{QStringLiteral("phase"), phase}});
}

void Conversation::setLight(bool isLight)
{
    property("appearanceStore").value<QObject *>()->setProperty("lightChrome", isLight);
}

QStringList Conversation::rows() const
{
    QStringList list;
    for (int row = 0; row < count(); ++row) {
        list.append(field(row, "role").toString() + QStringLiteral(": ") + field(row, "text").toString());
    }
    return list;
}

QVariant Conversation::field(int row, const char *name) const
{
    return evaluate(QStringLiteral("omniBar.chatModel.get(%1).%2").arg(QString::number(row), QLatin1String(name)));
}

QQuickItem *Conversation::rowItem(int row) const
{
    const QList<QQuickItem *> built = items(QStringLiteral("messageRow"));
    const auto found = std::find_if(built.cbegin(), built.cend(),
                                    [row](QQuickItem *item) { return item->property("index").toInt() == row; });
    return found == built.cend() ? nullptr : *found;
}

QQuickItem *Conversation::inRow(int row, const char *objectName) const
{
    return itemIn(rowItem(row), QLatin1String(objectName));
}

QStringList Conversation::textsIn(QQuickItem *root)
{
    QStringList texts;
    const QList<QQuickItem *> found =
        itemsWhere(root, [](QQuickItem *item) { return item->inherits("QQuickText") && item->isVisible(); });
    for (QQuickItem *item : found) {
        texts.append(item->property("text").toString());
    }
    return texts;
}

QQuickItem *Conversation::textItem(const QString &text) const
{
    return itemsWhere(window()->contentItem(),
                      [&](QQuickItem *item) {
                          return item->inherits("QQuickText") && isSeen(item)
                              && item->property("text").toString() == text;
                      })
        .value(0);
}

bool Conversation::openTab(const QString &title)
{
    setProperty("settingsPanelOpen", true);
    if (!QTest::qWaitFor([this] { return isSeen(item(QStringLiteral("settingsTabs"))); })) {
        return false;
    }
    QQuickItem *strip = item(QStringLiteral("settingsTabs"));
    const auto tabs = itemsWhere(strip, [](QQuickItem *item) { return item->inherits("QQuickTabButton"); });
    const auto tab = std::find_if(tabs.cbegin(), tabs.cend(), [&](QQuickItem *item) {
        return item->property("label").toString() == LongTexts::translated(title);
    });
    strip->setProperty("currentIndex", static_cast<int>(tab - tabs.cbegin()));
    return tab != tabs.cend() && settle();
}

QStringList Conversation::looseTexts(QQuickItem *root)
{
    QStringList loose;
    const auto words = itemsWhere(root, [](QQuickItem *item) { return item->inherits("QQuickText"); });
    for (QQuickItem *word : words) {
        const bool isPlain = word->property("textFormat").toInt() == Qt::PlainText;
        if (!isPlain || (isSeen(word) && !place(root).contains(place(word)))) {
            loose.append(word->property("text").toString().left(40));
        }
    }
    return loose;
}

QStringList Conversation::suggestions() const
{
    QStringList titles;
    for (QQuickItem *card : items(QStringLiteral("suggestionCard"))) {
        if (isSeen(card)) {
            titles.append(card->property("title").toString());
        }
    }
    return titles;
}

QQuickItem *Conversation::suggestion(const QString &title) const
{
    const QList<QQuickItem *> cards = items(QStringLiteral("suggestionCard"));
    const auto found = std::find_if(cards.cbegin(), cards.cend(),
                                    [&](QQuickItem *card) { return card->property("title").toString() == title; });
    return found == cards.cend() ? nullptr : *found;
}

QString Conversation::color(QQuickItem *item, const char *path)
{
    return QQmlProperty::read(item, QLatin1String(path)).value<QColor>().name(QColor::HexArgb);
}

QString Conversation::color(qreal red, qreal green, qreal blue, qreal alpha)
{
    return QColor::fromRgbF(red, green, blue, alpha).name(QColor::HexArgb);
}
