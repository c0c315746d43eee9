// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"
#include "Looks.h"
#include "ScriptedVoice.h"

#include "FakePath.h"
#include "TestRegistry.h"
#include "VoiceFixture.h"
#include "WhisperStandIn.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QString s_warning = QStringLiteral("[OmniBar] voice: ");

//! The methods of one kind that a type adds, with their number of parameters.
QStringList methodsOf(const QMetaObject &type, QMetaMethod::MethodType kind)
{
    QStringList names;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (method.methodType() == kind) {
            names.append(QString::fromLatin1(method.name()) + QLatin1Char(' ')
                         + QString::number(method.parameterCount()));
        }
    }
    return names;
}

} // namespace

//! The bar with the real voice path, from the microphone to the prompt and from a reply to the loudspeaker, with
//! stand-ins for the microphone, the engine and the programs that speak.
class tst_OmniBarVoiceBridge : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void scriptedVoiceOffersNothingElse();
    void speechBecomesAPrompt();
    void holdDiscardsTheUtterance();
    void withoutAModel();
    void withoutAMicrophone();
    void repliesAreReadAloud();

private:
    //! Call before the window opens. The machine's own programs and models are not found.
    VoiceBridge *provide(OmniBarFixture &bar, VoiceParts parts);

    QTemporaryDir m_nothing;
    //! Outlives the window, as in the program.
    std::unique_ptr<VoiceBridge> m_voice;
};

VoiceBridge *tst_OmniBarVoiceBridge::provide(OmniBarFixture &bar, VoiceParts parts)
{
    parts.roots.system = m_nothing.path();
    m_voice = std::make_unique<VoiceBridge>(std::move(parts), nullptr);
    bar.provide("voiceBridge", m_voice.get());
    return m_voice.get();
}

void tst_OmniBarVoiceBridge::init()
{
    WhisperStandIn::reset();
    m_voice.reset();
}

//! A test that uses members which the real one lacks would prove nothing.
void tst_OmniBarVoiceBridge::scriptedVoiceOffersNothingElse()
{
    OmniBarFixture bar;
    const ScriptedVoice scripted(bar);
    const QMetaObject &script = *scripted.object()->metaObject();
    const QMetaObject &real = VoiceBridge::staticMetaObject;
    int compared = 0;
    for (int i = script.propertyOffset(); i < script.propertyCount(); ++i) {
        const QMetaProperty property = script.property(i);
        if (qstrcmp(property.name(), "calls") == 0) {
            continue;
        }
        const int index = real.indexOfProperty(property.name());
        QVERIFY2(index >= 0, property.name());
        // Qt 5's QML has no property type for a list of strings.
        QCOMPARE(property.typeName(),
                 real.property(index).type() == QVariant::StringList ? "QVariant" : real.property(index).typeName());
        QVERIFY2(real.property(index).hasNotifySignal(), property.name());
        ++compared;
    }
    QVERIFY(compared > 10);
    const QStringList realSignals = methodsOf(real, QMetaMethod::Signal);
    for (const QString &name : methodsOf(script, QMetaMethod::Signal)) {
        // A property of QML has a change signal.
        QVERIFY2(realSignals.contains(name) || name.endsWith(QLatin1String("Changed 0")), qPrintable(name));
    }
    const QStringList realOperations = methodsOf(real, QMetaMethod::Method);
    for (const QString &name : methodsOf(script, QMetaMethod::Slot) + methodsOf(script, QMetaMethod::Method)) {
        QVERIFY2(realOperations.contains(name) || name == QLatin1String("note 1")
                     || name == QLatin1String("takeCalls 0"),
                 qPrintable(name));
    }
}

void tst_OmniBarVoiceBridge::speechBecomesAPrompt()
{
    const WhisperModelFile model;
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Talks);
    OmniBarFixture bar;
    VoiceBridge *voice = provide(bar, VoiceFixture::parts(microphone));
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    WhisperStandIn::say({QByteArray(" Open the dolphine. ")});
    const WhisperStandIn::Held held;
    QQuickItem *button = bar.item("micBtn");
    const auto placeholder = [&] { return bar.property("inputField.placeholderText").toString(); };

    bar.click(button);
    QVERIFY(voice->isListening());
    QCOMPARE(placeholder(), text("Listening..."));
    QVERIFY(bar.item("levelRing"));
    QTRY_COMPARE(bar.item("levelRing")->property("level").toDouble(), 1.0);
    QTRY_VERIFY(button->opacity() < 1.0);

    bar.click(button);
    QTRY_COMPARE(placeholder(), text("Transcribing..."));
    QCOMPARE(button->opacity(), 1.0);
    QTRY_COMPARE(runningIn(button), QStringList(text("0 to 360, 1000 Linear")));
    WhisperStandIn::letGo();
    QTRY_COMPARE(bar.property("inputField.text").toString(), text("Open the Dolphin"));
    QTRY_COMPARE(colourOf(backgroundOf(button)), rgba(1, 1, 1, 0.06));
    QTRY_COMPARE(runningIn(button), QStringList());

    bar.key(Qt::Key_Return);
    QCOMPARE(bar.bridge.takeRequest(text("chat")).params.value(text("message")).toString(), text("Open the Dolphin"));
}

