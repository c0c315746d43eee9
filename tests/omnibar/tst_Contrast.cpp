// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Contrast.h"
#include "Conversation.h"
#include "Scenes.h"
#include "ScriptedVoice.h"

#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QTest>

#include <memory>

using Scenes::Scene;

//! The contrast of all texts of the OmniBar, measured in the drawn window, dark and light.
class tst_Contrast : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void contrast_data();
    void contrast();

private:
    std::unique_ptr<ScriptedVoice> m_voice;
    SharedWindow<Conversation> m_window {[this](Conversation &bar) { m_voice = std::make_unique<ScriptedVoice>(bar); }};
};

void tst_Contrast::contrast_data()
{
    Scenes::add();
    Scenes::addMenus();
}

void tst_Contrast::contrast()
{
    QFETCH(Scene, scene);

    // Intentional: these are part of the design, whatever their contrast.
    const QList<QColor> fixed {
        "#8cffffff", // "for" in the bar
        "#80ffffff", // the placeholder of the prompt
        "#66000000", // the hint below the bar
        "#e53935", // the stop button
        "#f87171", // low percentages
        "#fbbf24", // middle ones
        "#4ade80", // high ones
        "#8c000000", // muted text in widgets, light
        "#8a6a4a", // no live streaming
        "#73ffffff", // the placeholder of other fields, dark
        "#bf595e6b", // and light
        "#ffffff", // buttons in the colours of the brand
    };
    for (const bool light : {false, true}) {
        Conversation &bar = m_window.take();
        ScriptedVoice &voice = *m_voice;
        voice.set("ttsAvailable", true);
        QVERIFY(bar.begin());
        // The colours change over some frames.
        bar.evaluate(QStringLiteral("omniBar.appearanceStore.lightChrome = %1").arg(QVariant(light).toString()));
        QVERIFY(bar.settle());
        QVERIFY(scene(bar));
        QVERIFY(bar.settle());
        const QStringList faint = Contrast::faintTexts(bar.window(), fixed);
        bar.evaluate(QStringLiteral("omniBar.appearanceStore.lightChrome = false"));
        QVERIFY2(faint.isEmpty(),
                 qPrintable((light ? QStringLiteral("light\n    ") : QStringLiteral("dark\n    "))
                            + faint.join(QStringLiteral("\n    "))));
        m_window.giveBack();
    }
}

REGISTER_TEST(tst_Contrast, QGuiApplication)

#include "tst_Contrast.moc"
