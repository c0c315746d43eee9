// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "NameCheck.h"
#include "TestRegistry.h"

#include <QtTest>

//! What QML knows as "agentBridge" here.
class Bridge : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString status MEMBER m_status NOTIFY statusChanged)
    Q_PROPERTY(int limit READ limit CONSTANT)

public:
    int limit() const { return 1; }
    Q_INVOKABLE void send(const QString &, int = 0) { }

Q_SIGNALS:
    void statusChanged();
    void replied(const QString &text);

private:
    QString m_status;
};

namespace
{

const QString s_bar = QStringLiteral(R"(
    QtObject {
        id: root
        property var bridge: typeof agentBridge !== "undefined" ? agentBridge : null
        property alias store: settings
        property alias input: card.input
        property alias shown: panel.shown
        property int height: 1
        readonly property int width: 1
        function submit() {}
        function append(text, tool = 1) {}
        property QtObject parts: QtObject {
            property Settings inner: Settings { id: settings; property bool light: false }
            property Panel panel: Panel { id: panel }
            property Card card: Card { id: card }
        }
        signal closed(string reason)
    })");
const QString s_panel = QStringLiteral("Base { readonly property bool shown: true; function show(a) {} }");
const QString s_base = QStringLiteral("QtObject { required property var bar; property int speed }");
const QString s_card =
    QStringLiteral("QtObject { property alias input: field; property var inner: TextField { id: field } }");

} // namespace

class tst_NameCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void uses_data();
    void uses();
    void scripts();
    void fakes_data();
    void fakes();

private:
    static NameCheck checkWith(const QString &path, const QString &source);
};

NameCheck tst_NameCheck::checkWith(const QString &path, const QString &source)
{
    NameCheck check;
    check.addNativeObject(QStringLiteral("agentBridge"), &Bridge::staticMetaObject);
    check.addNativeObject(QStringLiteral("aBool"), nullptr);
    check.addHandedProperty(QStringLiteral("bar"), QStringLiteral("Bar"));
    check.addBaseType(QStringLiteral("QtObject"), &QObject::staticMetaObject);
    check.addBaseType(QStringLiteral("Settings"), QStringList {QStringLiteral("category")});
    check.addFile(QStringLiteral("ui/Bar.qml"), s_bar);
    check.addFile(QStringLiteral("ui/Panel.qml"), s_panel);
    check.addFile(QStringLiteral("ui/Base.qml"), s_base);
    check.addFile(QStringLiteral("ui/Card.qml"), s_card);
    check.addFile(path, source);
    return check;
}

