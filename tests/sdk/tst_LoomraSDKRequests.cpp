// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "ConnectedSdk.h"
#include "Json.h"
#include "SdkOperations.h"
#include "TestRegistry.h"

#include <QSet>
#include <QTest>

Q_DECLARE_METATYPE(const SdkOperation *)

namespace
{

//! The frame of a request, byte for byte.
QString frameOf(const SdkOperation &operation, quint64 id)
{
    return QStringLiteral(R"({"id":%1,"method":"%2","params":%3})")
        .arg(QString::number(id), QLatin1String(operation.method), QString::fromUtf8(operation.params));
}

} // namespace

// Every operation on the wire, and every form that its reply can take.
class tst_LoomraSDKRequests : public ConnectedSdkTest
{
    Q_OBJECT

private Q_SLOTS:
    void tableIsWhole();
    void sends_data() { operations(); }
    void sends();
    void refusesWhileNotReady_data() { operations(); }
    void refusesWhileNotReady();
    void takesAResponse_data() { operations(); }
    void takesAResponse();
    void takesTheOlderForm_data() { operations(); }
    void takesTheOlderForm();
    void takesAWrongKind_data() { operations(); }
    void takesAWrongKind();
    void fails_data() { operations(); }
    void fails();
    void takesALateReply_data() { operations(); }
    void takesALateReply();

private:
    void operations();
    //! Calls it and takes its request from the peer.
    ScriptedBridge::Request call(const SdkOperation &operation);
    void takeNext(const SdkOperation &operation);
};

void tst_LoomraSDKRequests::operations()
{
    QTest::addColumn<const SdkOperation *>("operation");
    for (const SdkOperation &operation : sdkOperations()) {
        QTest::newRow(operation.name) << &operation;
    }
}

ScriptedBridge::Request tst_LoomraSDKRequests::call(const SdkOperation &operation)
{
    operation.call(c->sdk);
    const ScriptedBridge::Request request = c->peer.takeRequest(QLatin1String(operation.method));
    c->heard.take();
    return request;
}

void tst_LoomraSDKRequests::takeNext(const SdkOperation &operation)
{
    for (const QString &method : operation.next) {
        c->peer.takeRequest(method);
    }
}

//! What QML can call is in the table; who adds an operation adds its row.
void tst_LoomraSDKRequests::tableIsWhole()
{
    QSet<QString> called {QStringLiteral("initialize"), QStringLiteral("reconnectBridge"),
                          QStringLiteral("eventLogDir")};
    for (const SdkOperation &operation : sdkOperations()) {
        called.insert(QString::fromLatin1(operation.name).section(QLatin1Char(','), 0, 0));
    }
    const QMetaObject &type = LoomraSDK::staticMetaObject;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (method.methodType() == QMetaMethod::Method) {
            QVERIFY2(called.contains(QString::fromLatin1(method.name())), method.name().constData());
        }
    }
}

void tst_LoomraSDKRequests::sends()
{
    QFETCH(const SdkOperation *, operation);
    operation->call(c->sdk);
    const ScriptedBridge::Request request = c->peer.takeRequest();
    QCOMPARE(request.text, frameOf(*operation, 3)); // after the two of the handshake
    operation->call(c->sdk);
    QCOMPARE(c->peer.takeRequest().text, frameOf(*operation, 4));
    QCOMPARE(c->heard.take(), QStringList());
}

void tst_LoomraSDKRequests::refusesWhileNotReady()
{
    QFETCH(const SdkOperation *, operation);
    QVERIFY(c->lose());
    QVERIFY(c->connect()); // connected, but not ready
    c->heard.take();
    operation->call(c->sdk);

    // What can't be asked for is refused, told in words of its own, or nobody's business.
    const QString name = QString::fromLatin1(operation->name).section(QLatin1Char(','), 0, 0);
    const bool isRefresh = name.startsWith(QLatin1String("refresh")) && name != QLatin1String("refreshPowerProfile");
    const bool isSilent = isRefresh || name == QLatin1String("applyWorkspaceSuggestionAction");
    const QHash<QString, QString> words {
        {QStringLiteral("checkFreeProviders"), QStringLiteral("SDK not ready — connect first")},
        {QStringLiteral("setWorkspaceIntelObservationEnabled"),
         QStringLiteral("Workspace intelligence is not available.")},
        {QStringLiteral("setWorkspaceTemplateEnabled"), QStringLiteral("Workspace intelligence is not available.")},
        {QStringLiteral("prepareWorkspaceTemplate"), QStringLiteral("Workspace intelligence is not available.")},
        {QStringLiteral("setAiRuntimeEnabled"), QStringLiteral("AI runtime is not available.")},
        {QStringLiteral("setAiRuntimeExecutionGating"), QStringLiteral("AI runtime is not available.")},
        {QStringLiteral("clearAiRuntimeDismissedSuggestions"),
         QStringLiteral("SDK not ready or AI runtime unavailable.")},
    };
    const QString refusal = words.value(name, QStringLiteral("SDK not ready. Please wait for initialization."));
    QCOMPARE(c->heard.take(), isSilent ? QStringList() : QStringList(QStringLiteral("error(\"%1\")").arg(refusal)));
    // Nothing was kept back to be sent later.
    QVERIFY(c->becomeReady());
    QVERIFY(c->peer.isAllTaken());
}

