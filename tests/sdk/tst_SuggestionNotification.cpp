// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "DataDirectories.h"
#include "Json.h"
#include "MessageLog.h"
#include "Notifications.h"
#include "ScopedEnvironment.h"
#include "SuggestionNotification.h"
#include "TestRegistry.h"
#include "TestSetup.h"

#include <KNotification>

#include <QGuiApplication>
#include <QProcess>
#include <QSocketNotifier>
#include <QTest>

#include <functional>
#include <memory>
#include <unistd.h>

namespace
{

const QString s_notify = QStringLiteral("Notify");
const QString s_close = QStringLiteral("CloseNotification");

QStringList words(const char *list)
{
    return QString::fromUtf8(list).split(QLatin1Char('|'), Qt::SkipEmptyParts);
}

QString textOf(const QJsonObject &call, const char *key)
{
    return call.value(QLatin1String(key)).toString();
}

QStringList actionsOf(const QJsonObject &notify)
{
    return notify.value(QLatin1String("actions")).toVariant().toStringList();
}

constexpr char s_childArgument[] = "--show-until-input-ends";

//! A program whose notification belongs to a child of the application, which is destroyed last. Quits when its standard
//! input is closed.
int showUntilInputEnds(int &argc, char **argv)
{
    QGuiApplication application(argc, argv);
    TestSetup::setAboutData();
    preferDataBesideExecutable();
    SuggestionNotification::show(json(R"({"title":"T"})"), new QObject(&application), [](const QString &) {});
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    return QGuiApplication::exec();
}

} // namespace

class tst_SuggestionNotification : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void showsWhatTheBridgeSends();
    void hasNoFlags();
    void actionsBecomeButtons_data();
    void actionsBecomeButtons();
    void callsBackWithTheChosenAction_data();
    void callsBackWithTheChosenAction();
    void showsNothingWithoutTitle_data();
    void showsNothingWithoutTitle();
    void keepsTheirChoicesApart();
    void endsWithItsParent();
    void survivesTheEndOfTheProgram();
    void wantsInAppDialog_data();
    void wantsInAppDialog();

private:
    std::function<void(const QString &)> note()
    {
        return [this](const QString &id) { m_chosen.append(id); };
    }

    Notifications m_service;
    std::unique_ptr<QObject> m_parent;
    std::unique_ptr<MessageLog> m_log;
    QStringList m_chosen;
};

void tst_SuggestionNotification::initTestCase()
{
    TestSetup::setAboutData();
    // For the notifyrc file, as in the program.
    preferDataBesideExecutable();
    QVERIFY(m_service.isRunning());
}

void tst_SuggestionNotification::init()
{
    m_log = std::make_unique<MessageLog>();
    m_parent = std::make_unique<QObject>();
    m_chosen.clear();
}

void tst_SuggestionNotification::cleanup()
{
    // Close open notifications, so that the next test doesn't see them.
    for (int open = m_parent->children().size(); open > 0; --open) {
        delete m_parent->children().first();
        QCOMPARE(textOf(m_service.take(), "call"), s_close);
    }
    m_parent.reset();
    QCOMPARE(m_service.calls(), QList<QJsonObject>());
    QCOMPARE(m_log->warnings(), QStringList());
    m_log.reset();
}

void tst_SuggestionNotification::showsWhatTheBridgeSends()
{
    SuggestionNotification::show(json(R"({"title":"Writing","body":"Shall I prepare <b>it</b>?",
                                            "actions":[{"id":"prepare","label":"Go"},{"id":"dismiss","label":"No"}]})"),
                                 m_parent.get(), note());
    const QJsonObject call = m_service.take();
    QCOMPARE(textOf(call, "call"), s_notify);
    QCOMPARE(textOf(call, "title"), QStringLiteral("Writing"));
    QCOMPARE(textOf(call, "body"), QStringLiteral("Shall I prepare &lt;b&gt;it&lt;/b&gt;?")); // as the user reads it
    QCOMPARE(textOf(call, "icon"), QStringLiteral("dialog-information"));
    QCOMPARE(textOf(call, "event"), QStringLiteral("workspaceSuggestion"));
    QCOMPARE(textOf(call, "component"), QStringLiteral("loomra-kde"));
    QCOMPARE(textOf(call, "application"), QStringLiteral("Loomra KDE"));
    QCOMPARE(actionsOf(call), words("default|Prepare now|1|Go|2|No"));
    QCOMPARE(m_chosen, QStringList());
    QCOMPARE(m_parent->children().size(), 1);
}

