// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridge.h"
#include "Looks.h"
#include "OmniBarFixture.h"
#include "TestRegistry.h"

#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QPointer>
#include <QQmlComponent>
#include <QTest>

namespace
{

const char *s_sdk = R"(FakeSdk {
    workspaceIntelAvailable: true
    aiRuntimeAvailable: true
    function initialize() { note("initialize", []) }
})";

//! The usable buttons, except those that close or minimise the window.
QList<QPointer<QQuickItem>> buttonsOf(OmniBarFixture &bar)
{
    const auto items = bar.itemsWhere(bar.window()->contentItem(), [](QQuickItem *item) {
        return item->inherits("QQuickAbstractButton") && OmniBarFixture::isSeen(item) && item->isEnabled()
            && !item->objectName().toLower().endsWith(QStringLiteral("closebtn"))
            && item->objectName() != QStringLiteral("minimiseBtn");
    });
    return {items.cbegin(), items.cend()};
}

//! A type that a qmldir of the resource tree lists.
struct ListedType
{
    QString name;
    QString file;
};

QList<ListedType> typesOf(const QString &directory)
{
    QFile file(directory + QStringLiteral("/qmldir"));
    QList<ListedType> types;
    if (!file.open(QIODevice::ReadOnly)) {
        return types;
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QStringList words = line.simplified().split(QLatin1Char(' '));
        if (words.size() == 3 && words.at(2).endsWith(QStringLiteral(".qml"))) {
            types.append({words.at(0), directory + QLatin1Char('/') + words.at(2)});
        }
    }
    return types;
}

} // namespace

//! The window with, without and with replaced native objects.
class tst_OmniBarObjects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doesWithout_data();
    void doesWithout();
    void withoutABridge();
    void asksTheBridgeClientAtStart_data();
    void asksTheBridgeClientAtStart();
    void takesItsObjectsFromTheContext();
    void seesTheRealClient();
    void doesWithoutTheRealClient();
    void textsAreTranslated();
    void thinRoot();
    void everyListedTypeCanBeMade_data();
    void everyListedTypeCanBeMade();
};

void tst_OmniBarObjects::doesWithout_data()
{
    QTest::addColumn<QString>("missing");

    // The window uses these; each needs its row.
    const QStringList names = OmniBarFixture::contextNames();
    for (const char *name : {"i18n", "configManager", "loomraSDK", "agentBridge", "voiceBridge"}) {
        QVERIFY2(names.contains(text(name)), name);
    }
    QTest::newRow("nothing missing") << text("nothing");
    for (const QString &name : names) {
        QTest::newRow(qPrintable(name)) << name;
    }
    QTest::newRow("all missing") << QString();
}

