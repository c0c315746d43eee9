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

//! Calls the program about the object that emitted a signal. @return the first value of the reply
QVariant ask(const QDBusMessage &signal, const QString &interface, const QString &method,
             const QVariantList &arguments = {})
{
    QDBusMessage call = QDBusMessage::createMethodCall(signal.service(), signal.path(), interface, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call).arguments().value(0);
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

ScreenReader::ScreenReader()
{
    qDBusRegisterMetaType<Listener>();
    qDBusRegisterMetaType<QList<Listener>>();
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
        reply.setArguments(message.arguments());
    } else if (message.member() == QLatin1String("GetRegisteredEvents")) {
        reply << QVariant::fromValue(
            QList<Listener> {{connection.baseService(), QStringLiteral("Object:StateChanged:Showing")}});
    } else {
        return false;
    }
    return connection.send(reply);
}

void ScreenReader::onStateChanged(const QDBusMessage &signal)
{
    const QVariantList arguments = signal.arguments();
    if (arguments.value(0).toString() != QLatin1String("showing") || arguments.value(1).toInt() != 1
        || ask(signal, s_accessible, QStringLiteral("GetRoleName")).toString() != QLatin1String("notification")) {
        return;
    }
    const QVariant name = ask(signal, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                              {s_accessible, QStringLiteral("Name")});
    m_spoken.append(name.value<QDBusVariant>().variant().toString());
}