//! It closes when the service decides, like any other: it doesn't stay, and no widget or sound ends with it.
void tst_SuggestionNotification::hasNoFlags()
{
    SuggestionNotification::show(json(R"({"title":"T"})"), m_parent.get(), note());
    const auto *shown = m_parent->findChild<KNotification *>();
    QVERIFY(shown);
    QCOMPARE(shown->flags(), KNotification::NotificationFlags());
    QCOMPARE(shown->componentName(), QStringLiteral("loomra-kde"));
    const QJsonObject call = m_service.take();
    QCOMPARE(call.value(QLatin1String("timeout")).toInt(), -1);
    QCOMPARE(call.value(QLatin1String("hints")).toVariant().toStringList(),
             words("desktop-entry|x-kde-appname|x-kde-eventId"));
}

void tst_SuggestionNotification::actionsBecomeButtons_data()
{
    QTest::addColumn<QByteArray>("more"); // JSON behind the title
    QTest::addColumn<QStringList>("actions");

    const auto row = [](const char *name, const char *more, const char *actions) {
        QTest::newRow(name) << QByteArray(more) << words(actions);
    };
    row("none", "", "default|Prepare now");
    row("review", R"(,"suggestionType":"candidate_review")", "default|Review");
    row("another type", R"(,"suggestionType":"Candidate_Review")", "default|Prepare now");
    row("empty list", R"(,"actions":[])", "default|Prepare now");
    row("no list", R"(,"actions":{"id":"a","label":"A"})", "default|Prepare now");
    row("one", R"(,"actions":[{"id":"a","label":"A"}])", "default|Prepare now|1|A");
    row("three", R"(,"actions":[{"id":"a","label":"A"},{"id":"b","label":"B"},{"id":"c","label":"C"}])",
        "default|Prepare now|1|A|2|B|3|C");
    row("without id", R"(,"actions":[{"label":"A"},{"id":"","label":"B"},{"id":3,"label":"C"},{"id":"d","label":"D"}])",
        "default|Prepare now|1|D");
    row("without label", R"(,"actions":[{"id":"a"},{"id":"b","label":""},"c",{"id":"d","label":"D"}])",
        "default|Prepare now|1|D");
}

void tst_SuggestionNotification::actionsBecomeButtons()
{
    QFETCH(QByteArray, more);
    SuggestionNotification::show(json(R"({"title":"T")" + more + '}'), m_parent.get(), note());
    QTEST(actionsOf(m_service.take()), "actions");
}

void tst_SuggestionNotification::callsBackWithTheChosenAction_data()
{
    QTest::addColumn<QByteArray>("notification");
    QTest::addColumn<QString>("picked");
    QTest::addColumn<QStringList>("chosen");

    const QByteArray three = R"({"title":"T","actions":[{"id":"","label":"skipped"},{"id":"prepare","label":"A"},
                                {"id":"dismiss","label":"B"},{"id":"snooze","label":"C"}]})";
    const QByteArray one = R"({"title":"T","actions":[{"id":"dismiss","label":"A"}],
                              "suggestionType":"candidate_review"})";
    QTest::newRow("first") << three << "1" << words("prepare");
    QTest::newRow("second") << three << "2" << words("dismiss");
    QTest::newRow("third has no effect") << three << "3" << QStringList();
    QTest::newRow("default") << three << "default" << words("prepare");
    QTest::newRow("default of a review") << one << "default" << words("review");
    QTest::newRow("first of one") << one << "1" << words("dismiss");
}

void tst_SuggestionNotification::callsBackWithTheChosenAction()
{
    QFETCH(QByteArray, notification);
    QFETCH(QString, picked);
    SuggestionNotification::show(json(notification), m_parent.get(), note());
    m_service.invoke(m_service.take(), picked);

    // It is closed at the end.
    QCOMPARE(textOf(m_service.take(), "call"), s_close);
    QTEST(m_chosen, "chosen");
    QTRY_VERIFY(m_parent->children().isEmpty());
}