void tst_OmniBarObjects::doesWithout()
{
    QFETCH(QString, missing);

    OmniBarFixture bar;
    bar.omit(missing);
    bar.expectWarning("[OmniBar] voice: "); // the test clicks the microphone without a speech model
    QVERIFY(bar.open());
    QVERIFY(bar.settle());

    // Typing, Enter, Escape.
    bar.type("hello");
    QCOMPARE(bar.property("inputField.text").toString(), text("hello"));
    bar.key(Qt::Key_Return);
    QCOMPARE(bar.property("inputField.text").toString(), QString());
    QCOMPARE(bar.property("chatModel.count").toInt(), 1);
    if (bar.agent()) {
        bar.bridge.reply(bar.bridge.takeRequest(text("chat")), QJsonObject {{text("response"), text("hi")}});
        QTRY_COMPARE(bar.property("chatModel.count").toInt(), 2);
    } else {
        bar.invoke("appendAgentMessage", {text("hi")});
    }
    QTRY_VERIFY(bar.item("chatPanel"));
    QVERIFY(bar.settle());
    bar.key(Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(bar.property("chatModel.count").toInt(), 0);
    bar.invoke("appendUserMessage", {text("hello")});
    bar.invoke("appendAgentMessage", {text("hi")});
    bar.key(Qt::Key_Escape);
    QCOMPARE(bar.property("compactMode").toBool(), true);
    QVERIFY(bar.settle());
    bar.click("compactBubble");
    QVERIFY(bar.settle());
    QCOMPARE(bar.property("compactMode").toBool(), false);

    // Everything that can be clicked, with the conversation and with the settings.
    QSet<QString> clicked;
    for (int round = 0; round < 2; ++round) {
        bar.setProperty("settingsPanelOpen", round == 1);
        QVERIFY(bar.settle());
        const QList<QPointer<QQuickItem>> buttons = buttonsOf(bar);
        for (const QPointer<QQuickItem> &button : buttons) {
            if (!button) {
                continue; // another click removed it
            }
            QVERIFY(QMetaObject::invokeMethod(button, "clicked"));
            clicked.insert(button->objectName());
        }
        QVERIFY(bar.settle());
    }
    for (const char *name : {"settingsBtn", "micBtn", "expandBtn", "copyBtn", "thumbUpBtn", "thumbDownBtn",
                             "suggestionCard", "darkSegment", "lightSegment", "transparencySwitch"}) {
        QVERIFY2(clicked.contains(text(name)), name);
    }
    bar.click("barCloseBtn");
    QTRY_VERIFY(!bar.window()->isVisible());
    QCOMPARE(bar.takeWarnings(), QStringList());
}

void tst_OmniBarObjects::withoutABridge()
{
    // Without a bridge the client reports an error, and the window stays usable.
    OmniBarFixture bar;
    bar.bridge.close();
    bar.expectWarning("[AgentBridge] WebSocket error: \"Connection refused\"");
    QVERIFY(bar.open());
    QTRY_COMPARE(bar.property("bridgeStatus").toString(), text("error"));
    bar.type("hello");
    bar.key(Qt::Key_Return);
    QCOMPARE(bar.property("chatModel.count").toInt(), 2);
    QCOMPARE(bar.evaluate("chatModel.get(1).text").toString(),
             text("Error: Loomra bridge not connected (ws://127.0.0.1:8765/ws)"));
    // The bridge starts.
    QVERIFY(bar.bridge.listen());
    QTRY_COMPARE_WITH_TIMEOUT(bar.property("bridgeStatus").toString(), text("idle"), OmniBarFixture::ReconnectTimeout);
}

void tst_OmniBarObjects::asksTheBridgeClientAtStart_data()
{
    QTest::addColumn<bool>("ready");
    QTest::addColumn<bool>("intel");
    QTest::addColumn<QStringList>("calls");

    QTest::newRow("ready") << true << true << QStringList({text("listModels()"), text("refreshWorkspaceTemplates()")});
    QTest::newRow("without workspace intelligence") << true << false << QStringList(text("listModels()"));
    QTest::newRow("not ready") << false << true << QStringList();
    QTest::newRow("nothing") << false << false << QStringList();
}

void tst_OmniBarObjects::asksTheBridgeClientAtStart()
{
    QFETCH(bool, ready);
    QFETCH(bool, intel);
    QFETCH(QStringList, calls);

    OmniBarFixture bar;
    QObject *sdk = bar.fake(s_sdk);
    sdk->setProperty("ready", ready);
    sdk->setProperty("workspaceIntelAvailable", intel);
    bar.provide("loomraSDK", sdk);
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    // It never calls initialize(), which the program does before.
    QCOMPARE(sdk->property("calls").toStringList(), calls);
    QCOMPARE(bar.property("modelsLoading").toBool(), ready);
}

void tst_OmniBarObjects::takesItsObjectsFromTheContext()
{
    OmniBarFixture bar;
    QObject *sdk = bar.fake(s_sdk);
    bar.provide("loomraSDK", sdk);
    QVERIFY(bar.open());
    QCOMPARE(bar.property("bridge").value<QObject *>(), static_cast<QObject *>(bar.agent()));
    QCOMPARE(bar.property("sdk").value<QObject *>(), sdk);
}

void tst_OmniBarObjects::seesTheRealClient()
{
    // It isn't initialised, so it has no connection and gets no request.
    OmniBarFixture bar;
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    auto *sdk = bar.property("sdk").value<QObject *>();
    QVERIFY(sdk);
    QCOMPARE(QByteArray(sdk->metaObject()->className()), QByteArray("LoomraSDK"));
    QCOMPARE(bar.evaluate("sdk.ready"), QVariant(false));
    QCOMPARE(bar.evaluate("sdk.currentModel"), QVariant(text("default")));
    QCOMPARE(bar.evaluate("sdk.workspaceSuggestionReminderMinutes"), QVariant(5));
    QCOMPARE(bar.property("modelsLoading").toBool(), false);

    // Operations with JavaScript arguments, and signals.
    bar.evaluate("(function() { omniBar.sdk.error.connect(function(text) { omniBar.title = text; }); })()");
    bar.evaluate("omniBar.sdk.auditListRecent()");
    QCOMPARE(bar.property("title").toString(), text("SDK not ready. Please wait for initialization."));
    bar.evaluate("omniBar.sdk.executePlan([])");
    QVERIFY(bar.property("title").toString() != text("SDK not ready. Please wait for initialization."));
    bar.evaluate("omniBar.sdk.automationCreate({ type: 'time' }, [{ capabilityId: 'x' }])");
    QCOMPARE(bar.property("title").toString(), text("SDK not ready. Please wait for initialization."));
    // Signals reach the handlers of the window.
    QVERIFY(QMetaObject::invokeMethod(sdk, "readyChanged"));
    QVERIFY(QMetaObject::invokeMethod(sdk, "modelsListed", Q_ARG(QJsonArray, QJsonArray())));
    QVERIFY(bar.settle());
}

void tst_OmniBarObjects::doesWithoutTheRealClient()
{
    OmniBarFixture bar;
    bar.omit("loomraSDK");
    QVERIFY(bar.open());
    QVERIFY(bar.settle());
    QCOMPARE(bar.evaluate("sdk === null"), QVariant(true));
    QCOMPARE(bar.property("modelsLoading").toBool(), false);
    QCOMPARE(bar.property("bridge").value<QObject *>(), static_cast<QObject *>(bar.agent()));
}

void tst_OmniBarObjects::textsAreTranslated()
{
    OmniBarFixture bar;
    bar.provide("i18n",
                bar.fake("QtObject { function tr(text) { if (text === '') throw 'empty'; return '«' + text + '»' } }"));
    QVERIFY(bar.open());
    bar.invoke("appendUserMessage", {text("hello")});
    bar.setProperty("settingsPanelOpen", true);
    QTRY_VERIFY(bar.item("chatPanel"));
    QVERIFY(bar.settle());
    QCOMPARE(bar.property("inputField.placeholderText").toString(), text("«Ask Tovi anything…»"));
    QCOMPARE(bar.item("keyHint")->property("text").toString(),
             text("«<b>Esc</b> to minimize · Type <b>/</b> for commands»"));
    QCOMPARE(bar.item("connectionDot")->property("look").toMap().value(text("tip")).toString(), text("«Connected»"));
    QCOMPARE(bar.item("transparencySwitch")->property("label").toString(), text("«Background transparency»"));
    QCOMPARE(bar.item("closeBtn")->property("label").toString(), text("«Close Tovi»"));
}

void tst_OmniBarObjects::thinRoot()
{
    // A window inside an item is shown once the item is in a visible window.
    QQuickWindow host;
    host.resize(200, 200);
    host.show();
    OmniBarFixture bar;
    auto *root = qobject_cast<QQuickItem *>(bar.load(text("main.qml")));
    QVERIFY(root);
    QVERIFY(root->inherits("QQuickLoader"));
    root->setParentItem(host.contentItem());
    auto *window = root->property("item").value<QQuickWindow *>();
    QVERIFY(window);
    QCOMPARE(window->objectName(), text("omniBar"));
    QCOMPARE(window->property("bridge").value<QObject *>(), static_cast<QObject *>(bar.agent()));
    QVERIFY(QTest::qWaitForWindowActive(window));
    QTRY_VERIFY(window->property("firstFrameShown").toBool());
}

void tst_OmniBarObjects::everyListedTypeCanBeMade_data()
{
    QTest::addColumn<QString>("module");
    QTest::addColumn<QString>("name");

    for (const ListedType &type : typesOf(text(":/org/kde/loomra"))) {
        QTest::newRow(qPrintable(type.name)) << text("import org.kde.loomra 1.0") << type.name;
    }
    for (const ListedType &type : typesOf(text(":/org/kde/loomra/contents/ui/omnibar"))) {
        QTest::newRow(qPrintable(type.name)) << text("import 'omnibar' 1.0") << type.name;
    }
}

void tst_OmniBarObjects::everyListedTypeCanBeMade()
{
    QFETCH(QString, module);
    QFETCH(QString, name);

    // The required properties of parts of the window; the other types have none.
    OmniBarFixture bar;
    bar.expectWarning("Failed to find a Kirigami platform plugin"); // which comes with the desktop's style
    QVERIFY(bar.open());
    const QHash<QString, QVariantMap> given = {
        {text("OmniBarSettingsPanel"),
         {{text("bar"), QVariant::fromValue(bar.window())},
          {text("theme"), bar.evaluate("omniTheme")},
          {text("barCardItem"), QVariant::fromValue(bar.item("barCard"))}}},
        {text("VoiceTestPanel"),
         {{text("bar"), QVariant::fromValue(bar.window())},
          {text("theme"), bar.evaluate("omniTheme")},
          {text("active"), false}}},
    };
    // As a file of contents/ui would.
    QQmlComponent component(bar.engine());
    component.setData(QStringLiteral("import QtQuick 2.15\n%1\n%2 {}").arg(module, name).toUtf8(),
                      QUrl(text("qrc:/org/kde/loomra/contents/ui/Probe.qml")));
    const std::unique_ptr<QObject> object(component.createWithInitialProperties(given.value(name)));
    QVERIFY2(object, qPrintable(component.errorString()));
}

REGISTER_TEST(tst_OmniBarObjects, QGuiApplication)

#include "tst_OmniBarObjects.moc"