void tst_LoomraSDKRequests::takesAResponse()
{
    QFETCH(const SdkOperation *, operation);
    const ScriptedBridge::Request request = call(*operation);
    const QString result = QString::fromUtf8(operation->result);
    QVERIFY(c->deliverReply(request.id, result));
    QCOMPARE(c->heard.take(), operation->heard);
    takeNext(*operation);
    // A second one finds nothing.
    QVERIFY(c->deliverReply(request.id, result));
    QCOMPARE(c->heard.take(), QStringList());
}

void tst_LoomraSDKRequests::takesTheOlderForm()
{
    QFETCH(const SdkOperation *, operation);
    const ScriptedBridge::Request request = call(*operation);
    // An error that is no text is none here.
    QVERIFY(c->deliver(QStringLiteral(R"({"id":%1,"result":%2,"error":{"message":"x"},"payload":{"not":"this"}})")
                           .arg(QString::number(request.id), QString::fromUtf8(operation->result))));
    QCOMPARE(c->heard.take(), operation->heard);
    takeNext(*operation);
}

void tst_LoomraSDKRequests::takesAWrongKind()
{
    QFETCH(const SdkOperation *, operation);
    const ScriptedBridge::Request request = call(*operation);
    QVERIFY(c->deliver(
        QStringLiteral(R"({"type":"response","id":%1,"payload":["x"],"error":"not an error"})").arg(request.id)));
    QCOMPARE(c->heard.take(), operation->heardOfWrongKind);
    takeNext(*operation);
}

void tst_LoomraSDKRequests::fails()
{
    QFETCH(const SdkOperation *, operation);
    const QPair<const char *, const char *> forms[] = {
        {R"({"type":"response","id":%1,"payload":%2,"error":{"message":"broken","code":"E1"}})", "broken"},
        {R"({"type":"response","id":%1,"payload":%2,"error":{"message":"","code":"E1"}})", "E1"},
        {R"({"id":%1,"result":%2,"error":"broken"})", "broken"},
        {R"({"type":"error","id":%1,"error":{"message":"broken","code":"E1"}})", "broken"},
        {R"({"type":"error","id":%1,"error":{"code":"E1"}})", "E1"},
        {R"({"type":"error","id":%1,"error":"broken"})", ""}, // no object: cleared without a word
    };
    for (const auto &[form, words] : forms) {
        const ScriptedBridge::Request request = call(*operation);
        const QString frame = QString::fromUtf8(form).replace(QLatin1String("%1"), QString::number(request.id));
        QVERIFY(c->deliver(QString(frame).replace(QLatin1String("%2"), QString::fromUtf8(operation->result))));
        const QStringList expected =
            *words ? QStringList(QStringLiteral("error(\"%1\")").arg(QLatin1String(words))) : QStringList();
        QCOMPARE(c->heard.take(), expected);
        // It is over: a reply that comes nevertheless finds nothing.
        QVERIFY(c->deliverReply(request.id, QStringLiteral("{}")));
        QCOMPARE(c->heard.take(), QStringList());
    }
}

//! A request that was open when the connection dropped is open still.
void tst_LoomraSDKRequests::takesALateReply()
{
    QFETCH(const SdkOperation *, operation);
    const ScriptedBridge::Request request = call(*operation);
    QVERIFY(c->lose());
    QVERIFY(c->connect());
    QVERIFY(c->becomeReady());
    c->heard.take();
    c->peer.reply(request.id, json(operation->result));
    QTRY_VERIFY(c->heard.entries().size() >= operation->heard.size());
    takeNext(*operation);
    if (operation->heard.isEmpty() && operation->next.isEmpty()) {
        QVERIFY(c->deliver(QStringLiteral("{}")));
    }
    QCOMPARE(c->heard.take(), operation->heard);
}

REGISTER_TEST(tst_LoomraSDKRequests, QCoreApplication)

#include "tst_LoomraSDKRequests.moc"