void tst_SuggestionNotification::showsNothingWithoutTitle_data()
{
    QTest::addColumn<QByteArray>("notification");
    QTest::newRow("empty") << QByteArray(R"({"title":"","body":"B"})");
    QTest::newRow("missing") << QByteArray(R"({"body":"B"})");
    QTest::newRow("number") << QByteArray(R"({"title":5})");
}

void tst_SuggestionNotification::showsNothingWithoutTitle()
{
    QFETCH(QByteArray, notification);
    SuggestionNotification::show(json(notification), m_parent.get(), note());
    QVERIFY(m_parent->children().isEmpty());
    // The first call is for the next one.
    SuggestionNotification::show(json(R"({"title":"next"})"), m_parent.get(), note());
    QCOMPARE(textOf(m_service.take(), "title"), QStringLiteral("next"));
}

void tst_SuggestionNotification::keepsTheirChoicesApart()
{
    SuggestionNotification::show(json(R"({"title":"1","actions":[{"id":"a","label":"A"}]})"), m_parent.get(), note());
    SuggestionNotification::show(json(R"({"title":"2","actions":[{"id":"b","label":"B"}]})"), m_parent.get(), note());
    const QJsonObject first = m_service.take();
    const QJsonObject second = m_service.take();
    m_service.invoke(second, QStringLiteral("1"));
    QTRY_COMPARE(m_chosen, words("b"));
    m_service.invoke(first, QStringLiteral("1"));
    QTRY_COMPARE(m_chosen, words("b|a"));
    QCOMPARE(textOf(m_service.take(), "call"), s_close);
    QCOMPARE(textOf(m_service.take(), "call"), s_close);
    QTRY_VERIFY(m_parent->children().isEmpty());
}

void tst_SuggestionNotification::endsWithItsParent()
{
    SuggestionNotification::show(json(R"({"title":"T"})"), m_parent.get(), note());
    const QJsonObject shown = m_service.take();
    m_parent = std::make_unique<QObject>();
    m_service.invoke(shown, QStringLiteral("default"));
    QCOMPARE(textOf(m_service.take(), "call"), s_close);
    // The later notification is reported after the choice, which is ignored.
    SuggestionNotification::show(json(R"({"title":"2"})"), m_parent.get(), note());
    m_service.invoke(m_service.take(), QStringLiteral("default"));
    QCOMPARE(textOf(m_service.take(), "call"), s_close);
    QTRY_COMPARE(m_chosen, words("prepare"));
    QTRY_VERIFY(m_parent->children().isEmpty());
}

void tst_SuggestionNotification::survivesTheEndOfTheProgram()
{
    QProcess run;
    run.start(QCoreApplication::applicationFilePath(),
              {QStringLiteral("tst_SuggestionNotification"), QLatin1String(s_childArgument)});
    QCOMPARE(textOf(m_service.take(), "title"), QStringLiteral("T"));
    run.closeWriteChannel();
    QVERIFY(run.waitForFinished());
    QCOMPARE(run.exitStatus(), QProcess::NormalExit);
    QCOMPARE(run.exitCode(), 0);
    QCOMPARE(run.readAllStandardError(), QByteArray());
}

void tst_SuggestionNotification::wantsInAppDialog_data()
{
    QTest::addColumn<QByteArray>("value"); // null means unset
    QTest::addColumn<bool>("wanted");

    QTest::newRow("unset") << QByteArray() << false;
    QTest::newRow("empty") << QByteArray("") << false;
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("TRUE") << QByteArray("TRUE") << true;
    QTest::newRow("yes") << QByteArray("yes") << false;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("with whitespace") << QByteArray("true ") << false;
}

void tst_SuggestionNotification::wantsInAppDialog()
{
    QFETCH(QByteArray, value);
    const ScopedEnvironment variable("LOOMRA_WORKSPACE_NOTIFY_INAPP", value);
    QTEST(SuggestionNotification::wantsInAppDialog(), "wanted");
}

static int run(int argc, char **argv)
{
    if (argc == 2 && qstrcmp(argv[1], s_childArgument) == 0) {
        return showUntilInputEnds(argc, argv);
    }
    const QGuiApplication application(argc, argv);
    tst_SuggestionNotification test;
    return QTest::qExec(&test, argc, argv);
}

REGISTER_TEST_MAIN(tst_SuggestionNotification, run)

#include "tst_SuggestionNotification.moc"
