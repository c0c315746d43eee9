// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AccessibilityBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>

using namespace std::chrono_literals;

namespace
{

const QString s_service = QStringLiteral("org.a11y.Bus");
constexpr auto s_timeout = 1s;
constexpr char s_property[] = "AT_SPI_BUS";

struct Free
{
    void operator()(void *reply) const { std::free(reply); }
};

//! The property of the display that names the accessibility bus.
class Property
{
public:
    Property()
        : m_connection(xcb_connect(nullptr, &m_screenNumber), xcb_disconnect)
    {
        if (xcb_connection_has_error(m_connection.get())) {
            return;
        }
        auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get()));
        for (int i = 0; i < m_screenNumber && screens.rem > 1; ++i) {
            xcb_screen_next(&screens);
        }
        const auto request = xcb_intern_atom(m_connection.get(), false, std::strlen(s_property), s_property);
        const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(
            xcb_intern_atom_reply(m_connection.get(), request, nullptr));
        if (screens.rem > 0 && atom) {
            m_root = screens.data->root;
            m_atom = atom->atom;
        }
    }

    bool isMissing() const
    {
        if (!m_root) {
            return false;
        }
        const auto request = xcb_get_property(m_connection.get(), false, m_root, m_atom, XCB_ATOM_STRING, 0, 0);
        const std::unique_ptr<xcb_get_property_reply_t, Free> reply(
            xcb_get_property_reply(m_connection.get(), request, nullptr));
        return reply && reply->type == XCB_ATOM_NONE;
    }

    void set(const QByteArray &address) const
    {
        await(xcb_change_property_checked(m_connection.get(), XCB_PROP_MODE_REPLACE, m_root, m_atom, XCB_ATOM_STRING, 8,
                                          address.size(), address.constData()));
    }

    void remove() const
    {
        if (m_root) {
            await(xcb_delete_property_checked(m_connection.get(), m_root, m_atom));
        }
    }

private:
    void await(xcb_void_cookie_t request) const { std::free(xcb_request_check(m_connection.get(), request)); }

    int m_screenNumber = 0;
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
    xcb_window_t m_root = XCB_NONE;
    xcb_atom_t m_atom = XCB_NONE;
};

} // namespace

AccessibilityBus::AccessibilityBus()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    // Not started for this: most users have no screen reader.
    if (QGuiApplication::platformName() != QLatin1String("xcb") || !bus.isConnected()
        || !bus.interface()->isServiceRegistered(s_service)) {
        return;
    }
    m_address = bus.asyncCall(QDBusMessage::createMethodCall(s_service, QStringLiteral("/org/a11y/bus"), s_service,
                                                             QStringLiteral("GetAddress")),
                              std::chrono::milliseconds(s_timeout).count());
}

AccessibilityBus::~AccessibilityBus()
{
    if (m_isAnnounced) {
        Property().remove();
    }
}

void AccessibilityBus::announce()
{
    m_address.waitForFinished();
    if (!m_address.isValid() || m_address.value().isEmpty()) {
        return;
    }
    const Property property;
    if (property.isMissing()) {
        property.set(m_address.value().toUtf8());
        m_isAnnounced = true;
    }
}
