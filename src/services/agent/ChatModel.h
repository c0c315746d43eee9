// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QAbstractListModel>
#include <QDateTime>
#include <QList>
#include <QString>

//! The messages of a chat, oldest first, known to QML as the type ChatModel. It keeps what it is given and has no
//! connection. The last message grows while its reply is streamed.
class ChatModel : public QAbstractListModel
{
    Q_OBJECT

    Q_PROPERTY(int count READ getCount NOTIFY countChanged)

public:
    enum ChatRoles
    {
        ContentRole = Qt::UserRole + 1,
        RoleRole, //!< "user", "assistant" or whatever the caller passes
        AgentNameRole, //!< empty if unknown
        TimestampRole, //!< QDateTime in local time
        IsStreamingRole,
    };
    Q_ENUM(ChatRoles)

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    //! Appends a finished message.
    Q_INVOKABLE void addMessage(const QString &content, const QString &role = QStringLiteral("user"),
                                const QString &agentName = QString());
    Q_INVOKABLE void addUserMessage(const QString &content);
    Q_INVOKABLE void addAssistantMessage(const QString &content, const QString &agentName = QString());
    //! Appends to the last message if it is the assistant's, otherwise begins one. It is streaming from then on.
    //! @param agentName ignored if the message has a name
    Q_INVOKABLE void appendToLastMessage(const QString &chunk, const QString &agentName = QString());
    //! The last message is complete.
    Q_INVOKABLE void finishStreaming();
    Q_INVOKABLE void clear();

    Q_INVOKABLE int getCount() const { return m_messages.size(); }
    //! The content of the assistant's last message; empty if there is none.
    Q_INVOKABLE QString getLastAssistantMessage() const;

Q_SIGNALS:
    //! A message, or a part of the last one, was added.
    void messageAdded();
    void countChanged();

private:
    struct ChatMessage
    {
        QString content;
        QString role;
        QString agentName;
        QDateTime timestamp;
        bool isStreaming = false;
    };

    static bool isOfAssistant(const ChatMessage &message);
    void append(const ChatMessage &message);
    void emitLastChanged(const QVector<int> &roles);

    QList<ChatMessage> m_messages;
};
