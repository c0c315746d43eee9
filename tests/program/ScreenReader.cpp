// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScreenReader.h"

#include "Program.h"

#include "Timeouts.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QRect>
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
constexpr uint s_screenCoordinates = 0;

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

//! An object of a program when the tree was read.
struct Object
{
    QString path;
    QString role;
    QString name;
    bool isFocused = false;
    QList<Object> children;
};

//! The calls that read an object.
struct Reading
{
    Object *object;
    QDBusPendingCall role;
    QDBusPendingCall name;
    QDBusPendingCall state;
    QDBusPendingCall children;
};

Reading startReading(const QString &bus, Object *object)
{
    const auto call = [bus, object](const QString &interface, const QString &method, const QVariantList &arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(bus, object->path, interface, method);
        message.setArguments(arguments);
        return QDBusConnection::sessionBus().asyncCall(message, Timeouts::Program);
    };
    return {object, call(s_accessible, QStringLiteral("GetRoleName"), {}),
            call(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                 {s_accessible, QStringLiteral("Name")}),
            call(s_accessible, QStringLiteral("GetState"), {}), call(s_accessible, QStringLiteral("GetChildren"), {})};
}

QVariant resultOf(const QDBusPendingCall &call)
{
    return call.reply().arguments().value(0);
}

//! Reads the tree below an object. All objects of a level are read at once: a program that is drawing answers a few
//! times a second only, and has hundreds of objects.
Object readTree(const QString &bus)
{
    Object root {s_root, {}, {}, false, {}};
    QList<Object *> level {&root};
    while (!level.isEmpty()) {
        QList<Reading> readings;
        for (Object *object : qAsConst(level)) {
            readings.append(startReading(bus, object));
        }
        // Events are processed meanwhile: see ask().
        const bool isAnswered = QTest::qWaitFor(
            [&readings] {
                return std::all_of(readings.cbegin(), readings.cend(), [](const Reading &each) {
                    return each.role.isFinished() && each.name.isFinished() && each.state.isFinished()
                        && each.children.isFinished();
                });
            },
            Timeouts::Program);
        if (!isAnswered) {
            return root;
        }
        level.clear();
        for (const Reading &each : qAsConst(readings)) {
            const QVariant state = resultOf(each.state);
            const QVariant children = resultOf(each.children);
            if (!state.canConvert<QDBusArgument>() || !children.canConvert<QDBusArgument>()) {
                continue; // no program yet, or the object is gone
            }
            each.object->role = resultOf(each.role).toString();
            each.object->name = resultOf(each.name).value<QDBusVariant>().variant().toString();
            each.object->isFocused = qdbus_cast<QList<uint>>(state.value<QDBusArgument>()).value(0) & (1U << s_focused);
            const auto references = qdbus_cast<QList<Reference>>(children.value<QDBusArgument>());
            for (const Reference &child : references) {
                each.object->children.append({child.path.path(), {}, {}, false, {}});
            }
            // Pointers into the list stay valid, because it grows no more.
            for (Object &child : each.object->children) {
                level.append(&child);
            }
        }
    }
    return root;
}

//! The objects for which the condition holds, in their order. Their own children are left out.
QList<Object> find(const Object &tree, const std::function<bool(const Object &object)> &condition)
{
    if (condition(tree)) {
        return {tree};
    }
    QList<Object> found;
    for (const Object &child : tree.children) {
        found += find(child, condition);
    }
    return found;
}

//! The path of the first object with this role and name; empty if there is none.
QString find(const QString &bus, const QString &role, const QString &name)
{
    return find(readTree(bus), [&](const Object &object) { return object.role == role && object.name == name; })
        .value(0)
        .path;
}

//! The rows of the list with this name, each fetched by its index.
QStringList rowPaths(const QString &bus, const QString &list)
{
    const QString path = find(bus, QStringLiteral("list"), list);
    const int count = path.isEmpty() ? 0 : propertyOf(bus, path, s_accessible, "ChildCount").toInt();
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        const QVariant reply = ask(bus, path, s_accessible, QStringLiteral("GetChildAtIndex"), {i});
        if (!reply.canConvert<QDBusArgument>()) {
            return {};
        }
        const QString row = qdbus_cast<Reference>(reply.value<QDBusArgument>()).path.path();
        if (ask(bus, row, s_accessible, QStringLiteral("GetIndexInParent")).toInt() != i) {
            return {};
        }
        if (roleOf(bus, row) == QLatin1String("list item")) {
            paths.append(row);
        }
    }
    return paths;
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
    const QList<Object> objects = find(readTree(m_program), [&](const Object &object) { return object.role == role; });
    QStringList names;
    std::transform(objects.cbegin(), objects.cend(), std::back_inserter(names),
                   [](const Object &object) { return object.name; });
    return names;
}

QStringList ScreenReader::rows(const QString &list) const
{
    const QStringList paths = rowPaths(m_program, list);
    QStringList names;
    for (const QString &path : paths) {
        names.append(nameOf(m_program, path));
    }
    return names;
}

QList<int> ScreenReader::rowTops(const QString &list) const
{
    const QStringList paths = rowPaths(m_program, list);
    QList<int> tops;
    for (const QString &path : paths) {
        const QVariant reply = ask(m_program, path, s_component, QStringLiteral("GetExtents"), {s_screenCoordinates});
        tops.append(reply.canConvert<QDBusArgument>() ? qdbus_cast<QRect>(reply.value<QDBusArgument>()).top() : -1);
    }
    return tops;
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
    find(readTree(m_program), [&last](const Object &object) {
        if (object.isFocused) {
            last = object.role + QStringLiteral(": ") + object.name;
        }
        return false;
    });
    return last;
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
