// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "LongTexts.h"
#include "Scenes.h"
#include "ScriptedVoice.h"

#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QTest>

#include <memory>

using Scenes::Scene;

namespace
{

//! Intentional: a suggestion has two lines, and the input one, whose text begins with the names of the files.
const QStringList s_elided = {QStringLiteral("Go deeper on the last answer."),
                              QStringLiteral("{names} attached — ask your question…")};

} // namespace

//! The OmniBar in a language whose texts are 1.4 times as long.
class tst_LongTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(LongTexts::use()); }
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void fit_data();
    void fit();

private:
    std::unique_ptr<ScriptedVoice> m_voice;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_voice = std::make_unique<ScriptedVoice>(bar); }};
};

void tst_LongTexts::fit_data()
{
    Scenes::add();
    Scenes::addMenus();
}

void tst_LongTexts::fit()
{
    QFETCH(Scene, scene);
    Conversation &bar = m_window.take();
    m_voice->set("ttsAvailable", true);
    QVERIFY(bar.begin());
    QVERIFY(scene(bar));
    QVERIFY(bar.settle());
    bar.screenshot(QStringLiteral("long-") + QLatin1String(QTest::currentDataTag()));
    // The bubble has no text.
    if (!bar.property("compactMode").toBool()) {
        QCOMPARE(LongTexts::faults(bar.window(), s_elided), QString());
    }
}

REGISTER_TEST(tst_LongTexts, QGuiApplication)

#include "tst_LongTexts.moc"
