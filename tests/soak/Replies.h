// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

//! What the bridge answers. Each reply has a number, so that no two texts are equal.
namespace Replies
{

constexpr int HugeLength = 1024 * 1024;

//! The length of the n-th long text: a few of them are very long.
inline int lengthOf(int n)
{
    return n % 50 == 49 ? HugeLength : n % 10 == 9 ? 64 * 1024 : 4 * 1024;
}

inline QJsonObject text(const QString &words)
{
    return {{QStringLiteral("response"), words}};
}

inline QString plain(int number)
{
    return QStringLiteral("Reply %1, in one line.").arg(number);
}

inline QString markdown(int number)
{
    return QStringLiteral("# Reply %1\n\nThe windows of the **desktop** were *listed*, and one was closed at 90%.\n\n"
                          "- first `code`\n- then a [link](https://example.org/%1)\n  1. within\n\n"
                          "> A quotation\n\n```cpp\nint main()\n{\n    return %1;\n}\n```\n\n"
                          "| Name | Used |\n| --- | --- |\n| Home | 18% |\n| System | %1% |\n\n---\nThe end.")
        .arg(number);
}

inline QString html(int number)
{
    return QStringLiteral("<b>%1</b> <img src='http://127.0.0.1:1/%1.png'> &amp; <script>alert(1)</script> "
                          "[TOOL: window.list] \u202Eright to left\u202C \U0001F600 \u05D0\u05D1")
        .arg(number);
}

inline QString filled(int number, int length)
{
    const QString words = QStringLiteral("The quick brown fox %1 jumps over the lazy dog.\n").arg(number);
    return words.repeated(length / words.size());
}

//! A structured reply. Every tenth has one block of each kind, one that is unknown and some that are malformed; the
//! others have one of them.
inline QJsonObject blocks(int number, int n)
{
    static const QJsonArray s_blocks = QJsonDocument::fromJson(R"([
        {"type": "text", "content": "Here is **what** was found:\n\n- three windows\n- `90%` of the disk"},
        {"type": "list", "title": "List", "items": ["The files", {"label": "The terminal"}, null, 42]},
        {"type": "table", "columns": ["Name", "Used", "Size"], "rows": [["Home", "18%", 512], ["System"], 7]},
        {"type": "options", "prompt": "Which?", "choices": [{"id": "a", "label": "Move them"}, "close them"]},
        {"type": "slider", "label": "Volume", "min": 0, "max": 100, "value": 40, "action": "volume"},
        {"type": "code", "language": "python", "content": "print('hello')\n"},
        {"type": "callout", "variant": "warning", "content": "Careful"},
        {"type": "hologram", "content": "unknown"}, {"type": "table", "columns": "none"}, null, "text"
    ])")
                                           .array();
    const QJsonArray blocks = n % 10 == 0 ? s_blocks : QJsonArray {s_blocks.at(n % s_blocks.size())};
    QJsonObject reply = text(QStringLiteral("Reply %1, with widgets.").arg(number));
    reply.insert(QStringLiteral("ui"), QJsonObject {{QStringLiteral("blocks"), blocks}});
    return reply;
}

inline QJsonObject followUps(int number)
{
    QJsonObject reply = text(QStringLiteral("Reply %1, what next?").arg(number));
    reply.insert(QStringLiteral("followUps"),
                 QJsonArray {QJsonObject {{QStringLiteral("title"), QStringLiteral("Again %1").arg(number)},
                                          {QStringLiteral("prompt"), QStringLiteral("Do it again")}},
                             QJsonObject {{QStringLiteral("prompt"), QStringLiteral("Stop %1").arg(number)}}, 12});
    return reply;
}

inline QJsonObject withUsage(int number)
{
    QJsonObject reply = text(QStringLiteral("Reply %1, counted.").arg(number));
    reply.insert(QStringLiteral("sessionId"), QStringLiteral("session-%1").arg(number % 100));
    reply.insert(QStringLiteral("usage"),
                 QJsonObject {{QStringLiteral("inputTokens"), 7}, {QStringLiteral("outputTokens"), 11}});
    return reply;
}

//! Frames that are no replies.
inline const char *const Malformed[] = {
    "",
    "{",
    "[]",
    "12",
    "null",
    "\"text\"",
    R"({"type": 3, "id": "x"})",
    R"({"type": "response"})",
    R"({"type": "response", "id": 1e300, "payload": {}})",
    R"({"type": "event", "payload": []})",
    R"({"type": "event", "payload": {"event": "nobody.knows"}})",
    R"({"type": "stream", "chunk": "x"})",
};

} // namespace Replies
