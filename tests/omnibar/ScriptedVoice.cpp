// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ScriptedVoice.h"

#include "OmniBarFixture.h"

#include <QTest>

namespace
{

//! A test that uses a name unknown to the stand-in would prove nothing.
void require(bool isKnown, const char *name)
{
    if (!isKnown) {
        QTest::qFail(name, __FILE__, __LINE__);
    }
}

} // namespace

ScriptedVoice::ScriptedVoice(OmniBarFixture &bar)
    : m_object(bar.fake(QStringLiteral("FakeVoiceBridge {}")))
{
    bar.provide("voiceBridge", m_object);
}

void ScriptedVoice::set(const char *property, const QVariant &value)
{
    require(m_object->metaObject()->indexOfProperty(property) >= 0 && m_object->setProperty(property, value), property);
}

void ScriptedVoice::emitSignal(const char *signal, const QString &text)
{
    require(QMetaObject::invokeMethod(m_object, signal, Q_ARG(QString, text)), signal);
}

bool ScriptedVoice::ttsEnabled() const
{
    return m_object->property("ttsEnabled").toBool();
}

QStringList ScriptedVoice::calls() const
{
    return m_object->property("calls").toStringList();
}

QStringList ScriptedVoice::takeCalls()
{
    const QStringList taken = calls();
    set("calls", QStringList());
    return taken;
}