void tst_NameCheck::uses_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("findings");
    const QString none;

    QTest::newRow("property") << "a: bar.height" << none;
    QTest::newRow("typo") << "a: bar.heigth"
                          << "1: bar.heigth is not declared by Bar.qml";
    QTest::newRow("in another line") << "\n\na: 1 +\nbar.x.y"
                                     << "4: bar.x is not declared by Bar.qml";
    QTest::newRow("comment") << "// bar.x\n/* bar.x */" << none;
    QTest::newRow("string") << "a: 'bar.x'" << none;
    QTest::newRow("template") << "a: `bar.y ${bar.x}`"
                              << "1: bar.x is not declared by Bar.qml";
    QTest::newRow("inherited") << "a: bar.objectName" << none;
    QTest::newRow("common to all objects") << "a: bar.toString()" << none;
    QTest::newRow("through an id") << "a: panel.bar.x"
                                   << "1: panel.bar.x is not declared by Bar.qml";
    QTest::newRow("of an unknown object") << "a: b.bar.x" << none;

    QTest::newRow("call") << "onA: bar.submit()" << none;
    QTest::newRow("too many arguments") << "onA: bar.submit(f(1, 2))"
                                        << "1: bar.submit takes 0 arguments, but is called with 1";
    QTest::newRow("too few arguments") << "onA: bar.append()"
                                       << "1: bar.append takes 1 to 2 arguments, but is called with 0";
    QTest::newRow("optional argument") << "onA: { bar.append(a); bar.append(a, [b, c]); }" << none;
    QTest::newRow("spread") << "onA: bar.append(...a)" << none;
    QTest::newRow("in an argument") << "onA: bar.append(bar.x)"
                                    << "1: bar.x is not declared by Bar.qml";
    QTest::newRow("function as a value") << "onA: f(bar.submit)" << none;
    QTest::newRow("signal") << "onA: bar.closed()"
                            << "1: bar.closed takes 1 argument, but is called with 0";

    QTest::newRow("write") << "onA: { bar.height = 1; bar.height += 1; bar.height++ }" << none;
    QTest::newRow("comparison") << "a: bar.width === 1 || bar.submit == 2" << none;
    QTest::newRow("write to a read-only property") << "onA: bar.width = 1"
                                                   << "1: bar.width is read-only";
    QTest::newRow("step of a read-only property") << "onA: { --bar.width; }"
                                                  << "1: bar.width is read-only";
    QTest::newRow("write through an alias") << "onA: bar.shown = false"
                                            << "1: bar.shown is read-only";
    QTest::newRow("write to a function") << "onA: bar.submit = 1"
                                         << "1: bar.submit is a function, not a property";

    QTest::newRow("alias of an object") << "a: bar.store.light || bar.store.category" << none;
    QTest::newRow("typo behind an alias") << "onA: bar.store.ligth = 1"
                                          << "1: bar.store.ligth is not declared by settings in Bar.qml";
    QTest::newRow("alias of an alias of an unknown type") << "a: bar.input.text" << none;

    QTest::newRow("native") << "a: agentBridge.status; onA: agentBridge.send('a')" << none;
    QTest::newRow("native typo") << "a: agentBridge.statsu"
                                 << "1: agentBridge.statsu is not declared by Bridge";
    QTest::newRow("native property") << "a: bar.bridge.statsu"
                                     << "1: bar.bridge.statsu is not declared by Bridge";
    QTest::newRow("native overloads") << "onA: bar.bridge.send()"
                                      << "1: bar.bridge.send takes 1 or 2 arguments, but is called with 0";
    QTest::newRow("native read-only") << "onA: bar.bridge.limit = 2"
                                      << "1: bar.bridge.limit is read-only";
    QTest::newRow("value without members") << "a: aBool.x"
                                           << "1: aBool.x is not declared by aBool";
    QTest::newRow("local") << "function f() { const b = bar.bridge; return b.x; }"
                           << "1: b.x is not declared by Bridge";
    QTest::newRow("choice") << "function f() { const b = c && d ? agentBridge : e; return b.x; }"
                            << "1: b.x is not declared by Bridge";
    QTest::newRow("parameter of the same name") << "function f(agentBridge) { return agentBridge.x; }" << none;
    QTest::newRow("own property") << "readonly property var b: bar.bridge\na: b ? b.x : 1"
                                  << "2: b.x is not declared by Bridge";
    QTest::newRow("property of another object") << "readonly property var b: bar.bridge\nItem { a: b.x }"
                                                << "2: b.x is not declared by Bridge";

    QTest::newRow("Native") << "onA: { Native.call(bar.bridge, 'send', 1); Native.offers(bar.bridge, 'send'); }"
                            << none;
    QTest::newRow("Native typo") << "onA: Native.offers(bar.bridge, 'sned')"
                                 << "1: bar.bridge.sned is not declared by Bridge";
    QTest::newRow("Native arguments") << "onA: Native.call(bar.bridge, 'send', 1, 2, 3)"
                                      << "1: bar.bridge.send takes 1 or 2 arguments, but is called with 3";
    QTest::newRow("Native property") << "onA: Native.call(bar.bridge, 'status')"
                                     << "1: bar.bridge.status is a property, not a function";
    QTest::newRow("typeof") << "a: typeof agentBrigde !== \"undefined\""
                            << "1: agentBrigde is no native object";
    QTest::newRow("typeof of a local") << "function f(a) { return typeof a === 'undefined' || typeof b === 'string'; }"
                                       << none;

    QTest::newRow("handlers")
        << "Connections { target: bar.bridge\nfunction onReplied(text) {}\nfunction onStatusChanged() {}\n"
           "function other(a, b) {} }"
        << none;
    QTest::newRow("handler with fewer parameters")
        << "Connections { target: bar.bridge; function onReplied() {} }" << none;
    QTest::newRow("missing signal") << "Connections { target: bar.bridge; function onRepleid() {} }"
                                    << "1: onRepleid handles \"repleid\", which is no signal of Bridge";
    QTest::newRow("handler of a function") << "Connections { target: bar.bridge; function onSend() {} }"
                                           << "1: onSend handles \"send\", which is no signal of Bridge";
    QTest::newRow("handler with too many parameters")
        << "Connections { target: bar.bridge; function onReplied(a, b) {} }"
        << "1: onReplied has 2 parameters, but \"replied\" of Bridge has 1 argument";
    QTest::newRow("handlers of a QML object") << "Connections { target: bar\nfunction onClosed(a) {}\n"
                                                 "function onHeightChanged() {}\nfunction onStoreChanged() {} }"
                                              << none;
    QTest::newRow("missing signal of a QML object") << "Connections { target: bar; function onX() {} }"
                                                    << "1: onX handles \"x\", which is no signal of Bar.qml";
}

