// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the blocks of a structured reply: the rows that the OmniBar makes of them, and what the widgets show of a row.
//
// The first line of an input is the text of the reply, the rest is the list of blocks in JSON.

#include "Require.h"
#include "Scripts.h"

#include <QCoreApplication>
#include <QStringList>

#include <cmath>
#include <cstdint>

namespace
{

constexpr int s_maxTextLength = 1001; // with the ellipsis
constexpr int s_maxCellLength = 201;
constexpr int s_maxEntries = 200;
constexpr int s_maxRows = 50;
constexpr int s_maxColumns = 24;

int lengthOf(const QJSValue &array)
{
    require(array.isArray(), "a list is an array");
    return array.property(QStringLiteral("length")).toInt();
}

void checkTexts(const QJSValue &texts, int maximumCount, int maximumLength)
{
    const int count = lengthOf(texts);
    require(count <= maximumCount, "a widget draws a limited number of entries");
    for (int i = 0; i < count; ++i) {
        const QJSValue text = texts.property(static_cast<quint32>(i));
        require(text.isString() && text.toString().size() <= maximumLength, "a widget shows texts of limited length");
    }
}

//! What the OmniBar shows of untrusted blocks.
class Blocks
{
public:
    Blocks()
        : m_replies(m_scripts.library(QStringLiteral("contents/ui/omnibar/logic/StructuredReply.js")))
        , m_rows(m_scripts.library(QStringLiteral("contents/ui/omnibar/logic/RowContent.js")))
        , m_widgets(m_scripts.library(QStringLiteral("components/BlockContent.js")))
        , m_tr(m_scripts.untranslated())
    {
    }

    void check(const QString &reply, const QString &json)
    {
        const QJSValue blocks = m_scripts.parse(json);
        const bool needsBlocks = Scripts::call(m_replies, "needsBlocks", {blocks}).toBool();
        require(!needsBlocks || blocks.isArray(), "only a list has blocks");
        const QJSValue rows = Scripts::call(m_replies, "rowsOf", {blocks, reply});
        const int count = lengthOf(rows);
        require(count > 0, "a reply has a row");
        require(count == 1 || count <= lengthOf(blocks), "a block has one row at most");
        for (int i = 0; i < count; ++i) {
            checkRow(rows.property(static_cast<quint32>(i)), reply);
        }
        checkBlock(blocks); // a payload need not be an object
    }

private:
    void checkRow(const QJSValue &row, const QString &reply)
    {
        const auto field = [&row](const char *name) {
            const QJSValue value = row.property(QLatin1String(name));
            require(value.isString(), "the fields of a row are texts");
            return value.toString();
        };
        static const QStringList s_types = {
            QStringLiteral("text"),   QStringLiteral("list"), QStringLiteral("table"),   QStringLiteral("options"),
            QStringLiteral("slider"), QStringLiteral("code"), QStringLiteral("callout"),
        };
        require(s_types.contains(field("messageType")), "a row is of a type that the OmniBar shows");
        require(field("fallbackText") == field("text"), "the text is the fallback");
        require(reply.isEmpty() || !field("text").isEmpty(), "a reply with a text has a text in each row");
        require(field("messageType") == QLatin1String("text") || !field("payload").isEmpty(), "a widget has a payload");

        const QString payload = field("payload");
        const QJSValue block = Scripts::call(m_rows, "parseObject", {payload});
        require(block.isObject() && !block.isArray(), "a block is an object");
        const bool isWidget =
            Scripts::call(m_rows, "isStructured", {QStringLiteral("assistant"), field("messageType"), payload})
                .toBool();
        require(isWidget == (field("messageType") != QLatin1String("text")), "a text is shown as a bubble");
        const QJSValue text = Scripts::call(m_rows, "textOf", {payload, field("fallbackText"), field("text")});
        // Only a bubble shows this text. A widget without a text of its own may have a content that it doesn't draw.
        require(text.isString() && (isWidget || text.toString().isEmpty() == field("text").isEmpty()),
                "a bubble shows the row");
        checkBlock(block);
    }

