// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "AgentBridge.h"
#include "Application.h"
#include "ChatModel.h"
#include "ConfigManager.h"
#include "FakePath.h"
#include "Files.h"
#include "Json.h"
#include "LoomraSDK.h"
#include "MessageLog.h"
#include "NativeObjects.h"
#include "ScriptedBridge.h"
#include "SearchRoots.h"
#include "SttBackends.h"
#include "TestRegistry.h"
#include "TestSetup.h"
#include "VoiceBridge.h"
#include "WaitUntil.h"

#include <QDirIterator>
#include <QGuiApplication>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

#include <unistd.h>

namespace
{

constexpr int s_shown = 500; // characters

//! The functions of QmlValues.js.
struct Script
{
    explicit Script(QQmlEngine &engine)
        : functions(engine.evaluate(QString::fromUtf8(
            contentOf(qEnvironmentVariable("TOVICTL_SOURCE_DIR") + QStringLiteral("/tests/application/QmlValues.js")))))
    {
    }
    QJSValue function(const char *name) const { return functions.property(QLatin1String(name)); }

    const QJSValue functions;
};

//! A member of a native object, as QML may use it.
struct Member
{
    QString object; //!< the type name
    QString name;
    QList<int> parameters; //!< the types; of the overload that has most. Of a property its type.
    bool isProperty = false;
};

//! Everything that QML can call or write, including what is inherited from a base class other than QObject.
QList<Member> membersOf(const QMetaObject &type)
{
    QList<Member> members;
    const QString object = QString::fromLatin1(type.className());
    for (int i = QObject::staticMetaObject.propertyCount(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        if (property.isWritable()) {
            members.append({object, QString::fromLatin1(property.name()), {property.userType()}, true});
        }
    }
    QMap<QString, Member> methods;
    for (int i = QObject::staticMetaObject.methodCount(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        const bool isInheritedSignal = method.methodType() == QMetaMethod::Signal && i < type.methodOffset();
        if (method.access() == QMetaMethod::Private || isInheritedSignal) {
            continue;
        }
        const QString name = QString::fromLatin1(method.name());
        Member &member = methods[name];
        if (member.name.isEmpty() || method.parameterCount() > member.parameters.size()) {
            member = {object, name, {}, false};
            for (int parameter = 0; parameter < method.parameterCount(); ++parameter) {
                member.parameters.append(method.parameterType(parameter));
            }
        }
    }
    return members + methods.values();
}

//! The native objects as the program makes them, connected to a scripted bridge.
class Natives
{
public:
    Natives();
    //! Makes both clients ready for requests.
    bool connect();
    bool isReady() const { return sdk->isReady() && agent->isServiceAvailable(); }
    //! By type name.
    QObject *object(const QString &type) const;
    QObjectList objects() const;

    MessageLog log; // first, to catch every message
    ScriptedBridge bridge;
    QObject parent; // outlives the engine, as in the program
    QQmlEngine engine;
    LoomraSDK *const sdk;
    AgentBridge *const agent;
    VoiceBridge *const voice;
    ConfigManager *const config;

private:
    //! Those that QML makes.
    QList<QObject *> m_made;
};

Natives::Natives()
    : sdk(NativeObjects::create(&parent, &engine))
    , agent(parent.findChild<AgentBridge *>())
    , voice(parent.findChild<VoiceBridge *>())
    , config(parent.findChild<ConfigManager *>())
{
    engine.addImportPath(QStringLiteral("qrc:/"));
    sdk->setConnectOnly(true);
    for (const char *type : {"ChatModel", "FileCheck", "ProjectModel"}) {
        QQmlComponent component(&engine);
        component.setData(QByteArray("import org.kde.loomra 1.0\n") + type + " {}", QUrl());
        QObject *object = component.create();
        if (!object) {
            qFatal("%s", qPrintable(component.errorString()));
        }
        object->setParent(&engine);
        m_made.append(object);
    }
}

bool Natives::connect()
{
    sdk->reconnectBridge();
    if (!bridge.waitForConnection(2)
        || !waitUntil([this] { return sdk->isConnected() && agent->isServiceAvailable(); })) {
        return false;
    }
    bridge.ready();
    bridge.reply(bridge.takeRequest(QStringLiteral("getCapabilities")),
                 json(R"({"workspaceIntelligence":{"enabled":true},"aiRuntime":{"enabled":true}})"));
    return waitUntil([this] { return sdk->isAiRuntimeAvailable() && sdk->isWorkspaceIntelAvailable(); });
}

QObjectList Natives::objects() const
{
    return parent.children() + m_made;
}

QObject *Natives::object(const QString &type) const
{
    const QObjectList all = objects();
    const auto found = std::find_if(all.begin(), all.end(), [&type](const QObject *object) {
        return QLatin1String(object->metaObject()->className()) == type;
    });
    return found == all.end() ? nullptr : *found;
}

//! All files below a directory with their contents.
QMap<QString, QByteArray> filesBelow(const QString &directory)
{
    QMap<QString, QByteArray> files;
    QDirIterator walk(directory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString path = walk.next();
        files.insert(path, contentOf(path));
    }
    return files;
}

} // namespace

Q_DECLARE_METATYPE(Member)

//! Passes all kinds of values from a QML engine to every operation and writable property of every native object. They
//! are found by the meta-objects, so that new ones are included.
class tst_QmlValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void takes_data();
    void takes();

private:
    //! Passes the values to a member. @return the exceptions
    QStringList tryAll(const Member &member);
    //! An ordinary value of a type.
    QJSValue ordinary(int type);
    //! What is out of its range.
    QStringList badSettings() const;

    FakePath m_programs;
    //! The files of the user.
    const QTemporaryDir m_documents {QDir::homePath() + QStringLiteral("/documents-XXXXXX")};
    QMap<QString, QByteArray> m_before;
    std::unique_ptr<QTemporaryDir> m_directory; //!< the working directory
    std::unique_ptr<Natives> m_natives;
    QString m_object; //!< the type of the last row
    QModelIndex m_index; //!< of a row that may have gone
};

void tst_QmlValues::initTestCase()
{
    Application::describe();
    TestSetup::clearSettings();
    // A test that hangs ends with a message that names the row.
    std::signal(SIGALRM, [](int) { std::abort(); });

    // What would otherwise be refused because it is missing.
    m_programs.add(QStringLiteral("loomra"), "echo a/b");
    m_programs.add(QStringLiteral("paplay"), "exec cat > /dev/null");
    m_programs.add(QStringLiteral("piper"), "exec cat");
    QVERIFY(writeFile(SearchRoots::ofThisProcess().userModels() + QStringLiteral("/en_US-amy-medium.onnx"), "a voice"));
    QVERIFY(writeFile(m_documents.filePath(QStringLiteral("letter.txt")), "Dear reader"));
    m_before = filesBelow(m_documents.path());
}

void tst_QmlValues::init()
{
    alarm(100);
    QFETCH(Member, member);
    // New objects if those of the last row are of another type, or have lost their connection.
    if (!m_natives || m_object != member.object || !m_natives->isReady()) {
        m_natives.reset();
        m_natives = std::make_unique<Natives>();
        QVERIFY(m_natives->connect());
        m_natives->voice->setTtsEnabled(true);
        QVERIFY(m_natives->voice->ttsAvailable());
        auto *chat = qobject_cast<ChatModel *>(m_natives->object(QStringLiteral("ChatModel")));
        chat->addUserMessage(QStringLiteral("text"));
        m_index = chat->index(0);
    }
    m_object = member.object;

    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir::setCurrent(m_directory->path()));
    QVERIFY(writeFile(QStringLiteral("a"), "text\n")); // the path that ordinary() returns
    QVERIFY(writeFile(QStringLiteral("notes/plan.txt"), "A plan"));
}

