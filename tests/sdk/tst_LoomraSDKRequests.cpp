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

// Every operation as a frame, and all forms of its reply.
class tst_LoomraSDKRequests : public ConnectedSdkTest
{
    Q_OBJECT

private Q_SLOTS:
    void tableIsComplete();
    void sends_data() { operations(); }
    void sends();
    void refusesWhileNotReady_data() { operations(); }
    void refusesWhileNotReady();
    void handlesAResponse_data() { operations(); }
    void handlesAResponse();
    void handlesTheOlderForm_data() { operations(); }
    void handlesTheOlderForm();
    void handlesAWrongType_data() { operations(); }
    void handlesAWrongType();
    void fails_data() { operations(); }
    void fails();
    void handlesALateReply_data() { operations(); }
    void handlesALateReply();

private:
    void operations();
    //! Calls the operation and takes its request from the peer.
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
    operation.call(fixture->sdk);
    const ScriptedBridge::Request request = fixture->peer.takeRequest(QLatin1String(operation.method));
    fixture->emitted.take();
    return request;
}

void tst_LoomraSDKRequests::takeNext(const SdkOperation &operation)
{
    for (const QString &method : operation.next) {
        fixture->peer.takeRequest(method);
    }
}

//! Fails when an invokable is missing in the table.
void tst_LoomraSDKRequests::tableIsComplete()
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
    operation->call(fixture->sdk);
    const ScriptedBridge::Request request = fixture->peer.takeRequest();
    QCOMPARE(request.text, frameOf(*operation, 3)); // the handshake sent two requests
    operation->call(fixture->sdk);
    QCOMPARE(fixture->peer.takeRequest().text, frameOf(*operation, 4));
    QCOMPARE(fixture->emitted.take(), QStringList());
}

void tst_LoomraSDKRequests::refusesWhileNotReady()
{
    QFETCH(const SdkOperation *, operation);
    QVERIFY(fixture->lose());
    QVERIFY(fixture->connect()); // connected, but not ready
    fixture->emitted.take();
    operation->call(fixture->sdk);

    // Most operations report the same error, some a specific one, and some none.
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
    QCOMPARE(fixture->emitted.take(),
             isSilent ? QStringList() : QStringList(QStringLiteral("error(\"%1\")").arg(refusal)));
    // Nothing was queued.
    QVERIFY(fixture->becomeReady());
    QVERIFY(fixture->peer.isAllTaken());
}

void tst_LoomraSDKRequests::handlesAResponse()
{
    QFETCH(const SdkOperation *, operation);
    const ScriptedBridge::Request request = call(*operation);
    const QString result = QString::fromUtf8(operation->result);
    QVERIFY(fixture->deliverReply(request.id, result));
    QCOMPARE(fixture->emitted.take(), operation->emitted);
    takeNext(*operation);
    // A duplicate is ignored.
    QVERIFY(fixture->deliverReply(request.id, result));
    QCOMPARE(fixture->emitted.take(), QStringList());
}

void tst_LoomraSDKRequests::handlesTheOlderForm()
{
    QFETCH(const SdkOperation *, operation);
    const ScriptedBridge::Request request = call(*operation);
    // In the older form an error that is no text is ignored.
    QVERIFY(fixture->deliver(QStringLiteral(R"({"id":%1,"result":%2,"error":{"message":"x"},"payload":{"not":"this"}})")
                                 .arg(QString::number(request.id), QString::fromUtf8(operation->result))));
    QCOMPARE(fixture->emitted.take(), operation->emitted);
    takeNext(*operation);
}

void tst_LoomraSDKRequests::handlesAWrongType()
{
    QFETCH(const SdkOperation *, operation);
    const ScriptedBridge::Request request = call(*operation);
    QVERIFY(fixture->deliver(
        QStringLiteral(R"({"type":"response","id":%1,"payload":["x"],"error":"not an error"})").arg(request.id)));
    QCOMPARE(fixture->emitted.take(), operation->emittedForWrongType);
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
        {R"({"type":"error","id":%1,"error":"broken"})", ""}, // not an object: the request ends silently
    };
    for (const auto &[form, words] : forms) {
        const ScriptedBridge::Request request = call(*operation);
        const QString frame = QString::fromUtf8(form).replace(QLatin1String("%1"), QString::number(request.id));
        QVERIFY(fixture->deliver(QString(frame).replace(QLatin1String("%2"), QString::fromUtf8(operation->result))));
        const QStringList expected =
            *words ? QStringList(QStringLiteral("error(\"%1\")").arg(QLatin1String(words))) : QStringList();
        QCOMPARE(fixture->emitted.take(), expected);
        // The request has ended, so a later reply is ignored.
        QVERIFY(fixture->deliverReply(request.id, QStringLiteral("{}")));
        QCOMPARE(fixture->emitted.take(), QStringList());
    }
}

//! A request stays open when the connection is lost.
void tst_LoomraSDKRequests::handlesALateReply()
{
    QFETCH(const SdkOperation *, operation);
    const ScriptedBridge::Request request = call(*operation);
    QVERIFY(fixture->lose());
    QVERIFY(fixture->connect());
    QVERIFY(fixture->becomeReady());
    fixture->emitted.take();
    fixture->peer.reply(request.id, json(operation->result));
    QTRY_VERIFY(fixture->emitted.entries().size() >= operation->emitted.size());
    takeNext(*operation);
    if (operation->emitted.isEmpty() && operation->next.isEmpty()) {
        QVERIFY(fixture->deliver(QStringLiteral("{}")));
    }
    QCOMPARE(fixture->emitted.take(), operation->emitted);
}

REGISTER_TEST(tst_LoomraSDKRequests, QCoreApplication)

#include "tst_LoomraSDKRequests.moc"