void tst_NameCheck::uses()
{
    QFETCH(const QString, body);
    const QString path = QStringLiteral("ui/Used.qml");
    const NameCheck check = checkWith(path, QStringLiteral("Panel { id: panel; ") + body + QStringLiteral("\n}"));
    QStringList findings;
    for (const NameCheck::Finding &finding : check.check(path)) {
        QVERIFY(finding.text().startsWith(path));
        findings.append(finding.text().mid(path.size() + 1));
    }
    QTEST(findings.join(QLatin1Char('\n')), "findings");
}

void tst_NameCheck::scripts()
{
    const QString path = QStringLiteral("ui/logic/Some.js");
    const QVector<NameCheck::Finding> findings =
        checkWith(path, QStringLiteral(".pragma library\nfunction f(bar) {\n    return bar.x;\n}")).check(path);
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().text(), QStringLiteral("ui/logic/Some.js:3: bar.x is not declared by Bar.qml"));
}

void tst_NameCheck::fakes_data()
{
    QTest::addColumn<QString>("real");
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("findings");
    const QString none;
    QTest::newRow("a part") << "Bar"
                            << "property var bridge: null; property int width; function append(a, b = 2) {}" << none;
    QTest::newRow("members of the base type") << "Bar"
                                              << "property string objectName" << none;
    QTest::newRow("exception") << "Bar"
                               << "property int answers" << none;
    QTest::newRow("too many") << "Bar"
                              << "property int x"
                              << "x is not declared by Bar.qml";
    QTest::newRow("another kind") << "Bar"
                                  << "property int submit"
                                  << "submit is a property, but a function in Bar.qml";
    QTest::newRow("other parameters") << "Bar"
                                      << "function submit(a) {}"
                                      << "submit takes 1 argument, but 0 arguments in Bar.qml";
    QTest::newRow("native") << "agentBridge"
                            << "property string status; function send(a) {} signal replied(string a)" << none;
    QTest::newRow("native, too many") << "agentBridge"
                                      << "signal x()"
                                      << "x is not declared by Bridge";
    QTest::newRow("native, other parameters") << "agentBridge"
                                              << "signal replied()"
                                              << "replied takes 0 arguments, but 1 argument in Bridge";
}

void tst_NameCheck::fakes()
{
    QFETCH(const QString, real);
    QFETCH(const QString, body);
    const QString path = QStringLiteral("FakeBar.qml");
    const NameCheck check = checkWith(path, QStringLiteral("QtObject { ") + body + QStringLiteral(" }"));
    QStringList findings;
    for (const NameCheck::Finding &finding :
         check.checkFake(QStringLiteral("FakeBar"), real, {QStringLiteral("answers")})) {
        findings.append(finding.name + QLatin1Char(' ') + finding.problem);
    }
    QTEST(findings.join(QLatin1Char('\n')), "findings");
}

REGISTER_TEST(tst_NameCheck, TestRegistry::NoApplication)

#include "tst_NameCheck.moc"
