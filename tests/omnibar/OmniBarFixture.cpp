// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "OmniBarFixture.h"

#include "AgentBridge.h"
#include "AnimationClock.h"
#include "Application.h"
#include "NativeObjects.h"
#include "TestSetup.h"
#include "Timeouts.h"
#include "WaitUntil.h"

#include <QDir>
#include <QJSValue>
#include <QLibrary>
#include <QMetaProperty>
#include <QQmlAbstractUrlInterceptor>
#include <QQmlComponent>
#include <QQmlContext>
#include <QSet>
#include <QSettings>
#include <QStyleHints>
#include <QTest>
#include <QWebSocket>

using namespace std::chrono_literals;

namespace
{

//! How far settle() puts the clock forward before each frame. Longer than a frame takes and shorter than any
//! transition, so that a transition is still seen to move.
constexpr auto s_step = 100ms;
//! So many frames without a change mean that everything is at rest.
constexpr int s_stillFrames = 3;
constexpr int s_maxFrames = 500;
//! A tooltip or a colour may still be on its way when nothing else moves any more.
constexpr int s_attempts = 4;
//! The window manager answers a change of the window's size in its own time.
constexpr auto s_windowManagerTime = 120ms;
constexpr auto s_resizeTime = 20ms;
//! Longer than the animation with which the window comes in.
constexpr auto s_entrance = 300ms;

const QString s_uiDirectory = QStringLiteral("qrc:/org/kde/loomra/contents/ui/");

const QStringList s_names = {QStringLiteral("i18n"),
                             QStringLiteral("toviWiAdvancedUiDefault"),
                             QStringLiteral("configManager"),
                             QStringLiteral("loomraSDK"),
                             QStringLiteral("fileService"),
                             QStringLiteral("agentBridge"),
                             QStringLiteral("tokenUsageService"),
                             QStringLiteral("voiceBridge")};

//! Leaves out the effect that draws the panels' shadows: without a graphics card it takes more time than everything
//! else in the window. PanelShadow.qml itself, which uses the effect, is loaded as always.
class ShadowRemover : public QQmlAbstractUrlInterceptor
{
public:
    QUrl intercept(const QUrl &path, DataType type) override
    {
        if (type == QmlFile && path.path().endsWith(QLatin1String("/QtGraphicalEffects/DropShadow.qml"))) {
            return QUrl::fromLocalFile(qEnvironmentVariable("TOVICTL_SOURCE_DIR")
                                       + QStringLiteral("/tests/omnibar/NoShadow.qml"));
        }
        return path;
    }
};

//! Once in a process, as the program does it before it loads the window.
void describeOnce()
{
    static const bool s_done = [] {
        AnimationClock::install();
        Application::prepareEnvironment();
        Application::describe();
        // See Application: loaded on the QML loader's thread, this library warns.
        QLibrary(QStringLiteral("KF5XmlGui"), 5).load();
        // The process outlives the windows of its tests.
        QGuiApplication::setQuitOnLastWindowClosed(false);
        // A blinking cursor draws frames, and makes two pictures of the same window differ.
        QGuiApplication::styleHints()->setCursorFlashTime(0);
        return true;
    }();
    Q_UNUSED(s_done)
}

} // namespace

OmniBarFixture::OmniBarFixture()
{
    describeOnce();
    TestSetup::clearSettings();
    m_natives = std::make_unique<QObject>();
    m_engine = std::make_unique<QQmlEngine>();
    m_engine->addImportPath(QStringLiteral("qrc:/"));
    static ShadowRemover s_shadowRemover;
    m_engine->setUrlInterceptor(&s_shadowRemover);
}

void OmniBarFixture::failTest(const QString &what, int line)
{
    QTest::qFail(qUtf8Printable(what), __FILE__, line);
}

OmniBarFixture::~OmniBarFixture()
{
    m_root.reset();
    m_engine.reset();
    m_natives.reset();
    verifyNoWarnings();
}

void OmniBarFixture::drawShadows()
{
    m_engine->setUrlInterceptor(nullptr);
}

void OmniBarFixture::verifyNoWarnings()
{
    const QStringList warnings = takeWarnings();
    if (!warnings.isEmpty()) {
        failTest(QStringLiteral("unexpected warning: ") + warnings.join(QStringLiteral(" | ")), __LINE__);
    }
}

