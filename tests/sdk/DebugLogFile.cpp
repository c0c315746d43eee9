// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DebugLogFile.h"

#include "Files.h"

#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>

DebugLogFile::DebugLogFile(const QByteArray &value)
    : m_homeVariable("HOME", QFile::encodeName(m_home.path()))
    , m_debugVariable("LOOMRA_DEBUG", value)
{
}

QString DebugLogFile::path() const
{
    return m_home.filePath(QStringLiteral(".local/share/loomra-kde/loomra-debug.log"));
}

QList<QByteArray> DebugLogFile::lines() const
{
    QByteArray all = contentOf(path());
    if (all.isEmpty()) {
        return {};
    }
    if (!all.endsWith('\n')) {
        QTest::qFail("the last line of the log has no end", __FILE__, __LINE__);
    }
    all.chop(1);
    return all.split('\n');
}

QStringList DebugLogFile::takeEvents()
{
    // A JSON parser would lose the order of the keys.
    static const QRegularExpression form(QLatin1String(
        R"re(^\{"location":"LoomraSDK:(\w+)","message":"([^"\\]+)","data":(\{.*\}),"timestamp":\d{13}\}$)re"));
    QStringList events;
    const QList<QByteArray> all = lines();
    for (; m_taken < all.size(); ++m_taken) {
        const QByteArray &line = all.at(m_taken);
        const QRegularExpressionMatch match = form.match(QString::fromUtf8(line));
        if (!match.hasMatch() || !isStrictJson(line)) {
            QTest::qFail(QByteArray("not a line of the log: " + line).constData(), __FILE__, __LINE__);
        }
        events.append(match.captured(1) + QStringLiteral(": ") + match.captured(2) + QLatin1Char(' ')
                      + match.captured(3));
    }
    return events;
}

QStringList DebugLogFile::takeEventsOf(const QStringList &functions)
{
    QStringList events = takeEvents();
    const auto isOther = [&](const QString &event) {
        return !functions.contains(event.section(QLatin1Char(':'), 0, 0));
    };
    events.erase(std::remove_if(events.begin(), events.end(), isOther), events.end());
    return events;
}

bool isStrictJson(const QByteArray &line)
{
    const bool hasControls = std::any_of(line.begin(), line.end(), [](char c) { return c >= 0 && c < ' '; });
    return !hasControls && QJsonDocument::fromJson(line).isObject();
}
