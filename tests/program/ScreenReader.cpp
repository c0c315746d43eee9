// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScreenReader.h"

#include "Program.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QTest>

namespace
{

const QString s_registry = QStringLiteral("org.a11y.atspi.Registry");
const QString s_accessible = QStringLiteral("org.a11y.atspi.Accessible");

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
    return QDBusConnection::sessionBus().call(call).arguments().value(0);
}

QString roleOf(const QString &bus, const QString &path)
{
    return ask(bus, path, s_accessible, QStringLiteral("GetRoleName")).toString();
}

QString nameOf(const QString &bus, const QString &path)
{
    const QVariant name = ask(bus, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                              {s_accessible, QStringLiteral("Name")});
    return name.value<QDBusVariant>().variant().toString();
}

//! Appends the names of the objects with this role in the tree below an object.
void collect(const QString &bus, const QString &path, const QString &role, QStringList &names)
{
    if (roleOf(bus, path) == role) {
        names.append(nameOf(bus, path));
        return;
    }
    const auto children = qdbus_cast<QList<Reference>>(
        ask(bus, path, s_accessible, QStringLiteral("GetChildren")).value<QDBusArgument>());
    for (const Reference &child : children) {
        collect(bus, child.path.path(), role, names);
    }
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

ScreenReader::ScreenReader(Events events)
    : m_events(events)
{
    qDBusRegisterMetaType<Listener>();
    qDBusRegisterMetaType<QList<Listener>>();
    qDBusRegisterMetaType<Reference>();
    qDBusRegisterMetaType<QList<Reference>>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(bus.registerVirtualObject(QStringLiteral("/org/a11y/atspi"), this, QDBusConnection::SubPath));
    QVERIFY(bus.connect(QString(), QString(), QStringLiteral("org.a11y.atspi.Event.Object"),
                        QStringLiteral("StateChanged"), this, SLOT(onStateChanged(QDBusMessage))));
    QVERIFY(bus.registerService(s_registry));
    // Programs find the accessibility bus by this property of the display or by the service org.a11y.Bus. The service
    // would not do: Qt in Debian 12 doesn't wait for the address that it requests from there.
    QVERIFY(xprop({QStringLiteral("-f"), QStringLiteral("AT_SPI_BUS"), QStringLiteral("8s"), QStringLiteral("-set"),
                   QStringLiteral("AT_SPI_BUS"), qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS")}));
}

ScreenReader::~ScreenReader()
{
    xprop({QStringLiteral("-remove"), QStringLiteral("AT_SPI_BUS")});
    QDBusConnection::sessionBus().unregisterService(s_registry);
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
    } else {
        return false;
    }
    return connection.send(reply);
}

QStringList ScreenReader::shown(const QString &role) const
{
    QStringList names;
    collect(m_program, QStringLiteral("/org/a11y/atspi/accessible/root"), role, names);
    return names;
}

void ScreenReader::onStateChanged(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.value(0).toString() != QLatin1String("showing") || arguments.value(1).toInt() != 1
        || roleOf(signal.service(), signal.path()) != QLatin1String("notification")) {
        return;
    }
    m_spoken.append(nameOf(signal.service(), signal.path()));
}
