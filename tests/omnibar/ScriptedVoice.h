// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

class OmniBarFixture;
class QObject;

//! A voice path in place of the real one, that does what a test says: the stand-in of the controllers' tests.
class ScriptedVoice
{
public:
    //! Before the window opens.
    explicit ScriptedVoice(OmniBarFixture &bar);

    const QObject *object() const { return m_object; }
    void set(const char *property, const QVariant &value);
    //! Emits a signal that takes a text.
    void tell(const char *signal, const QString &text);
    bool ttsEnabled() const;
    //! What the window called since it was last taken, in its order.
    QStringList calls() const;
    QStringList takeCalls();

private:
    QObject *m_object;
};