void tst_QmlValues::cleanup()
{
    QDir::setCurrent(QDir::homePath());
    alarm(0);
}

void tst_QmlValues::cleanupTestCase()
{
    m_natives.reset();
}

void tst_QmlValues::takes_data()
{
    QTest::addColumn<Member>("member");
    const Natives natives;
    for (const QObject *object : natives.objects()) {
        for (const Member &member : membersOf(*object->metaObject())) {
            QTest::addRow("%s.%s", qPrintable(member.object), qPrintable(member.name)) << member;
        }
    }
}

QJSValue tst_QmlValues::ordinary(int type)
{
    QQmlEngine &engine = m_natives->engine;
    switch (type) {
    case QMetaType::QString:
        return QStringLiteral("a");
    case QMetaType::Bool:
        return true;
    case QMetaType::Int:
    case QMetaType::Double:
    case QMetaType::QVariant:
        return 1;
    case QMetaType::QJsonArray:
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        QJSValue list = engine.newArray(1);
        list.setProperty(0, engine.newObject());
        return list;
    }
    case QMetaType::QModelIndex:
        return engine.toScriptValue(m_index);
    default:
        return engine.newObject();
    }
}

QStringList tst_QmlValues::tryAll(const Member &member)
{
    QQmlEngine &engine = m_natives->engine;
    const Script script(engine);
    QJSValue call = script.function(member.isProperty ? "write" : "call");
    const QJSValue values = script.function("values").call({engine.newQObject(new QObject(&engine))});
    const QJSValue object = engine.newQObject(m_natives->object(member.object));

    QStringList errors;
    const auto pass = [&](const QJSValue &argument) {
        const QJSValue result = call.call({object, member.name, argument});
        errors.append(result.isError() ? QLatin1String("uncaught: ") + result.toString() : result.toString());
    };
    const int count = values.property(QStringLiteral("length")).toInt();
    if (member.isProperty) {
        for (int i = 0; i < count; ++i) {
            pass(values.property(i));
        }
        return errors;
    }
    const int parameters = member.parameters.size();
    const auto ordinaryArguments = [&](int size) {
        QJSValue arguments = engine.newArray(size);
        for (int i = 0; i < size; ++i) {
            arguments.setProperty(i, ordinary(member.parameters.value(i)));
        }
        return arguments;
    };
    // Too few and too many, each parameter alone, and all together.
    for (int size = 0; size <= parameters + 1; ++size) {
        pass(ordinaryArguments(size));
    }
    for (int i = 0; i < count && parameters > 0; ++i) {
        QJSValue all = engine.newArray(parameters);
        for (int parameter = 0; parameter < parameters; ++parameter) {
            QJSValue arguments = ordinaryArguments(parameters);
            arguments.setProperty(parameter, values.property(i));
            all.setProperty(parameter, values.property(i));
            pass(arguments);
        }
        if (parameters > 1) {
            pass(all);
        }
    }
    return errors;
}

