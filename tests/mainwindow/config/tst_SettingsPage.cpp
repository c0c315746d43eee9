// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConfigWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>

namespace
{

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

//! The page around the tabs: header, messages, saving and reloading.
class tst_SettingsPage : public QObject
{
    Q_OBJECT

    //! A configuration as a user may have it. Defined at the end, because moc stops at such a text.
    static const QByteArray s_realFile;

private Q_SLOTS:
    void pictures_data();
    void pictures();
};

void tst_SettingsPage::pictures_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void tst_SettingsPage::pictures()
{
    QFETCH(bool, isDark);
    if (isDark) {
        QPalette dark(QColor(0x2a, 0x2e, 0x32));
        QGuiApplication::setPalette(dark);
    }
    ConfigWindow window;
    QVERIFY(window.write(s_realFile));
    QVERIFY(window.open(0, {1024, 600}));
    for (int tab = 0; tab < 6; ++tab) {
        QVERIFY(window.showTab(tab));
        window.screenshot(text("tab-%1-%2").arg(tab).arg(isDark ? text("dark") : text("light")));
    }
    QGuiApplication::setPalette({});
}

const QByteArray tst_SettingsPage::s_realFile = R"({
    "$schema": "https://loomra.example/config.schema.json",
    "theme": "dark",
    "agent": {
        "build": {"model": "anthropic/claude-3-opus", "temperature": 0.3, "mode": "primary", "prompt": "You build.",
                  "options": {"reasoning": true, "budget": 2000}},
        "review": {"description": "Reads changes before they are merged", "mode": "subagent", "steps": 20},
        "off": {"disable": true}
    },
    "tools": {"bash": true, "read": true, "my_tool": true},
    "permission": {"edit": "ask", "bash": {"git *": "allow", "rm *": "deny"}, "webfetch": "deny"},
    "mcp": {"files": {"type": "local", "command": ["npx", "-y", "files-server"], "enabled": true},
            "search": {"type": "remote", "url": "https://search.example/mcp", "headers": {"X": "1"}, "enabled": false}},
    "provider": {"local": {"api": "http://localhost:8080/v1", "name": "Local", "npm": "@x/y", "whitelist": ["a", "b"],
                           "models": {"a": {}}}}
})";

REGISTER_TEST(tst_SettingsPage, QGuiApplication)

#include "tst_SettingsPage.moc"