QStringList OmniBarFixture::contextNames()
{
    describeOnce();
    QObject natives;
    QQmlEngine engine;
    NativeObjects::create(&natives, &engine);
    QStringList names;
    std::copy_if(s_names.cbegin(), s_names.cend(), std::back_inserter(names),
                 [&](const QString &name) { return engine.rootContext()->contextProperty(name).isValid(); });
    return names;
}

void OmniBarFixture::requireNoWindow() const
{
    if (m_window) {
        failTest(QStringLiteral("the window is open already: it must be a new one, see SharedWindow::renew()"),
                 __LINE__);
    }
}

void OmniBarFixture::omit(const QString &name)
{
    requireNoWindow();
    m_omitsAll = m_omitsAll || name.isEmpty();
    m_omitted.append(name);
}

void OmniBarFixture::provide(const QString &name, const QVariant &value)
{
    requireNoWindow();
    m_provided.append({name, value});
}

QObject *OmniBarFixture::fake(const QString &qml)
{
    QQmlComponent component(m_engine.get());
    // Beside the fakes that the tests of the controllers use.
    component.setData("import QtQuick 2.15\nimport QtQuick.Controls 2.15\n" + qml.toUtf8(),
                      QUrl::fromLocalFile(qEnvironmentVariable("TOVICTL_SOURCE_DIR")
                                          + QStringLiteral("/tests/omnibar/controllers/inline.qml")));
    QObject *object = component.create();
    if (!object) {
        failTest(component.errorString(), __LINE__);
        return nullptr;
    }
    object->setParent(m_natives.get());
    if (!m_window) {
        m_fakes.append(object);
    }
    return object;
}

void OmniBarFixture::store(const QString &key, const QVariant &value)
{
    requireNoWindow();
    QSettings settings;
    settings.setValue(QStringLiteral("appearance/") + key, value);
    settings.sync();
}

void OmniBarFixture::expectWarning(const QString &start)
{
    m_expected.append(start);
}

void OmniBarFixture::prepareContext()
{
    // A name that is left out must not exist at all, so the program fills the context of another engine, and the rest
    // is copied from there.
    QQmlEngine full;
    NativeObjects::create(m_natives.get(), &full);
    QQmlContext *context = m_engine->rootContext();
    for (const QString &name : s_names) {
        const QVariant value = full.rootContext()->contextProperty(name);
        if (value.isValid() && !m_omitsAll && !m_omitted.contains(name)) {
            context->setContextProperty(name, value);
        }
    }
    for (const auto &[name, value] : qAsConst(m_provided)) {
        context->setContextProperty(name, value);
    }
    m_agent = qobject_cast<AgentBridge *>(context->contextProperty(QStringLiteral("agentBridge")).value<QObject *>());
}

QObject *OmniBarFixture::load(const QString &file)
{
    prepareContext();
    QQmlComponent component(m_engine.get(), QUrl(s_uiDirectory + file));
    m_root.reset(component.create());
    if (!m_root) {
        failTest(component.errorString(), __LINE__);
    }
    return m_root.get();
}

bool OmniBarFixture::open(const QString &file)
{
    if (m_window) {
        return m_isOpen; // of several tests, see SharedWindow
    }
    m_window = qobject_cast<QQuickWindow *>(load(file));
    const auto isReady = [this] {
        const QVariant isShown = property("firstFrameShown");
        return (!isShown.isValid() || isShown.toBool())
            && (!m_agent || bridge.connectionCount() == 0 || m_agent->isServiceAvailable());
    };
    if (!m_window || !QTest::qWaitForWindowActive(m_window, Timeouts::Default)) {
        return false;
    }
    AnimationClock::skip(s_entrance);
    if ((m_agent && bridge.isListening() && !bridge.waitForConnection())
        || !QTest::qWaitFor(isReady, Timeouts::Default)) {
        return false;
    }
    if (m_isKept) {
        // What is built later than the first frame belongs to the state too.
        const auto isBuilt = [this] { return item(QStringLiteral("messageList")) != nullptr; };
        if (!QTest::qWaitFor(isBuilt, Timeouts::Default) || !settle()) {
            return false;
        }
        m_initialState = state();
    }
    m_isOpen = true;
    return true;
}

