// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "FuzzedSdk.h"

#include "Feeding.h"
#include "Require.h"
#include "SdkOperations.h"

#include <QJsonDocument>

#include <algorithm>
#include <cstring>
#include <vector>

namespace
{

constexpr int s_maxIds = 9000;

//! Placeholder in a frame for the id under which the arguments of its request are kept.
constexpr QLatin1Char s_keptPlaceholder('@');
constexpr int s_keptOffset = 10000;

//! More ids than one input can use: for its operation, its frame, and the requests that their replies lead to.
constexpr int s_idsAhead = 8;

//! All but listModels, which runs a program and waits for it.
const std::vector<SdkOperation> &operations()
{
    static const std::vector<SdkOperation> s_operations = [] {
        std::vector<SdkOperation> chosen = sdkOperations();
        chosen.erase(std::remove_if(chosen.begin(), chosen.end(),
                                    [](const SdkOperation &row) { return std::strcmp(row.method, "listModels") == 0; }),
                     chosen.end());
        return chosen;
    }();
    return s_operations;
}

} // namespace

FuzzedSdk::FuzzedSdk()
    : m_sdk(&m_config)
{
    checkSignals();
    m_sdk.setConnectOnly(true); // so that a lost connection starts no bridge
    m_sdk.reconnectBridge();
    Feeding::pumpUntil([this] { return m_sdk.isConnected(); });
    makeCapable();
    checkThatItAnswers();
}

void FuzzedSdk::checkSignals()
{
    QObject::connect(&m_sdk, &LoomraSDK::error, &m_sdk,
                     [](const QString &text) { require(!text.isEmpty(), "an error has a text"); });
    QObject::connect(&m_sdk, &LoomraSDK::workspaceIntelPanelUpdated, &m_sdk, [](const QJsonObject &panel) {
        require(panel.value(QLatin1String("dwellSummary")).isObject(), "the panel's summary is an object");
    });
    QObject::connect(&m_sdk, &LoomraSDK::workspaceSuggestionShowInAppDialog, &m_sdk, [](const QString &json) {
        const QJsonObject notification = QJsonDocument::fromJson(json.toUtf8()).object();
        require(!notification.value(QLatin1String("title")).toString().isEmpty(), "a dialog has a title");
    });
    QObject::connect(&m_sdk, &LoomraSDK::automationDeleted, &m_sdk, [this](const QString &id) { m_deleted = id; });
}

void FuzzedSdk::take(quint8 choice, const QString &frame)
{
    operations()[choice % operations().size()].call(m_sdk); // uses the next id, unless it is refused
    QString withIds = Feeding::withId(frame, m_nextId);
    withIds.replace(s_keptPlaceholder, QString::number(m_nextId + s_keptOffset));
    deliver(withIds);

    require(m_sdk.isConnected() && m_sdk.isReady(), "no frame closes the connection");
    if (!m_sdk.isWorkspaceIntelAvailable() || !m_sdk.isAiRuntimeAvailable()) {
        makeCapable();
    }
    checkThatItAnswers();
}

bool FuzzedSdk::isWornOut() const
{
    return m_nextId > s_maxIds;
}

void FuzzedSdk::deliver(const QString &frame)
{
    const bool called = QMetaObject::invokeMethod(&m_sdk, "onWebSocketTextMessageReceived", Q_ARG(QString, frame));
    require(called, "LoomraSDK has a slot for frames");
}

void FuzzedSdk::deliverForNextIds(const QString &frame, const std::function<bool()> &isDone)
{
    for (int ahead = 0; ahead < s_idsAhead && !isDone(); ++ahead) {
        deliver(Feeding::withId(frame, m_nextId++));
    }
}

void FuzzedSdk::makeCapable()
{
    const auto isCapable = [this] { return m_sdk.isWorkspaceIntelAvailable() && m_sdk.isAiRuntimeAvailable(); };
    checkThatItAnswers(); // answers what the input left open
    deliver(QStringLiteral(R"({"type":"ready"})"));
    deliverForNextIds(
        QStringLiteral(
            R"({"type":"response","id":#,"payload":{"workspaceIntelligence":{"enabled":true},"aiRuntime":{"enabled":true}}})"),
        isCapable);
    require(isCapable(), "the capabilities are requested when the bridge is ready");
}

void FuzzedSdk::checkThatItAnswers()
{
    const QString asked = QStringLiteral("fresh");
    const QString reply = QStringLiteral(R"({"type":"response","id":#,"payload":{}})");
    // Replies to older requests may open new ones with later ids: repeat until none was open.
    int expected = 0;
    do {
        expected = m_nextId + 1;
        m_deleted.clear();
        m_sdk.automationDelete(asked);
        deliverForNextIds(reply, [&] { return m_deleted == asked; });
        require(m_deleted == asked, "a new request is answered");
    } while (m_nextId != expected);
}