void tst_OmniBarVoiceBridge::holdDiscardsTheUtterance()
{
    const WhisperModelFile model;
    ScriptedMicrophone microphone(ScriptedMicrophone::Afterwards::Talks);
    OmniBarFixture bar;
    VoiceBridge *voice = provide(bar, VoiceFixture::parts(microphone));
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    bar.type("typed");
    QQuickItem *button = bar.item("micBtn");
    bar.click(button);
    QTRY_VERIFY(microphone.chunksRead() > 3);

    const QPoint middle = bar.place(button).center().toPoint();
    QTest::mousePress(bar.window(), Qt::LeftButton, {}, middle);
    QTRY_VERIFY(!voice->isListening());
    QTest::mouseRelease(bar.window(), Qt::LeftButton, {}, middle);
    QVERIFY(!voice->isListening());
    // The end of the discarded capture is only logged.
    QTRY_COMPARE(bar.log.count(s_warning + text("No speech detected")), 1);
    bar.expectWarning(s_warning + text("No speech detected"));
    QVERIFY(!voice->isTranscribing());
    // Listening begins with an empty input.
    QCOMPARE(bar.property("inputField.text").toString(), QString());
    QTRY_COMPARE(runningIn(button), QStringList());
    QVERIFY(!WhisperStandIn::calls().contains(text("full begins")));
}

void tst_OmniBarVoiceBridge::withoutAModel()
{
    ScriptedMicrophone microphone;
    OmniBarFixture bar;
    VoiceBridge *voice = provide(bar, VoiceFixture::parts(microphone));
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    bar.expectWarning(s_warning);
    bar.click("micBtn");
    QCOMPARE(bar.log.count(s_warning), 1);
    QVERIFY(!voice->isListening());
    QTRY_COMPARE(runningIn(bar.item("micBtn")), QStringList());
    QVERIFY(!bar.isSeen(bar.item("speakerBtn")));
}

void tst_OmniBarVoiceBridge::withoutAMicrophone()
{
    const WhisperModelFile model;
    VoiceParts parts;
    parts.openMicrophone = [](QString *reason) {
        *reason = text("No such %1 entity");
        return std::unique_ptr<Microphone>();
    };
    OmniBarFixture bar;
    VoiceBridge *voice = provide(bar, std::move(parts));
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    QQuickItem *button = bar.item("micBtn");
    const QString warning = s_warning + text("Cannot open microphone: No such %1 entity");
    bar.expectWarning(warning);
    bar.click(button);
    QCOMPARE(bar.log.count(warning), 1);
    // It listens until the user cancels.
    QVERIFY(voice->isListening());
    bar.click(button);
    QVERIFY(voice->isListening());
    QVERIFY(QMetaObject::invokeMethod(button, "pressAndHold"));
    QVERIFY(!voice->isListening());
    QTRY_COMPARE(runningIn(button), QStringList());
}

void tst_OmniBarVoiceBridge::repliesAreReadAloud()
{
    FakePath path;
    path.add(text("piper"), "exec cat >>\"" + QFile::encodeName(path.filePath(text("heard"))) + "\"\n");
    path.add(text("paplay"), "exec sleep 600\n");
    const QString voices = QDir::homePath() + text("/.local/share/piper/voices");
    QVERIFY(QDir().mkpath(voices));
    QFile model(voices + text("/en_US-lessac-medium.onnx"));
    QVERIFY(model.open(QIODevice::WriteOnly));
    model.close();

    ScriptedMicrophone microphone;
    Conversation bar;
    VoiceBridge *voice = provide(bar, VoiceFixture::parts(microphone));
    QVERIFY(bar.begin());
    QVERIFY(bar.settle());
    QQuickItem *button = bar.item("speakerBtn");
    QVERIFY(bar.isSeen(button));
    QVERIFY(bar.exchange(text("a"), text("Nobody hears this.")));
    QVERIFY(bar.settle());
    bar.click(button);
    QCOMPARE(QSettings().value(text("voice/ttsEnabled")).toBool(), true);
    QVERIFY(bar.exchange(text("b"), text("It is **open**.")));
    QVERIFY(voice->isSpeaking());
    const auto heard = [&] {
        QFile file(path.filePath(text("heard")));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QTRY_COMPARE(heard(), QByteArray("It is open."));
    QTRY_VERIFY(button->opacity() < 1.0);

    bar.click(button);
    QVERIFY(!voice->isSpeaking());
    QVERIFY(voice->ttsEnabled());
    QCOMPARE(button->opacity(), 1.0);
    QTRY_COMPARE(runningIn(button), QStringList());
    QVERIFY(model.remove());
}

REGISTER_TEST(tst_OmniBarVoiceBridge, QGuiApplication)

#include "tst_OmniBarVoiceBridge.moc"
