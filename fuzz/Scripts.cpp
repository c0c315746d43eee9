// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Scripts.h"

#include "Require.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QStringList>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace
{

QString sourceOf(const QString &path)
{
    QFile file(QStringLiteral(":/") + path);
    require(file.open(QIODevice::ReadOnly), "a script is in the resources");
    return QString::fromUtf8(file.readAll());
}

//! The names that a library declares.
QStringList namesIn(const QString &source)
{
    static const QRegularExpression s_declaration(QStringLiteral("^(?:function|const|var|let) (\\w+)"),
                                                  QRegularExpression::MultilineOption);
    QStringList names;
    for (auto found = s_declaration.globalMatch(source); found.hasNext();) {
        names.append(found.next().captured(1));
    }
    return names;
}

//! Whether the line begins a block of statements, to which one can be added at the end of the line.
bool beginsBlock(const QString &line)
{
    static const QRegularExpression s_start(
        QStringLiteral("(?:(?:\\)|else|=>|try|finally|do) \\{|^\\s*(?:case .*|default):)$"));
    static const QRegularExpression s_switch(QStringLiteral("\\bswitch \\("));
    return s_start.match(line).hasMatch() && !s_switch.match(line).hasMatch();
}

constexpr int s_maxBlocks = 4096;

//! libFuzzer reads these like the counters that the compiler makes.
__attribute__((section("__libfuzzer_extra_counters"), used)) quint8 s_counters[s_maxBlocks];

} // namespace

void ScriptBlocks::print() const
{
    QStringList paths;
    for (const Block &block : m_blocks) {
        if (!paths.contains(block.path)) {
            paths.append(block.path);
        }
    }
    for (const QString &path : std::as_const(paths)) {
        int count = 0;
        QStringList missed;
        for (const Block &block : m_blocks) {
            if (block.path == path) {
                ++count;
                if (!block.isReached) {
                    missed.append(QString::number(block.line));
                }
            }
        }
        std::fprintf(stderr, "%s: %d of %d blocks%s%s\n", qPrintable(path), count - missed.size(), count,
                     missed.isEmpty() ? "" : ", not line ", qPrintable(missed.join(QLatin1String(", "))));
    }
}

QString ScriptBlocks::counted(const QString &path, const QString &source)
{
    QStringList lines = source.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        if (beginsBlock(lines.at(i))) {
            lines[i] += QStringLiteral(" scriptBlocks.reach(%1);").arg(m_blocks.size());
            m_blocks.append({path, i + 1, false});
        }
    }
    require(m_blocks.size() <= s_maxBlocks, "there is a counter for each block");
    return lines.join(QLatin1Char('\n'));
}

void ScriptBlocks::reach(int number)
{
    m_blocks[number].isReached = true;
    if (s_counters[number] < 255) {
        ++s_counters[number];
    }
}

Scripts::Scripts()
{
    if (qEnvironmentVariableIsSet("FUZZ_SCRIPT_COVERAGE")) {
        static const ScriptBlocks *const s_blocks = &m_blocks; // never deleted
        std::atexit([] { s_blocks->print(); });
    }
    QQmlEngine::setObjectOwnership(&m_blocks, QQmlEngine::CppOwnership);
    m_engine.globalObject().setProperty(QStringLiteral("scriptBlocks"), m_engine.newQObject(&m_blocks));
}

QJSValue Scripts::library(const QString &path)
{
    if (m_libraries.contains(path)) {
        return m_libraries.value(path);
    }
    // Directives that only QML knows. The line numbers stay.
    static const QRegularExpression s_pragma(QStringLiteral("^\\.pragma library$"),
                                             QRegularExpression::MultilineOption);
    static const QRegularExpression s_import(QStringLiteral("^\\.import \"([^\"]+)\" as (\\w+)$"),
                                             QRegularExpression::MultilineOption);
    QString source = m_blocks.counted(path, sourceOf(path));
    QStringList parameters;
    QJSValueList imports;
    for (auto found = s_import.globalMatch(source); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        imports.append(library(QDir::cleanPath(QFileInfo(path).path() + QLatin1Char('/') + match.captured(1))));
        parameters.append(match.captured(2));
    }
    source.remove(s_pragma).remove(s_import);
    QJSValue load =
        m_engine.evaluate(QStringLiteral("(function(%1) {%2\nreturn {%3}; })")
                              .arg(parameters.join(QLatin1Char(',')), source, namesIn(source).join(QLatin1Char(','))),
                          path);
    const QJSValue loaded = load.call(imports);
    if (loaded.isError()) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), qPrintable(loaded.toString()));
    }
    require(!loaded.isError(), "a script can be evaluated");
    m_libraries.insert(path, loaded);
    return loaded;
}

QJSValue Scripts::call(const QJSValue &library, const char *function, const QJSValueList &arguments)
{
    QJSValue callable = library.property(QLatin1String(function));
    require(callable.isCallable(), "a script has its function");
    const QJSValue result = callable.call(arguments);
    if (result.isError()) {
        std::fprintf(stderr, "%s() threw %s\n", function, qPrintable(result.toString()));
    }
    require(!result.isError(), "a function throws nothing");
    return result;
}

QJSValue Scripts::parse(const QString &json)
{
    static const QString s_parse = QStringLiteral("parse");
    const QJSValue parser = m_engine.globalObject().property(QStringLiteral("JSON"));
    const QJSValue value = parser.property(s_parse).callWithInstance(parser, {json});
    return value.isError() ? QJSValue() : value;
}

QJSValue Scripts::untranslated()
{
    return m_engine.evaluate(QStringLiteral("(text => text)"));
}
