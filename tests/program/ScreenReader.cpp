// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScreenReader.h"

#include "Program.h"

#include "Timeouts.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QTest>

#include <algorithm>
#include <functional>
#include <iterator>

namespace
{

const QString s_registry = QStringLiteral("org.a11y.atspi.Registry");
const QString s_service = QStringLiteral("org.a11y.Bus");
const QString s_root = QStringLiteral("/org/a11y/atspi/accessible/root");
const QString s_accessible = QStringLiteral("org.a11y.atspi.Accessible");
const QString s_action = QStringLiteral("org.a11y.atspi.Action");
const QString s_component = QStringLiteral("org.a11y.atspi.Component");
const QString s_text = QStringLiteral("org.a11y.atspi.Text");
constexpr uint s_focused = 12; // the bit of a state

//! An event that a screen reader asks for, and its name on the bus.
struct Listener
{
    QString bus;
    QString event;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Listener &listener)
{
    argument.beginStructure();
    argument << listener.bus << listener.event;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Listener &listener)
{
    argument.beginStructure();
    argument >> listener.bus >> listener.event;
    argument.endStructure();
    return argument;
}

//! An object of a program.
struct Reference
{
    QString bus;
    QDBusObjectPath path;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Reference &reference)
{
    argument.beginStructure();
    argument << reference.bus << reference.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Reference &reference)
{
    argument.beginStructure();
    argument >> reference.bus >> reference.path;
    argument.endStructure();
    return argument;
}

//! Calls a program about one of its objects. @return the first value of the reply
QVariant ask(const QString &bus, const QString &path, const QString &interface, const QString &method,
             const QVariantList &arguments = {})
{
    QDBusMessage call = QDBusMessage::createMethodCall(bus, path, interface, method);
    call.setArguments(arguments);
    // Events are processed meanwhile: a program that calls the reader would otherwise wait for it, as it waits for the
    // program.
    return QDBusConnection::sessionBus().call(call, QDBus::BlockWithGui, Timeouts::Program).arguments().value(0);
}

QString roleOf(const QString &bus, const QString &path)
{
    return ask(bus, path, s_accessible, QStringLiteral("GetRoleName")).toString();
}

QVariant propertyOf(const QString &bus, const QString &path, const QString &interface, const char *name)
{
    return ask(bus, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
               {interface, QLatin1String(name)})
        .value<QDBusVariant>()
        .variant();
}

QString nameOf(const QString &bus, const QString &path)
{
    return propertyOf(bus, path, s_accessible, "Name").toString();
}

bool isFocused(const QString &bus, const QString &path)
{
    const QVariant state = ask(bus, path, s_accessible, QStringLiteral("GetState"));
    return state.canConvert<QDBusArgument>()
        && qdbus_cast<QList<uint>>(state.value<QDBusArgument>()).value(0) & (1U << s_focused);
}

//! The paths of the objects for which the condition holds in the tree below an object. Their own children are left out.
QStringList find(const QString &bus, const QString &path, const std::function<bool(const QString &path)> &condition)
{
    if (condition(path)) {
        return {path};
    }
    QStringList found;
    const QVariant children = ask(bus, path, s_accessible, QStringLiteral("GetChildren"));
    if (!children.canConvert<QDBusArgument>()) {
        return {}; // no program yet, or the object is gone
    }
    const auto references = qdbus_cast<QList<Reference>>(children.value<QDBusArgument>());
    for (const Reference &child : references) {
        found += find(bus, child.path.path(), condition);
    }
    return found;
}

//! The path of the first object with this role and name; empty if there is none.
QString find(const QString &bus, const QString &role, const QString &name)
{
    return find(bus, s_root,
                [&](const QString &path) { return roleOf(bus, path) == role && nameOf(bus, path) == name; })
        .value(0);
}

bool xprop(const QStringList &arguments)
{
    const auto result = Program::run(QStringList(QStringLiteral("-root")) + arguments,
                                     QProcessEnvironment::systemEnvironment(), QStringLiteral("xprop"));
    return result.finished && result.exitCode == 0;
}

} // namespace

Q_DECLARE_METATYPE(Listener)
Q_DECLARE_METATYPE(QList<Listener>)
Q_DECLARE_METATYPE(Reference)
Q_DECLARE_METATYPE(QList<Reference>)

