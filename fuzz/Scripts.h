// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QHash>
#include <QJSEngine>
#include <QJSValue>
#include <QObject>
#include <QString>
#include <QVector>

//! The blocks of the scripts' code.
class ScriptBlocks : public QObject
{
    Q_OBJECT

public:
    //! The source with a call of reach() in each block. The line numbers stay.
    QString counted(const QString &path, const QString &source);
    //! A block is executed.
    Q_INVOKABLE void reach(int number);
    //! Prints how many blocks of each script were reached, and the first lines of those that weren't.
    void print() const;

private:
    struct Block
    {
        QString path;
        int line = 0;
        bool isReached = false;
    };
    QVector<Block> m_blocks;
};

//! The JavaScript libraries of the user interface in a bare engine, without QML. They are loaded from the resources, in
//! which they have their paths of the source tree.
//!
//! Blocks of their code are counted, so that the fuzzer keeps inputs that reach a new one. With FUZZ_SCRIPT_COVERAGE=1
//! in the environment the blocks that were reached are printed at exit. Must not be deleted before the program ends.
class Scripts
{
public:
    Scripts();

    //! The functions and variables of a library. Its imports are loaded too.
    //! @param path in the source tree
    QJSValue library(const QString &path);

    //! Calls a function of a library, which must not throw.
    static QJSValue call(const QJSValue &library, const char *function, const QJSValueList &arguments);

    QJSEngine &engine() { return m_engine; }
    //! The value of a JSON text, undefined if it isn't valid.
    QJSValue parse(const QString &json);
    //! A translating function that returns its argument.
    QJSValue untranslated();

private:
    QJSEngine m_engine;
    QHash<QString, QJSValue> m_libraries;
    ScriptBlocks m_blocks;
};
