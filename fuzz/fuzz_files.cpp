// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the check of files that the user attaches or edits: a file that the editor accepts must come back unchanged.

#include "FileCheck.h"
#include "FileService.h"
#include "Require.h"
#include "Scripts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>
#include <QTextDocument>

#include <cstdint>

namespace
{

class Editor
{
public:
    Editor()
        : m_text(m_scripts.library(QStringLiteral("components/editor/EditorText.js")))
        , m_path(QDir::home().filePath(QStringLiteral("file.txt")))
    {
    }

    void check(const QByteArray &bytes)
    {
        replace(bytes);
        const FileCheck check;
        const QVariantMap found = check.examineText(m_path, bytes.size());
        const QString kind = kindOf(found);
        require(kind == QLatin1String("file") || kind == QLatin1String("binary") || kind == QLatin1String("unsuitable"),
                "a file is a text, suitable or not, or binary");
        require(found.value(QStringLiteral("size")).toDouble() == bytes.size(), "the size is that of the file");
        require(!check.stamp(m_path).isEmpty(), "a file has a stamp");
        require(kindOf(check.examine(m_path)) == QLatin1String("file"), "an attachment may have any content");
        require(bytes.isEmpty() || kindOf(check.examineText(m_path, bytes.size() - 1)) == QLatin1String("large"),
                "a larger file isn't read");
        if (kind == QLatin1String("file")) {
            edit(found);
            require(content() == bytes, "the editor writes what it has read");
        }
    }

private:
    static QString kindOf(const QVariantMap &found) { return found.value(QStringLiteral("kind")).toString(); }

    //! Opens the file in a text document and saves it.
    void edit(const QVariantMap &found)
    {
        const FileService files;
        const QString text = files.readFile(m_path);
        m_document.setPlainText(text);
        require(m_document.toPlainText() == text, "a text document keeps the text");
        const QJSValue format = m_scripts.engine().toScriptValue(found);
        const QString written = Scripts::call(m_text, "asWritten", {m_document.toPlainText(), format}).toString();
        require(files.writeFile(m_path, written), "the file can be written");
        require(files.readFile(m_path) == text, "the editor finds its text in the file");
    }

    void replace(const QByteArray &bytes) const
    {
        QFile file(m_path);
        require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "the home can be written to");
    }

    QByteArray content() const
    {
        QFile file(m_path);
        require(file.open(QIODevice::ReadOnly), "the file can be read");
        return file.readAll();
    }

    Scripts m_scripts;
    const QJSValue m_text;
    const QString m_path;
    QTextDocument m_document;
};

// Not deleted at exit, because Qt's own statics are destroyed before.
QCoreApplication *s_application = nullptr;
Editor *s_editor = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    s_application = new QCoreApplication(*argc, *argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    s_editor = new Editor;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    s_editor->check(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    return 0;
}