QStringList tst_QmlValues::badSettings() const
{
    const VoiceBridge &voice = *m_natives->voice;
    const LoomraSDK &sdk = *m_natives->sdk;
    QStringList bad;
    const auto check = [&bad](const char *name, bool isGood) {
        if (!isGood) {
            bad.append(QString::fromLatin1(name));
        }
    };
    const auto isOneOf = [](const QString &value, const QStringList &words) { return words.contains(value); };
    check("silenceTimeoutMs", voice.silenceTimeoutMs() >= 200 && voice.silenceTimeoutMs() <= 5000);
    check("voiceConfirmDelaySec", voice.voiceConfirmDelaySec() >= 0 && voice.voiceConfirmDelaySec() <= 15);
    check("sttInputMode", isOneOf(voice.sttInputMode(), {QStringLiteral("live"), QStringLiteral("batch")}));
    check("voiceSubmitMode", isOneOf(voice.voiceSubmitMode(), {QStringLiteral("auto"), QStringLiteral("manual")}));
    check("liveSttEnabled", voice.liveSttEnabled() == (voice.sttInputMode() == QLatin1String("live")));
    check("sttBackend", voice.sttBackend() == SttBackends::normalized(voice.sttBackend()));
    check("reminderMinutes",
          sdk.workspaceSuggestionReminderMinutes() >= 1 && sdk.workspaceSuggestionReminderMinutes() <= 1440);
    // And so they are stored.
    m_natives->config->save();
    const ConfigManager config;
    check("stored reminderMinutes",
          config.workspaceSuggestionReminderMinutes() == sdk.workspaceSuggestionReminderMinutes());
    const QJsonDocument toolConfig = QJsonDocument::fromJson(config.getLoomraConfigAsString().toUtf8());
    check("tool configuration", toolConfig.isObject() && config.isLoomraConfigValid());
    const QList<QByteArray> feedback = contentOf(voice.voiceTestLogPath()).split('\n');
    check("voice test log", std::all_of(feedback.begin(), feedback.end(), [](const QByteArray &line) {
              return line.isEmpty() || QJsonDocument::fromJson(line).isObject();
          }));
    return bad;
}

void tst_QmlValues::takes()
{
    QFETCH(Member, member);
    const int sentBefore = m_natives->bridge.received().size();
    const QStringList errors = tryAll(member);

    static const QRegularExpression s_expected(
        QStringLiteral("^(TypeError: |Error: (Insufficient arguments|Unable to determine callable overload\\.|"
                       "Cannot assign .+ to .+))|^$"));
    for (const QString &error : errors) {
        QVERIFY2(s_expected.match(error).hasMatch(), qPrintable(error));
    }
    QCOMPARE(filesBelow(m_documents.path()), m_before);
    QCOMPARE(contentOf(m_directory->filePath(QStringLiteral("notes/plan.txt"))), QByteArray("A plan"));
    QCOMPARE(badSettings(), QStringList());

    // The last frames of both clients show that the bridge has all others.
    if (m_natives->isReady()) {
        const QString end = QStringLiteral("the end of ") + member.name;
        m_natives->sdk->auditRevert(end);
        m_natives->agent->sendMessageFeedback(end, 0, end);
        QVERIFY(waitUntil([&] {
            const QList<ScriptedBridge::Request> all = m_natives->bridge.received();
            return std::count_if(all.begin() + sentBefore, all.end(),
                                 [&end](const auto &request) { return request.text.contains(end); })
                == 2;
        }));
    }
    const QList<ScriptedBridge::Request> requests = m_natives->bridge.received().mid(sentBefore);
    for (const ScriptedBridge::Request &request : requests) {
        QJsonParseError parsed;
        const QJsonObject frame = QJsonDocument::fromJson(request.text.toUtf8(), &parsed).object();
        QVERIFY2(parsed.error == QJsonParseError::NoError, qPrintable(request.text.left(s_shown)));
        QVERIFY(frame.value(QLatin1String("id")).toInt() > 0);
        QVERIFY(!frame.value(QLatin1String("method")).toString().isEmpty());
        QVERIFY(frame.value(QLatin1String("params")).isObject());
    }
}

REGISTER_TEST(tst_QmlValues, QGuiApplication)

#include "tst_QmlValues.moc"
