// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>
#include <QVariantMap>

#include <cstdio>
#include <iostream>
#include <string>

//! The desktop's notification service, played for a test that starts it as a child: each call that shows or closes a
//! notification becomes a line of JSON on standard output, and a line "NUMBER ACTION" on standard input is the user who
//! picks that action of that notification. It says "{}" when it can be called, and ends with its input.
class NotificationServer : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    static void tell(const QJsonObject &call)
    {
        const QByteArray line = QJsonDocument(call).toJson(QJsonDocument::Compact) + '\n';
        std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
        std::fflush(stdout);
    }

    void readLine()
    {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
            return;
        }
        const QString text = QString::fromStdString(line);
        Q_EMIT ActionInvoked(text.section(QLatin1Char(' '), 0, 0).toUInt(), text.section(QLatin1Char(' '), 1));
    }

public Q_SLOTS:
    // The D-Bus interface defines the names.
    QStringList GetCapabilities() const
    {
        return {QStringLiteral("actions"), QStringLiteral("body"), QStringLiteral("body-markup")};
    }
    QString GetServerInformation(QString &vendor, QString &version, QString &protocol) const
    {
        vendor = QStringLiteral("test");
        version = QStringLiteral("1");
        protocol = QStringLiteral("1.2");
        return vendor;
    }
    uint Notify(const QString &application, uint replaces, const QString &icon, const QString &title,
                const QString &body, const QStringList &actions, const QVariantMap &hints, int timeout)
    {
        const uint number = replaces ? replaces : ++m_last;
        tell({{QStringLiteral("call"), QStringLiteral("Notify")},
              {QStringLiteral("number"), static_cast<int>(number)},
              {QStringLiteral("application"), application},
              {QStringLiteral("icon"), icon},
              {QStringLiteral("title"), title},
              {QStringLiteral("body"), body},
              {QStringLiteral("actions"), QJsonArray::fromStringList(actions)},
              {QStringLiteral("hints"), QJsonArray::fromStringList(hints.keys())},
              {QStringLiteral("timeout"), timeout},
              {QStringLiteral("event"), hints.value(QStringLiteral("x-kde-eventId")).toString()},
              {QStringLiteral("component"), hints.value(QStringLiteral("x-kde-appname")).toString()}});
        return number;
    }
    void CloseNotification(uint number)
    {
        tell({{QStringLiteral("call"), QStringLiteral("CloseNotification")},
              {QStringLiteral("number"), static_cast<int>(number)}});
        Q_EMIT NotificationClosed(number, 3); // by a call
    }

Q_SIGNALS:
    void ActionInvoked(uint number, const QString &action);
    void NotificationClosed(uint number, uint reason);

private:
    uint m_last = 0;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    NotificationServer server;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &server,
                            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals)
        || !bus.registerService(QStringLiteral("org.freedesktop.Notifications"))) {
        qFatal("no bus, or another service on it: %s", qPrintable(bus.lastError().message()));
    }
    // Unbuffered: the notifier isn't activated for data that is already in a buffer.
    std::setvbuf(stdin, nullptr, _IONBF, 0);
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &server, &NotificationServer::readLine);
    NotificationServer::tell({});
    return QCoreApplication::exec();
}

#include "NotificationServer.moc"
