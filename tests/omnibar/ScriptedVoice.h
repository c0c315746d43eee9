// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

class OmniBarFixture;
class QObject;

//! A voice path that does what a test says: the stand-in that the tests of the controllers use.
class ScriptedVoice
{
public:
    //! Call before the window opens.
    explicit ScriptedVoice(OmniBarFixture &bar);

    const QObject *object() const { return m_object; }
    void set(const char *property, const QVariant &value);
    //! Emits a signal that takes a text.
    void emitSignal(const char *signal, const QString &text);
    bool ttsEnabled() const;
    //! What the window called since takeCalls(), in order.
    QStringList calls() const;
    QStringList takeCalls();

private:
    QObject *m_object;
};