bool OmniBarFixture::flushConnection()
{
    // The pong is behind everything that the client sent before, and the client answers the ping after everything that
    // was sent to it.
    QWebSocket *socket = bridge.connection(0);
    if (!socket) {
        return false;
    }
    bool isAnswered = false;
    const auto connection = QObject::connect(socket, &QWebSocket::pong, socket, [&isAnswered] { isAnswered = true; });
    socket->ping();
    waitUntil([&isAnswered] { return isAnswered; });
    QObject::disconnect(connection);
    return isAnswered;
}

QVariantMap OmniBarFixture::state() const
{
    QVariantMap state;
    const auto addProperties = [&state](const QString &owner, const QObject *object, int first) {
        const QMetaObject *type = object->metaObject();
        for (int i = first; i < type->propertyCount(); ++i) {
            const QVariant value = type->property(i).read(object);
            state.insert(owner + QLatin1Char('.') + QLatin1String(type->property(i).name()),
                         value.userType() == qMetaTypeId<QJSValue>() ? value.value<QJSValue>().toVariant() : value);
        }
    };
    addProperties(QStringLiteral("window"), m_window, m_window->metaObject()->superClass()->propertyCount());
    addProperties(QStringLiteral("store"), property("appearanceStore").value<QObject *>(), 0);
    if (m_agent) {
        addProperties(QStringLiteral("agent"), m_agent, 0);
    }
    for (int i = 0; i < m_fakes.size(); ++i) {
        addProperties(QString::number(i), m_fakes.at(i), 0);
    }
    state.insert(QStringLiteral("title"), m_window->title());
    state.insert(QStringLiteral("geometry"), m_window->geometry());
    state.insert(QStringLiteral("rows"), property("chatModel.count"));
    state.insert(QStringLiteral("suggestions"),
                 evaluate("(function() { let all = []; for (let i = 0; i < responseSuggestionsModel.count; ++i)"
                          " all.push(JSON.stringify(responseSuggestionsModel.get(i))); return all.join(); })()"));
    state.insert(QStringLiteral("prompt"), property("inputField.text"));
    const QQuickItem *focused = m_window->activeFocusItem();
    state.insert(QStringLiteral("focus"), focused ? focused->objectName() : QString());

    QVariantList seen;
    // Not loaders, which have a size as soon as they have loaded something, even if that is hidden.
    const QList<QQuickItem *> items = itemsWhere(
        m_window->contentItem(), [](QQuickItem *item) { return isSeen(item) && !item->inherits("QQuickLoader"); });
    for (QQuickItem *item : items) {
        seen << item->objectName() << place(item) << item->opacity() << item->isEnabled();
    }
    state.insert(QStringLiteral("seen"), seen);
    return state;
}

bool OmniBarFixture::bringBack()
{
    const bool isOnScreen = m_isOpen && !m_isSpoiled && m_window->isVisible()
        && m_window->windowState() == Qt::WindowNoState && !property("compactMode").toBool();
    if (!isOnScreen || (m_agent && (!bridge.isListening() || bridge.connectionCount() != 1 || !bridge.connection(0)))) {
        return false;
    }
    if (m_agent) {
        if (m_agent->isThinking()) {
            m_agent->cancelRequest();
        }
        if (!flushConnection()) {
            return false;
        }
        while (!bridge.isAllTaken()) {
            bridge.takeRequest();
        }
    }

    QTest::mouseMove(m_window, {1, 2});
    QTest::mouseMove(m_window, {1, 1});
    invoke("clearConversation");
    invoke("initResponseSuggestions");
    property("inputField").value<QObject *>()->setProperty("text", QString());
    const auto restore = [this](const QString &owner, QObject *object, int first) {
        const QMetaObject *type = object->metaObject();
        for (int i = first; i < type->propertyCount(); ++i) {
            const QMetaProperty property = type->property(i);
            const QVariant initial = m_initialState.value(owner + QLatin1Char('.') + QLatin1String(property.name()));
            // A binding that the test overwrote doesn't come back: the comparison notices it, as the agent is restored
            // before the window is.
            if (property.isWritable() && initial.isValid() && property.read(object) != initial) {
                property.write(object, initial);
            }
        }
    };
    if (m_agent) {
        restore(QStringLiteral("agent"), m_agent, 0);
    }
    const auto restoreFakes = [&] {
        for (int i = 0; i < m_fakes.size(); ++i) {
            restore(QString::number(i), m_fakes.at(i), 0);
        }
    };
    restoreFakes();
    restore(QStringLiteral("store"), property("appearanceStore").value<QObject *>(), 0);
    restore(QStringLiteral("window"), m_window, m_window->metaObject()->superClass()->propertyCount());
    item(QStringLiteral("inputField"))->forceActiveFocus();
    m_expected.clear();
    log.clear();
    TestSetup::clearSettings();
    for (int attempt = 0; attempt < s_attempts; ++attempt) {
        const bool isSettled = settle();
        restoreFakes(); // they recorded what the window called meanwhile
        if (isSettled && state() == m_initialState) {
            return takeWarnings().isEmpty();
        }
    }
    return false;
}