    //! What the widgets of all types show of it.
    void checkBlock(const QJSValue &block)
    {
        const auto shown = [&](const char *function) { return Scripts::call(m_widgets, function, {block}); };
        const auto text = [&](const char *function) {
            const QJSValue value = shown(function);
            require(value.isString(), "a field is a text");
            return value.toString();
        };
        const QString content = text("contentOf");
        Scripts::call(m_widgets, "hasEndlessWord", {content});
        require(text("languageOf").size() <= 3 * 41, "the name of a language is short");
        require(text("sliderLabel").size() <= 201, "the label of a slider is short");
        text("sliderAction");
        const QString variant = text("calloutVariant");
        require(variant == QLatin1String("info") || variant == QLatin1String("warning")
                    || variant == QLatin1String("tip"),
                "a callout has one of our looks");

        const QJSValue entries = Scripts::call(m_widgets, "listEntries", {block, m_tr});
        checkTexts(entries, s_maxEntries, s_maxTextLength);
        const QJSValue object = shown("objectOf");
        const QJSValue items = object.property(QStringLiteral("items"));
        const int hidden = Scripts::call(m_widgets, "hiddenCount", {items, lengthOf(entries)}).toInt();
        require(!items.isArray() || hidden + lengthOf(entries) == lengthOf(items), "hidden entries are counted");
        const QString title =
            Scripts::call(m_widgets, "textField", {object.property(QStringLiteral("title"))}).toString();
        require(title.size() <= s_maxTextLength, "a title is short");

        checkTable(block);
        checkChoices(Scripts::call(m_widgets, "optionChoices", {block, m_tr}));
        checkRange(shown("sliderRange"));
    }

    void checkTable(const QJSValue &block)
    {
        const QJSValue columns = Scripts::call(m_widgets, "tableColumns", {block});
        checkTexts(columns, s_maxColumns, s_maxCellLength);
        const QJSValue rows = Scripts::call(m_widgets, "tableRows", {block, lengthOf(columns)});
        require(lengthOf(rows) <= s_maxRows, "a table draws a limited number of rows");
        for (int i = 0; i < lengthOf(rows); ++i) {
            const QJSValue cells = rows.property(static_cast<quint32>(i));
            require(lengthOf(cells) == lengthOf(columns), "each row has a cell in each column");
            checkTexts(cells, s_maxColumns, s_maxCellLength);
            require(Scripts::call(m_widgets, "spokenRow", {columns, cells}).isString(), "a row can be read aloud");
        }
    }

    static void checkChoices(const QJSValue &choices)
    {
        require(lengthOf(choices) <= s_maxEntries, "a limited number of options is drawn");
        for (int i = 0; i < lengthOf(choices); ++i) {
            const QJSValue choice = choices.property(static_cast<quint32>(i));
            require(choice.property(QStringLiteral("id")).isString(), "an option has an id");
            require(choice.property(QStringLiteral("label")).isString(), "an option has a label");
            require(!choice.property(QStringLiteral("id")).toString().isEmpty(), "an id is not empty");
            require(!choice.property(QStringLiteral("label")).toString().isEmpty(), "a label is not empty");
        }
    }

    void checkRange(const QJSValue &range)
    {
        const auto number = [&range](const char *name) {
            const QJSValue value = range.property(QLatin1String(name));
            require(value.isNumber() && std::isfinite(value.toNumber()), "a slider has numbers");
            return value.toNumber();
        };
        require(number("from") <= number("value") && number("value") <= number("to"), "a value is in its range");
        require(number("step") > 0, "a slider has steps");
        bool isNumber = false;
        const QString value = Scripts::call(m_widgets, "rounded", {number("value")}).toString();
        require(std::abs(value.toDouble(&isNumber) - number("value")) <= 0.125 && isNumber, "a value is rounded");
        require((number("to") - number("from")) / number("step") <= 1.001e9, "a slider has at most a billion steps");
    }

    Scripts m_scripts;
    const QJSValue m_replies;
    const QJSValue m_rows;
    const QJSValue m_widgets;
    const QJSValue m_tr;
};

// Not deleted at exit, because Qt's own statics are destroyed before.
QCoreApplication *s_application = nullptr;
Blocks *s_blocks = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    s_application = new QCoreApplication(*argc, *argv);
    s_blocks = new Blocks;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const int lineEnd = input.indexOf('\n');
    s_blocks->check(QString::fromUtf8(input.left(lineEnd)), QString::fromUtf8(input.mid(lineEnd + 1)));
    return 0;
}
