// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes what the OmniBar takes out of the text of a reply: markup of tool calls, the tag of a tool's result, and words
// about a theme.

#include "Require.h"
#include "Scripts.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace
{

class ReplyText
{
public:
    ReplyText()
        : m_library(m_scripts.library(QStringLiteral("contents/ui/omnibar/logic/ReplyText.js")))
    {
    }

    void check(const QString &reply)
    {
        checkMarkup(reply);
        checkToolTag(reply);
        checkWording(reply);
    }

private:
    void checkMarkup(const QString &reply)
    {
        static const char *const s_markers[] = {
            "<invoke ",          "<tool_call",      "</tool_call>", "</function>",
            "minimax:tool_call", "<function_call>", "<function=",
        };
        const bool hasMarkup = Scripts::call(m_library, "holdsToolMarkup", {reply}).toBool();
        require(hasMarkup
                    == std::any_of(std::begin(s_markers), std::end(s_markers),
                                   [&](const char *marker) { return reply.contains(QLatin1String(marker)); }),
                "markup is found anywhere");
        const QJSValue stripped = Scripts::call(m_library, "stripToolMarkup", {reply});
        require(stripped.isString(), "a reply stays a text");
        const QString plain = stripped.toString();
        if (!hasMarkup) {
            require(plain == reply, "a reply without markup is unchanged");
            return;
        }
        require(plain.size() <= reply.size() || plain == QLatin1String("Done."), "markup is only removed");
        require(!plain.isEmpty(), "a reply has a text");
        require(!plain.contains(QLatin1String("\n\n\n")), "no gaps are left");
        const QString whole = QLatin1String("a<tool_call>") + reply + QLatin1String("</tool_call>z");
        const QString around = Scripts::call(m_library, "stripToolMarkup", {whole}).toString();
        require(around.startsWith(QLatin1Char('a')) && around.endsWith(QLatin1Char('z')), "the text around stays");
    }

    void checkToolTag(const QString &reply)
    {
        const auto parsed = [this](const QString &text) { return Scripts::call(m_library, "parseToolTag", {text}); };
        const auto field = [](const QJSValue &tag, const char *name) {
            const QJSValue value = tag.property(QLatin1String(name));
            require(value.isString(), "the parts of a tag are texts");
            return value.toString();
        };
        const QJSValue tag = parsed(reply);
        const bool hasTool = tag.property(QStringLiteral("hasTool")).toBool();
        const QString name = field(tag, "toolName");
        const QString status = field(tag, "toolStatus");
        if (!hasTool) {
            require(name.isEmpty() && status.isEmpty(), "without a tag there is no tool");
            require(field(tag, "text") == reply, "without a tag the reply is unchanged");
        } else {
            require(!name.contains(QLatin1Char(']')) && !status.contains(QLatin1Char(']')),
                    "a field ends at its bracket");
            require(reply.contains(name) && reply.contains(status), "a tag is a part of the reply");
            require(!field(tag, "text").isEmpty(), "a result has a text");
        }
        const QJSValue added = parsed(QLatin1String("[TOOL: x] [STATUS: success] [RESULT: ok] ") + reply);
        require(field(added, "toolName") == QLatin1String("x")
                    && field(added, "toolStatus") == QLatin1String("success"),
                "the first tag counts");
    }

    void checkWording(const QString &reply)
    {
        const QJSValue light = Scripts::call(m_library, "lightChromeFromWording", {reply});
        require(light.isUndefined() || light.isBool(), "a theme is light, dark or unknown");
        const bool isApplied = reply.contains(QLatin1String("applied"), Qt::CaseInsensitive);
        require(light.isUndefined() || isApplied, "a theme has been applied");
    }

    Scripts m_scripts;
    const QJSValue m_library;
};

// Not deleted at exit, because Qt's own statics are destroyed before.
QCoreApplication *s_application = nullptr;
ReplyText *s_replyText = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    s_application = new QCoreApplication(*argc, *argv);
    s_replyText = new ReplyText;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    s_replyText->check(QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    return 0;
}
