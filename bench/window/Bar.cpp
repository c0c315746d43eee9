// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Bar.h"

#include "AgentBridge.h"
#include "ResourceTree.h"
#include "VoiceBridge.h"
#include "WindowTask.h"
#include "support/EventLoop.h"
#include "support/Figures.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStyleHints>

namespace
{

QQuickItem *childNamed(const QQuickItem *parent, const QString &name)
{
    const QList<QQuickItem *> children = parent->childItems();
    for (QQuickItem *child : children) {
        if (child->objectName() == name) {
            return child;
        }
        if (QQuickItem *found = childNamed(child, name)) {
            return found;
        }
    }
    return nullptr;
}

//! The effective opacity of an item, including its parents.
qreal shownOpacity(const QQuickItem *item)
{
    qreal opacity = 1;
    for (; item; item = item->parentItem()) {
        opacity *= item->isVisible() ? item->opacity() : 0;
    }
    return opacity;
}

//! Ends the benchmark if QML doesn't know an object of this type by the name.
template<typename Object>
Object *nativeObject(QQuickWindow *window, const char *name)
{
    auto *object =
        qobject_cast<Object *>(qmlContext(window)->contextProperty(QLatin1String(name)).template value<QObject *>());
    if (!object) {
        notMeasured(QByteArray("the window has no ") + name);
    }
    return object;
}

} // namespace

Bar::Bar(int &argc, char **argv)
    : m_application((ResourceTree::init(), Application::prepareEnvironment(), argc), argv)
    , m_window(WindowTask::openedWindow())
    , m_frames(std::make_unique<FrameWatch>(m_window))
{
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    const bool isReady = EventLoop::until(
        [this] { return m_window->isActive() && m_window->property("bridgeStatus").toString() == AgentStatus::Idle; });
    if (!isReady) {
        notMeasured("the window did not become active and connected");
    }
    m_frames->waitUntilStill();
}

Bar::~Bar() = default;

AgentBridge *Bar::agent() const
{
    return nativeObject<AgentBridge>(m_window, "agentBridge");
}

VoiceBridge *Bar::voice() const
{
    return nativeObject<VoiceBridge>(m_window, "voiceBridge");
}

QQuickItem *Bar::item(const char *name) const
{
    QQuickItem *item = childNamed(m_window->contentItem(), QLatin1String(name));
    if (!item) {
        notMeasured(QByteArray("the window has no ") + name);
    }
    return item;
}

void Bar::call(const char *function, const QVariant &first, const QVariant &second)
{
    const auto argument = [](const QVariant &value) {
        return value.isValid() ? Q_ARG(QVariant, value) : QGenericArgument();
    };
    if (!QMetaObject::invokeMethod(m_window, function, argument(first), argument(second))) {
        notMeasured(QByteArray("the window has no function ") + function);
    }
}

int Bar::rowCount() const
{
    return m_window->property("chatModel").value<QObject *>()->property("count").toInt();
}

QQuickItem *Bar::lastRow() const
{
    QQuickItem *list = childNamed(m_window->contentItem(), QStringLiteral("messageList"));
    QQuickItem *row = nullptr;
    if (!list
        || !QMetaObject::invokeMethod(list, "itemAtIndex", Q_RETURN_ARG(QQuickItem *, row), Q_ARG(int, rowCount() - 1))
        || !row || !list->boundingRect().intersects(row->mapRectToItem(list, row->boundingRect()))) {
        return nullptr;
    }
    return row;
}

bool Bar::isLastRowShown() const
{
    const QQuickItem *row = lastRow();
    const QQuickItem *bubble = row ? childNamed(row, QStringLiteral("messageBubble")) : nullptr;
    return bubble && shownOpacity(bubble) > 0;
}

qint64 Bar::waitForLastRow()
{
    return m_frames->waitForFrame([this] { return isLastRowShown(); });
}