bool OmniBarFixture::drawFrame()
{
    bool swapped = false;
    const auto connection =
        QObject::connect(m_window, &QQuickWindow::frameSwapped, m_window, [&swapped] { swapped = true; });
    m_window->update();
    waitUntil([&swapped] { return swapped; });
    QObject::disconnect(connection);
    return swapped;
}

QVariantList OmniBarFixture::movingParts() const
{
    static const QSet<QString> s_names = {QStringLiteral("rootContainer"),    QStringLiteral("compactBubble"),
                                          QStringLiteral("barCard"),          QStringLiteral("idleCards"),
                                          QStringLiteral("chatPanel"),        QStringLiteral("settingsPanel"),
                                          QStringLiteral("thinkingIndicator")};
    QVariantList values = {m_window->geometry(), m_window->opacity()};
    const QList<QQuickItem *> parts =
        itemsWhere(m_window->contentItem(), [](QQuickItem *item) { return s_names.contains(item->objectName()); });
    for (QQuickItem *part : parts) {
        // The place in the window, because loaders are moved with what they loaded.
        values << part->opacity() << part->scale() << place(part);
    }
    return values;
}

bool OmniBarFixture::isResizing() const
{
    const bool isCompact = property("compactMode").toBool();
    const QVariant width = property(isCompact ? "bubbleSize" : "screenWidth");
    return width.isValid() && m_window->width() != width.toInt();
}

bool OmniBarFixture::settle()
{
    // Frames rather than time: layouts are made when a frame is drawn. A window without animation draws none, so one is
    // asked for.
    const QRect geometry = m_window->geometry();
    int still = 0;
    QVariantList last = movingParts();
    for (int frame = 0; frame < s_maxFrames && still < s_stillFrames; ++frame) {
        if (isResizing()) {
            // Step by step, so that the window manager's answers can keep up.
            QTest::qWait(static_cast<int>(s_resizeTime.count()));
        } else {
            AnimationClock::skip(s_step);
        }
        if (!drawFrame()) {
            return false;
        }
        QVariantList now = movingParts();
        if (still + 1 == s_stillFrames && now == last && m_window->geometry() != geometry) {
            QTest::qWait(static_cast<int>(s_windowManagerTime.count()));
            now = movingParts();
        }
        still = now == last ? still + 1 : 0;
        last = now;
    }
    return still >= s_stillFrames;
}

void OmniBarFixture::screenshot(const QString &name)
{
    const QString directory = qEnvironmentVariable("TOVICTL_SCREENSHOTS");
    if (directory.isEmpty()) {
        return;
    }
    if (!QDir().mkpath(directory)
        || !m_window->grabWindow().save(directory + QLatin1Char('/') + name + QStringLiteral(".png"))) {
        failTest(QStringLiteral("the picture can't be written to ") + directory, __LINE__);
    }
}

QStringList OmniBarFixture::takeWarnings()
{
    QStringList unexpected;
    const QStringList warnings = log.takeWarnings();
    for (const QString &warning : warnings) {
        const bool isExpected = std::any_of(m_expected.cbegin(), m_expected.cend(),
                                            [&](const QString &start) { return warning.startsWith(start); });
        if (!isExpected) {
            unexpected.append(warning);
        }
    }
    return unexpected;
}
