// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ChatModel.h"

#include <algorithm>

namespace
{

const QLatin1String s_user("user");
const QLatin1String s_assistant("assistant");

} // namespace

bool ChatModel::isOfAssistant(const ChatMessage &message)
{
    return message.role == s_assistant;
}

int ChatModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_messages.size();
}

QVariant ChatModel::data(const QModelIndex &index, int role) const
{
    if (index.row() < 0 || index.row() >= m_messages.size()) {
        return {};
    }
    const ChatMessage &message = m_messages.at(index.row());
    switch (role) {
    case ContentRole:
        return message.content;
    case RoleRole:
        return message.role;
    case AgentNameRole:
        return message.agentName;
    case TimestampRole:
        return message.timestamp;
    case IsStreamingRole:
        return message.isStreaming;
    default:
        return {};
    }
}

QHash<int, QByteArray> ChatModel::roleNames() const
{
    return {
        {ContentRole, "content"},         {RoleRole, "role"},
        {AgentNameRole, "agentName"},     {TimestampRole, "timestamp"},
        {IsStreamingRole, "isStreaming"},
    };
}

void ChatModel::append(const ChatMessage &message)
{
    beginInsertRows(QModelIndex(), m_messages.size(), m_messages.size());
    m_messages.append(message);
    endInsertRows();
}

void ChatModel::emitLastChanged(const QVector<int> &roles)
{
    const QModelIndex last = index(m_messages.size() - 1);
    Q_EMIT dataChanged(last, last, roles);
}

void ChatModel::addMessage(const QString &content, const QString &role, const QString &agentName)
{
    append({content, role, agentName, QDateTime::currentDateTime(), false});
    Q_EMIT messageAdded();
    Q_EMIT countChanged();
}

void ChatModel::addUserMessage(const QString &content)
{
    addMessage(content, s_user);
}

void ChatModel::addAssistantMessage(const QString &content, const QString &agentName)
{
    addMessage(content, s_assistant, agentName);
}

void ChatModel::appendToLastMessage(const QString &chunk, const QString &agentName)
{
    if (m_messages.isEmpty() || !isOfAssistant(m_messages.constLast())) {
        append({chunk, s_assistant, agentName, QDateTime::currentDateTime(), true});
        // Intentional: not the order of addMessage(). Views count before they scroll.
        Q_EMIT countChanged();
    } else {
        ChatMessage &last = m_messages.last();
        last.content += chunk;
        last.isStreaming = true;
        if (last.agentName.isEmpty()) {
            last.agentName = agentName;
        }
        emitLastChanged({ContentRole, IsStreamingRole, AgentNameRole});
    }
    Q_EMIT messageAdded();
}

void ChatModel::finishStreaming()
{
    if (m_messages.isEmpty() || !m_messages.constLast().isStreaming) {
        return;
    }
    m_messages.last().isStreaming = false;
    emitLastChanged({IsStreamingRole});
}

void ChatModel::clear()
{
    beginResetModel();
    m_messages.clear();
    endResetModel();
    Q_EMIT countChanged();
}

QString ChatModel::getLastAssistantMessage() const
{
    const auto last = std::find_if(m_messages.crbegin(), m_messages.crend(), isOfAssistant);
    return last == m_messages.crend() ? QString() : last->content;
}
