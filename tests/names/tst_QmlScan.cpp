// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "QmlScan.h"
#include "TestRegistry.h"

#include <QtTest>

using namespace QmlScan;

namespace
{

QString textOf(const Document &document, const QVector<Range> &ranges)
{
    QStringList texts;
    for (const Range &range : ranges) {
        texts.append(document.text(range));
    }
    return texts.join(QLatin1String(" | "));
}

QString describe(const Member &member)
{
    switch (member.kind) {
    case Member::Kind::Property:
        return (member.isReadOnly ? QStringLiteral("readonly ") : QString()) + member.type + QLatin1Char(' ')
            + member.name;
    case Member::Kind::Function:
        return QStringLiteral("%1(%2-%3)").arg(member.name).arg(member.minimumArguments).arg(member.maximumArguments);
    case Member::Kind::Signal:
        return QStringLiteral("signal %1(%2)").arg(member.name).arg(member.maximumArguments);
    }
    return QString();
}

QString membersOf(const Object &object)
{
    QStringList members;
    for (const Member &member : object.members) {
        members.append(describe(member));
    }
    return members.join(QLatin1String(" | "));
}

} // namespace

class tst_QmlScan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tokens_data();
    void tokens();
    void lines();
    void arguments_data();
    void arguments();
    void members_data();
    void members();
    void objects();
    void valuesEndWithTheirLine();
    void locals_data();
    void locals();
    void malformedSource_data();
    void malformedSource();
};

void tst_QmlScan::tokens_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("tokens");
    QTest::newRow("line comment") << "a // b 'c\nd"
                                  << "a d";
    QTest::newRow("comment") << "a /* b\n * \"c */ d"
                             << "a d";
    QTest::newRow("no comment in a string") << "\"a // b\" c"
                                            << "\"a // b\" c";
    QTest::newRow("no string in a comment") << "// it's\na"
                                            << "a";
    QTest::newRow("escaped quotes") << R"("a \" b" '\'' c)"
                                    << R"("a \" b" "\'" c)";
    QTest::newRow("template") << "`a ${b.c} d` e"
                              << R"("a " ${ b . c } " d" e)";
    QTest::newRow("braces in a template") << "`${f({ a: `${b}` })}` c"
                                          << R"("" ${ f ( { a : "" ${ b } "" } ) } "" c)";
    QTest::newRow("pattern") << "a.replace(/\"[/'\\/]/g, b)"
                             << "a . replace ( /\"[/'\\/]/g , b )";
    QTest::newRow("pattern after a keyword") << "return /a b/.test(c)"
                                             << "return /a b/ . test ( c )";
    QTest::newRow("division") << "a / b / c, (d) / 2 / e"
                              << "a / b / c , ( d ) / 2 / e";
    QTest::newRow("operators") << "a === b !== c => d ...e"
                               << "a === b !== c => d ... e";
    QTest::newRow("numbers") << "1.5 .5 0xff 1e-3-2"
                             << "1.5 .5 0xff 1e-3 - 2";
    QTest::newRow("letters") << "grün $a _b"
                             << "grün $a _b";
}

void tst_QmlScan::tokens()
{
    QFETCH(const QString, source);
    QStringList texts;
    for (const Token &token : tokenize(source)) {
        const QString quote = QLatin1String(token.kind == Token::Kind::String ? "\"" : "");
        texts.append(quote + token.text + quote);
    }
    QTEST(texts.join(QLatin1Char(' ')), "tokens");
}

void tst_QmlScan::lines()
{
    const QVector<Token> tokens = tokenize(QStringLiteral("a /*\n*/ b\n\n  c `\n` d"));
    QStringList places;
    for (const Token &token : tokens) {
        places.append(QStringLiteral("%1%2").arg(token.line).arg(QLatin1String(token.startsLine ? "s" : "")));
    }
    QCOMPARE(places.join(QLatin1Char(' ')), QStringLiteral("1s 2s 4s 4 5"));
}

void tst_QmlScan::arguments_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("arguments");
    QTest::newRow("none") << "f()"
                          << "";
    QTest::newRow("one") << "f(a)"
                         << "a";
    QTest::newRow("nested") << "f(g(a, b), [c, d], { e: 1, h: 2 })"
                            << "g(a,b) | [c,d] | {e:1,h:2}";
    QTest::newRow("commas in strings") << "f('a, b', `c, ${d, e}`)"
                                       << "a, b | c, ${d,e}";
    QTest::newRow("arrow") << "f((a, b) => a + b, c)"
                           << "(a,b)=>a+b | c";
    QTest::newRow("over lines") << "f(a,\n  b // , c\n)"
                                << "a | b";
    QTest::newRow("comma at the end") << "f(a, b, )"
                                      << "a | b";
    QTest::newRow("spread") << "f(...a)"
                            << "...a";
}

void tst_QmlScan::arguments()
{
    QFETCH(const QString, source);
    const Document document = parseScript(source);
    QTEST(textOf(document, document.arguments(1)), "arguments");
}

