// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "JsonLayout.h"
#include "TestRegistry.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <ctime>

namespace
{

QJsonObject objectOf(const QByteArray &text)
{
    QJsonParseError error {};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject()) {
        qFatal("no object: %s", text.constData());
    }
    return document.object();
}

} // namespace

//! An object that is written in the layout of an earlier text.
class tst_JsonLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAnOriginal_data();
    void withoutAnOriginal();
    void keepsTheText_data();
    void keepsTheText();
    void changes_data();
    void changes();
    void roundedIntegers();
    void manyKeys();
};

void tst_JsonLayout::withoutAnOriginal_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("original");

    const QByteArray all = R"({"b":[1,2.5,-1e-7,"ä \" \\ \n \u0001 /",true,null,[],{}],"a":{"c":{}},"":0})";
    QTest::newRow("empty") << QByteArray("{}") << QByteArray();
    QTest::newRow("all types") << all << QByteArray();
    QTest::newRow("broken original") << all << QByteArray("{\"b\":");
    QTest::newRow("a list as original") << all << QByteArray("[1]");
    QTest::newRow("a key with a byte order mark") << QByteArray("{\"\xef\xbb\xbf key\":3}") << QByteArray("{}");
    QTest::newRow("original without the keys") << all << QByteArray("{\"x\":{\"c\":1.0}}");
}

void tst_JsonLayout::withoutAnOriginal()
{
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, original);

    const QJsonObject value = objectOf(object);
    QCOMPARE(JsonLayout::write(value, original), QJsonDocument(value).toJson(QJsonDocument::Indented));
}

void tst_JsonLayout::keepsTheText_data()
{
    QTest::addColumn<QByteArray>("text");

    const auto add = [](const char *name, const char *text) { QTest::newRow(name) << QByteArray(text) + '\n'; };
    add("order", "{\n    \"b\": 1,\n    \"a\": 2\n}");
    add("order inside", "{\n    \"x\": [\n        {\n            \"b\": 1,\n            \"a\": 2\n        }\n    ]\n}");
    add("numbers",
        "{\n    \"a\": [\n        1.0,\n        1e2,\n        -0.50,\n        12345678901234567890\n    ]\n}");
    add("strings", R"({
    "a": "\u00e4\/\"}],:",
    "b\u0020c": "x"
})");
    add("literals", "{\n    \"c\": true,\n    \"b\": null,\n    \"a\": false\n}");
}

void tst_JsonLayout::keepsTheText()
{
    QFETCH(QByteArray, text);

    QByteArray expected = text;
    expected.replace("b\\u0020c", "b c"); // only values keep their spelling
    QCOMPARE(JsonLayout::write(objectOf(text), text), expected);
    // From a file without any whitespace.
    QByteArray compact = text.simplified();
    compact.replace("{ ", "{").replace(" }", "}").replace("[ ", "[").replace(" ]", "]").replace(", ", ",");
    compact.replace("\": ", "\":");
    QCOMPARE(JsonLayout::write(objectOf(text), compact), expected);
}

void tst_JsonLayout::changes_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QByteArray>("original");
    QTest::addColumn<QByteArray>("compact");

    const auto add = [](const char *name, const char *object, const char *original, const char *compact) {
        QTest::newRow(name) << QByteArray(object) << QByteArray(original) << QByteArray(compact);
    };
    add("new keys follow", R"({"a":1,"b":2,"c":3,"z":4})", R"({"z":4.0,"b":2})", R"({"z":4.0,"b":2,"a":1,"c":3})");
    add("removed keys", R"({"a":1,"z":4})", R"({"z":4.0,"b":2,"a":1.0})", R"({"z":4.0,"a":1.0})");
    add("changed number", R"({"a":1.5})", R"({"a":1.0})", R"({"a":1.5})");
    add("changed string", R"({"a":"x"})", R"({"a":"\u0079"})", R"({"a":"x"})");
    add("another type", R"({"a":{"c":1},"b":[1],"d":1})", R"({"d":[1.0],"b":{"0":1.0},"a":1.0})",
        R"({"d":1,"b":[1],"a":{"c":1}})");
    add("a longer list", R"({"a":[1,2,3]})", R"({"a":[1.0,2.0]})", R"({"a":[1.0,2.0,3]})");
    add("a shorter list", R"({"a":[1]})", R"({"a":[1.0,2.0]})", R"({"a":[1.0]})");
    add("a number in place of a string", R"({"a":1})", R"({"a":"1"})", R"({"a":1})");
    add("a string in place of zero", R"({"a":"x"})", R"({"a":0})", R"({"a":"x"})");
    add("a repeated key", R"({"a":2,"b":3})", R"({"a":1.0,"b":3.0,"a":2.0})", R"({"a":2.0,"b":3.0})");
    add("after a byte order mark", R"({"a":1,"b":2})", "\xEF\xBB\xBF{\"b\":2.0,\"a\":1}", R"({"b":2.0,"a":1})");
    add("an empty key", R"({"":1,"a":1})", R"({"a":1.0,"":1.0})", R"({"a":1.0,"":1.0})");
}

void tst_JsonLayout::changes()
{
    QFETCH(QByteArray, object);
    QFETCH(QByteArray, original);

    const QByteArray written = JsonLayout::write(objectOf(object), original);
    QCOMPARE(objectOf(written), objectOf(object));
    QByteArray compact = written.simplified();
    compact.replace(' ', "");
    QTEST(compact, "compact");
    // Nothing is left to do for a second write.
    QCOMPARE(JsonLayout::write(objectOf(object), written), written);
}

//! QML, which only has doubles, has changed nothing.
void tst_JsonLayout::roundedIntegers()
{
    const QByteArray original = "{\n    \"a\": 9007199254740993\n}\n";
    QCOMPARE(JsonLayout::write({{QStringLiteral("a"), 9007199254740992.0}}, original), original);
    QCOMPARE(JsonLayout::write({{QStringLiteral("a"), 9007199254740994.0}}, original),
             QByteArray("{\n    \"a\": 9007199254740994\n}\n"));
}

//! The cost of a key doesn't grow with the number of keys, as it would if they were searched for in a list.
void tst_JsonLayout::manyKeys()
{
    const auto processorMs = [](int count) {
        QByteArray original = "{";
        original.reserve(count * 16); // it would be reallocated for each key
        for (int key = count; key > 0; --key) {
            original += '"' + QByteArray::number(key) + "\":1.0,";
        }
        original += "\"0\":{}}";
        const QJsonObject object = objectOf(original);
        const std::clock_t before = std::clock();
        const QByteArray written = JsonLayout::write(object, original);
        const double ms = 1000.0 * double(std::clock() - before) / CLOCKS_PER_SEC;
        const QByteArray number = QByteArray::number(count);
        const bool isRight = written.startsWith("{\n    \"" + number + "\": 1.0,\n    \"")
            && written.endsWith("    \"1\": 1.0,\n    \"0\": {\n    }\n}\n");
        return isRight ? ms : -1;
    };
    const double few = processorMs(4000);
    const double many = processorMs(40000);
    QVERIFY(few >= 0 && many >= 0);
    QVERIFY2(many < 30 * few + 100, qPrintable(QStringLiteral("%1 ms, %2 ms").arg(few).arg(many)));
}

REGISTER_TEST(tst_JsonLayout, QCoreApplication)

#include "tst_JsonLayout.moc"
