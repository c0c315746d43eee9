// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Conversation.h"

#include "AgentBridge.h"
#include "SharedWindow.h"
#include "TestRegistry.h"

#include <QGuiApplication>
#include <QTest>

namespace
{

constexpr int s_size = 1024 * 1024;
constexpr int s_timeout = 60000; // ms, for layouts of that size

QString filled(const char *part, int length = s_size)
{
    const QString text = QString::fromUtf8(part);
    return text.repeated(length / text.size());
}

} // namespace

//! Replies and notices of a megabyte: the window shows all of the text and stays usable.
class tst_HugeReplies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_window.giveBack(); }
    void cleanupTestCase() { m_window.close(); }

    void replies_data();
    void replies();
    void notices_data();
    void notices();
    void suggestion();
    void replyAboveTheLimit(); // last, because the connection is lost

private:
    SharedWindow<Conversation> m_window;
};

void tst_HugeReplies::replies_data()
{
    QTest::addColumn<QString>("reply");

    QTest::newRow("prose") << filled("The quick brown fox jumps over the lazy dog ");
    QTest::newRow("one word") << filled("x");
    QTest::newRow("paragraphs") << filled("A line.\n\n", s_size / 8);
    QTest::newRow("callouts in callouts") << filled("> ");
    QTest::newRow("bullets") << filled("- a\n", s_size / 16);
    QTest::newRow("stars") << filled("**a*");
    QTest::newRow("back-ticks") << filled("`");
    QTest::newRow("tags") << filled("<b>");
    QTest::newRow("tool markup") << filled("<tool_call>");
    QTest::newRow("tool tags") << filled("[TOOL: ");
    QTest::newRow("percentages") << filled("50% ", s_size / 8);
    QTest::newRow("spaces") << filled(" ") + QLatin1Char('x');
    QTest::newRow("wide letters") << filled("\U0001F600", s_size / 64);
}

void tst_HugeReplies::replies()
{
    QFETCH(QString, reply);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    bar.bridge.reply(bar.ask(QStringLiteral("huge")), QJsonObject {{QStringLiteral("response"), reply}});
    QTRY_COMPARE_WITH_TIMEOUT(bar.count(), 2, s_timeout);
    QTRY_VERIFY_WITH_TIMEOUT(bar.rowItem(1), s_timeout);
    QVERIFY(bar.settle());
    QQuickItem *bubble = bar.inRow(1, "messageBubble");
    QQuickItem *words = bar.inRow(1, "words");
    QVERIFY(words->property("contentWidth").toReal() <= words->width());
    QVERIFY(words->property("contentHeight").toReal() <= bubble->height());
    // The window works as before.
    QVERIFY(bar.exchange(QStringLiteral("next"), QStringLiteral("fine")));
    QVERIFY(bar.settle());
    QVERIFY(bar.isSeen(bar.rowItem(3)));
}

void tst_HugeReplies::notices_data()
{
    QTest::addColumn<QString>("event");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("words");

    const QString prose = filled("The quick brown fox jumps over the lazy dog ");
    const QString word = filled("x");
    for (const QString &words : {prose, word}) {
        const QString kind = words == word ? QStringLiteral("one word") : QStringLiteral("prose");
        QTest::newRow(qPrintable(QStringLiteral("phase, ") + kind))
            << QStringLiteral("plan.phase") << QStringLiteral("phase") << words;
        QTest::newRow(qPrintable(QStringLiteral("agent, ") + kind))
            << QStringLiteral("agent.routed") << QStringLiteral("agent") << words;
        QTest::newRow(qPrintable(QStringLiteral("step, ") + kind))
            << QStringLiteral("plan.step") << QStringLiteral("capabilityId") << words;
    }
}

void tst_HugeReplies::notices()
{
    QFETCH(QString, event);
    QFETCH(QString, key);
    QFETCH(QString, words);

    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const auto request = bar.ask();
    bar.bridge.event(event, {{key, words}});
    QTRY_VERIFY(bar.property("activePhaseLabel").toString().contains(words.left(100)));
    QVERIFY(bar.settle());
    QQuickItem *label = bar.item(QStringLiteral("phaseLabel"));
    QVERIFY(bar.place(label).right() < bar.place(bar.item(QStringLiteral("stopBtn"))).left());
    bar.hover(bar.item(QStringLiteral("inputField"))); // a pointer that is there already sends no event
    bar.hover(bar.item(QStringLiteral("connectionDot")));
    QTRY_VERIFY(bar.isSeen(bar.item(QStringLiteral("toolTipText"))));
    QVERIFY(bar.settle());
    QVERIFY(bar.answer(request, QStringLiteral("fine")));
    QVERIFY(bar.settle());
}

void tst_HugeReplies::suggestion()
{
    Conversation &bar = m_window.take();
    QVERIFY(bar.begin());
    const QString words = filled("x");
    const QJsonObject followUp {{QStringLiteral("prompt"), words}, {QStringLiteral("subtitle"), words}};
    QVERIFY(bar.exchange(QStringLiteral("go"), QStringLiteral("fine"),
                         {{QStringLiteral("followUps"), QJsonArray {followUp}}}));
    QTRY_VERIFY(bar.item(QStringLiteral("suggestionCard")));
    QVERIFY(bar.settle());
    QQuickItem *card = bar.item(QStringLiteral("suggestionCard"));
    bar.hover(card);
    QTRY_VERIFY(bar.isSeen(bar.item(QStringLiteral("toolTipText"))));
    const QRectF window(0, 0, bar.window()->width(), bar.window()->height());
    QVERIFY(window.contains(bar.place(bar.item(QStringLiteral("toolTipText")))));
    bar.click(card);
    QCOMPARE(bar.bridge.takeRequest(QStringLiteral("chat")).params.value(QStringLiteral("message")).toString(), words);
    QVERIFY(bar.settle());
}

void tst_HugeReplies::replyAboveTheLimit()
{
    Conversation &bar = m_window.take();
    bar.expectWarning(QStringLiteral("[AgentBridge] Connection to Loomra bridge closed"));
    QVERIFY(bar.begin());
    bar.ask(QStringLiteral("huge"));
    bar.bridge.announce(64 * 1024 * 1024 + 1);
    QTRY_COMPARE(bar.rows(),
                 (QStringList {QStringLiteral("user: huge"),
                               QStringLiteral("assistant: Error: Connection to Loomra bridge closed because a message "
                                              "was too large")}));
    QTRY_VERIFY(!bar.property("thinking").toBool());
}

REGISTER_TEST(tst_HugeReplies, QGuiApplication)

#include "tst_HugeReplies.moc"