void tst_QmlScan::members_data()
{
    QTest::addColumn<QString>("body");
    QTest::addColumn<QString>("members");
    QTest::newRow("property") << "property int a"
                              << "int a";
    QTest::newRow("with a value") << "property var a: b ? c : null; property string d: \"e\""
                                  << "var a | string d";
    QTest::newRow("modifiers") << "readonly property real a: 1\nrequired property var b\ndefault property alias c: d.e"
                               << "readonly real a | var b | alias c";
    QTest::newRow("types") << "property list<QtObject> a\nproperty Kirigami.Icon b"
                           << "list<QtObject> a | Kirigami.Icon b";
    QTest::newRow("object") << "property Timer a: Timer { property int no; onTriggered: { var x; } }\nproperty int b"
                            << "Timer a | int b";
    QTest::newRow("block") << "property int a: { var no = 1; return no; }\nproperty int b"
                           << "int a | int b";
    QTest::newRow("over lines") << "property bool a: b\n  && c\n  ? d :\n  e\nproperty int f"
                                << "bool a | int f";
    QTest::newRow("functions") << "function f() { return { a: 1 }; }\nfunction g(a, b) {}"
                               << "f(0-0) | g(2-2)";
    QTest::newRow("optional parameters") << "function f(a, b = g(1, 2)) {}\nfunction h(a, ...rest) {}"
                                         << "f(1-2) | h(1-1000)";
    QTest::newRow("typed parameters") << "function f(a: string, b: int): bool {}"
                                      << "f(2-2)";
    QTest::newRow("signals") << "signal a\nsignal b()\nsignal c(string d, int e)\nproperty int f"
                             << "signal a(0) | signal b(0) | signal c(2) | int f";
    QTest::newRow("keywords as bindings") << "property: \"opacity\"\nrequired: true\nproperty int a"
                                          << "int a";
    QTest::newRow("attached and grouped")
        << "anchors { left: a.left; top: a.top }\nKeys.onPressed: if (b) c()\nfont.bold: true\nproperty int d"
        << "int d";
}

void tst_QmlScan::members()
{
    QFETCH(const QString, body);
    const Document document = parseQml(QStringLiteral("import A 1.0 as B\nItem {\n%1\n}").arg(body));
    QVERIFY(!document.objects.isEmpty());
    QTEST(membersOf(document.objects.first()), "members");
}

void tst_QmlScan::objects()
{
    const Document document = parseQml(QStringLiteral(R"(
        pragma Singleton
        import QtQuick 2.15
        import "b" as B

        T.Menu {
            id: menu
            Behavior on opacity { NumberAnimation {} }
            background: B.Panel { id: panel; width: menu.width }
            states: [State { name: "a" }, State {}]
            onOpened: { if (a) { b(); } }
        }
    )"));
    QStringList objects;
    for (const Object &object : document.objects) {
        objects.append(QStringLiteral("%1 %2 %3").arg(object.parent).arg(object.type, object.id).trimmed());
    }
    QCOMPARE(objects.join(QLatin1String(" | ")),
             QStringLiteral("-1 T.Menu menu | 0 Behavior | 1 NumberAnimation | 0 B.Panel panel | 0 State | 0 State"));
    QCOMPARE(document.text(document.objects.at(3).bindings.value(QStringLiteral("width"))),
             QStringLiteral("menu.width"));
    const int inPanel = document.objects.at(3).bindings.value(QStringLiteral("width")).begin;
    QCOMPARE(document.owners.at(inPanel), 3);
    QCOMPARE(document.owners.first(), -1);
}

void tst_QmlScan::valuesEndWithTheirLine()
{
    const Document document = parseQml(QStringLiteral("A {\n a: b\n c: d +\n e\n f: g\n .h(\n i)\n j: k }"));
    const auto binding = [&](const char *name) {
        return document.text(document.objects.first().bindings.value(QLatin1String(name)));
    };
    QCOMPARE(binding("a"), QStringLiteral("b"));
    QCOMPARE(binding("c"), QStringLiteral("d+e"));
    QCOMPARE(binding("f"), QStringLiteral("g.h(i)"));
    QCOMPARE(binding("j"), QStringLiteral("k"));
}

void tst_QmlScan::locals_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("locals");
    QTest::newRow("constant") << "{ const a = b.c; d(); }"
                              << "a = b.c in a=b.c;d();";
    QTest::newRow("two") << "{ let a = f(1, 2), b; }"
                         << "a = f(1,2) in a=f(1,2),b; | b =  in b;";
    QTest::newRow("parameters") << "function f(a, b = 1) { a; }"
                                << "a =  in (a,b=1){a; | b =  in (a,b=1){a;";
    QTest::newRow("arrow") << "g((a) => a.b, c)"
                           << "a =  in (a)=>a.b";
    QTest::newRow("arrow without brackets") << "g(a => { a.b; }, c)"
                                            << "a =  in a=>{a.b;";
    QTest::newRow("catch") << "try {} catch (e) { e.f; }"
                           << "e =  in (e){e.f;";
    QTest::newRow("loop") << "{ for (const a of b) { a.c; } }"
                          << "a =  in aofb){a.c;}";
    QTest::newRow("no property") << "property var a: b"
                                 << "";
}

void tst_QmlScan::locals()
{
    QFETCH(const QString, source);
    const Document document = parseScript(source);
    QStringList locals;
    for (const Local &local : document.locals) {
        locals.append(
            QStringLiteral("%1 = %2 in %3").arg(local.name, document.text(local.value), document.text(local.scope)));
    }
    QTEST(locals.join(QLatin1String(" | ")), "locals");
}

void tst_QmlScan::malformedSource_data()
{
    QTest::addColumn<QString>("source");
    for (const char *source :
         {"", "A", "A {", "A { property", "A { property var", "A { function f(", "A { signal", "}", "A { a: }",
          "A { id: ", "function f(,) {}", "const", "=> a", "'a", "`a ${", "/* a", "a /b", "A { x: [ B {"}) {
        QTest::newRow(source) << source;
    }
}

//! It need not make sense of these, but must come to an end.
void tst_QmlScan::malformedSource()
{
    QFETCH(const QString, source);
    parseQml(source);
    parseScript(source);
}

REGISTER_TEST(tst_QmlScan, TestRegistry::NoApplication)

#include "tst_QmlScan.moc"
