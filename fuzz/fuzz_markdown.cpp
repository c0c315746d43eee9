// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the renderer of Markdown, which turns untrusted text into markup.
//
// Bit 0 of the first byte of an input selects the theme, bit 1 the colours of percentages; the rest is the Markdown.

#include "Require.h"
#include "Scripts.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <cstdint>

namespace
{

//! Every start tag that the renderer makes, as a whole. Only numbers and colours of its own vary in attributes, so an
//! attribute with a text from the input matches none.
const QRegularExpression &knownTag()
{
    static const QRegularExpression s_pattern = [] {
        const QString color = QStringLiteral(R"((?:#[0-9a-f]{6}|rgba\([0-9.,]+\)))");
        const QString lengths = QStringLiteral(R"((?:(?:\d{1,3}px|0)(?: |(?=[;"]))){1,4})");
        const QStringList tags = {
            QStringLiteral(
                R"(<table width="100%" cellspacing="0" cellpadding="0"(?: style="background-color:COLOR")?>)"),
            QStringLiteral("<tr>"),
            QStringLiteral(R"(<td style="padding:LENGTHS(?:;font-size:1px;background-color:COLOR)?">)"),
            QStringLiteral(
                R"(<pre(?: dir="ltr")? style="margin:0;font-family:monospace;font-size:12px;line-height:140%;)"
                R"(white-space:pre-wrap">)"),
            QStringLiteral(R"(<p style="margin:LENGTHS;font-size:1[457]px;font-weight:700;line-height:130%">)"),
            QStringLiteral(R"(<p style="margin:LENGTHS;(?:text-indent:-\d{1,2}px;)?line-height:145%">)"),
            QStringLiteral(R"(<span style="color:COLOR(?:;font-weight:700)?">)"),
            QStringLiteral(R"(<span style="font-family:monospace;font-size:12px;background-color:COLOR">)"),
            QStringLiteral("<b>"),
            QStringLiteral("<i>"),
        };
        QString pattern = QStringLiteral("^(?:") + tags.join(QLatin1Char('|')) + QStringLiteral(")$");
        pattern.replace(QLatin1String("COLOR"), color).replace(QLatin1String("LENGTHS"), lengths);
        return QRegularExpression(pattern);
    }();
    return s_pattern;
}

void checkEntity(const QString &html, int ampersand)
{
    static const QStringList s_entities = {QStringLiteral("&amp;"), QStringLiteral("&lt;"), QStringLiteral("&gt;"),
                                           QStringLiteral("&nbsp;")};
    const auto isHere = [&](const QString &entity) { return html.midRef(ampersand, entity.size()) == entity; };
    require(std::any_of(s_entities.begin(), s_entities.end(), isHere), "an ampersand begins one of our entities");
}

const QRegularExpression s_percentage(QStringLiteral("[0-9]%"));

//! Checks all tags and entities of a rendered text.
void checkMarkup(const QString &html)
{
    QStringList open;
    for (int i = 0; i < html.size(); ++i) {
        const QChar character = html.at(i);
        require(character != QLatin1Char('>'), "a text has no angle bracket");
        if (character == QLatin1Char('&')) {
            checkEntity(html, i);
        }
        if (character != QLatin1Char('<')) {
            continue;
        }
        const int end = html.indexOf(QLatin1Char('>'), i);
        require(end > 0, "a tag ends");
        const QString tag = html.mid(i, end - i + 1);
        i = end;
        if (tag == QLatin1String("<br/>")) {
            continue;
        }
        if (tag.startsWith(QLatin1String("</"))) {
            require(!open.isEmpty() && tag == QStringLiteral("</%1>").arg(open.takeLast()), "tags are nested");
            continue;
        }
        require(knownTag().match(tag).hasMatch(), "a start tag is one of ours");
        open.append(tag.mid(1, tag.indexOf(QRegularExpression(QStringLiteral("[ >]"))) - 1));
    }
    require(open.isEmpty(), "all tags are closed");
}

class Renderer
{
public:
    Renderer()
        : m_library(library(m_scripts))
    {
    }

    QString render(const QString &markdown, bool isLight, bool hasPercentages)
    {
        QJSValue options = m_scripts.engine().newObject();
        options.setProperty(QStringLiteral("lightChrome"), isLight);
        options.setProperty(QStringLiteral("enablePercentHighlight"), hasPercentages);
        const QJSValue html = Scripts::call(m_library, "render", {markdown, options});
        require(html.isString(), "every text can be rendered");
        return html.toString();
    }

    //! What else QML asks of the library about a text.
    void checkColors(const QString &markdown, bool isLight)
    {
        static const QRegularExpression s_color(QStringLiteral("^#[0-9a-f]{6}$"));
        const QString color = Scripts::call(m_library, "percentColor", {markdown}).toString();
        require(color.isEmpty() ? !s_percentage.match(markdown).hasMatch() : s_color.match(color).hasMatch(),
                "a percentage has a colour");
        Scripts::call(m_library, "bodyColor", {isLight});
    }

private:
    static QJSValue library(Scripts &scripts)
    {
        scripts.engine().evaluate(QStringLiteral("var Qt = { rgba: (r, g, b, a) => [r, g, b, a].join() };"));
        return scripts.library(QStringLiteral("components/MarkdownRenderer.js"));
    }

    Scripts m_scripts;
    const QJSValue m_library;
};

// Not deleted at exit, because Qt's own statics are destroyed before.
QCoreApplication *s_application = nullptr;
Renderer *s_renderer = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    s_application = new QCoreApplication(*argc, *argv);
    s_renderer = new Renderer;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0) {
        return 0;
    }
    const QString markdown = QString::fromUtf8(reinterpret_cast<const char *>(data + 1), static_cast<int>(size) - 1);
    const QString html = s_renderer->render(markdown, data[0] & 1, data[0] & 2);
    checkMarkup(html);
    s_renderer->checkColors(markdown, data[0] & 1);
    return 0;
}