ScreenReader::ScreenReader(Events events, Address address)
    : m_events(events)
    , m_address(address)
{
    qDBusRegisterMetaType<Listener>();
    qDBusRegisterMetaType<QList<Listener>>();
    qDBusRegisterMetaType<Reference>();
    qDBusRegisterMetaType<QList<Reference>>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(bus.registerVirtualObject(QStringLiteral("/org/a11y"), this, QDBusConnection::SubPath));
    QVERIFY(bus.connect(QString(), QString(), QStringLiteral("org.a11y.atspi.Event.Object"),
                        QStringLiteral("StateChanged"), this, SLOT(onStateChanged(QDBusMessage))));
    QVERIFY(bus.registerService(s_registry));
    if (address == Address::Service) {
        QVERIFY(bus.registerService(s_service));
        return;
    }
    QVERIFY(xprop({QStringLiteral("-f"), QStringLiteral("AT_SPI_BUS"), QStringLiteral("8s"), QStringLiteral("-set"),
                   QStringLiteral("AT_SPI_BUS"), qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS")}));
}

ScreenReader::~ScreenReader()
{
    xprop({QStringLiteral("-remove"), QStringLiteral("AT_SPI_BUS")});
    QDBusConnection::sessionBus().unregisterService(s_registry);
    QDBusConnection::sessionBus().unregisterService(s_service);
}

QString ScreenReader::introspect(const QString &) const
{
    return {};
}

bool ScreenReader::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    QDBusMessage reply = message.createReply();
    if (message.member() == QLatin1String("Embed")) {
        m_program = message.service();
        reply.setArguments(message.arguments());
    } else if (message.member() == QLatin1String("GetRegisteredEvents")) {
        QList<Listener> listeners;
        if (m_events == Events::Notifications) {
            listeners.append({connection.baseService(), QStringLiteral("Object:StateChanged:Showing")});
        }
        reply << QVariant::fromValue(listeners);
    } else if (message.member() == QLatin1String("GetAddress")) {
        reply << qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    } else if (message.arguments().value(0) == QLatin1String("org.a11y.Status")) {
        reply << QVariant::fromValue(QDBusVariant(true));
    } else {
        return false;
    }
    return connection.send(reply);
}

QStringList ScreenReader::shown(const QString &role) const
{
    const QStringList paths =
        find(m_program, s_root, [&](const QString &path) { return roleOf(m_program, path) == role; });
    QStringList names;
    std::transform(paths.cbegin(), paths.cend(), std::back_inserter(names),
                   [this](const QString &path) { return nameOf(m_program, path); });
    return names;
}

QStringList ScreenReader::rows(const QString &list) const
{
    const QString path = find(m_program, QStringLiteral("list"), list);
    const int count = path.isEmpty() ? 0 : propertyOf(m_program, path, s_accessible, "ChildCount").toInt();
    QStringList names;
    for (int i = 0; i < count; ++i) {
        const QVariant reply = ask(m_program, path, s_accessible, QStringLiteral("GetChildAtIndex"), {i});
        if (!reply.canConvert<QDBusArgument>()) {
            return {};
        }
        const QString row = qdbus_cast<Reference>(reply.value<QDBusArgument>()).path.path();
        if (ask(m_program, row, s_accessible, QStringLiteral("GetIndexInParent")).toInt() != i) {
            return {};
        }
        if (roleOf(m_program, row) == QLatin1String("list item")) {
            names.append(nameOf(m_program, row));
        }
    }
    return names;
}

bool ScreenReader::press(const QString &role, const QString &name) const
{
    const QString path = find(m_program, role, name);
    return !path.isEmpty() && ask(m_program, path, s_action, QStringLiteral("DoAction"), {0}).toBool();
}

bool ScreenReader::focus(const QString &role, const QString &name) const
{
    const QString path = find(m_program, role, name);
    return !path.isEmpty() && ask(m_program, path, s_component, QStringLiteral("GrabFocus")).toBool();
}

QString ScreenReader::textOf(const QString &field) const
{
    const QString path = find(m_program, QStringLiteral("text"), field);
    return path.isEmpty() ? QString() : ask(m_program, path, s_text, QStringLiteral("GetText"), {0, -1}).toString();
}

QString ScreenReader::focused() const
{
    // Windows and pages that contain this object have the state too.
    QString last;
    find(m_program, s_root, [this, &last](const QString &path) {
        if (isFocused(m_program, path)) {
            last = path;
        }
        return false;
    });
    return last.isEmpty() ? QString() : roleOf(m_program, last) + QStringLiteral(": ") + nameOf(m_program, last);
}

QByteArray ScreenReader::addressOnDisplay()
{
    const QByteArray text = Program::run({QStringLiteral("-root"), QStringLiteral("AT_SPI_BUS")},
                                         QProcessEnvironment::systemEnvironment(), QStringLiteral("xprop"))
                                .output;
    return text.split('"').value(1);
}

void ScreenReader::onStateChanged(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.value(0).toString() != QLatin1String("showing") || arguments.value(1).toInt() != 1) {
        return;
    }
    // In their order: further signals arrive while the program is asked about this one.
    m_shown.append(signal);
    if (m_shown.size() > 1) {
        return;
    }
    while (!m_shown.isEmpty()) {
        const QDBusMessage first = m_shown.first();
        if (roleOf(first.service(), first.path()) == QLatin1String("notification")) {
            m_spoken.append(nameOf(first.service(), first.path()));
        }
        m_shown.removeFirst();
    }
}
