// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "BrokenModule.h"
#include "DesktopRun.h"
#include "ScreenReader.h"

#include "FakePath.h"
#include "Files.h"
#include "PrivateNetwork.h"
#include "Timeouts.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

namespace
{

constexpr int s_exitFailedLoad = 255;
//! Long enough for the window manager of a busy machine to map and place a window, in ms.
// The close button of the idle bar, on a screen of 1280 x 800: the bar is 720 wide, and 30 above the middle.
constexpr QPoint s_closeButton(640 + 360 - 10 - 16, 400 - 30);

QStringList words(const char *line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace

//! Graphical runs of the built program, seen from outside. There is no bridge unless a test starts one.
class tst_Launch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensTheOmniBar_data();
    void opensTheOmniBar();
    void failedLoad_data();
    void failedLoad();
    void opensTheTrayView_data();
    void opensTheTrayView();
    void opensTheVoiceValidation_data();
    void opensTheVoiceValidation();
    void startsWithoutUnexpectedWords();
    void closeButtonEndsIt();
    void windowManagerEndsIt();
    void escapeLeavesABubble();
    void signalsEndIt_data();
    void signalsEndIt();
    void twoRunSideBySide();
    void dataBesideTheExecutable_data();
    void dataBesideTheExecutable();
    void attachesAFile();
};

void tst_Launch::opensTheOmniBar_data()
{
    QTest::addColumn<QStringList>("arguments");

    for (const char *line : {"", "-o", "--omni-bar", "unknown", "--mains -M --Tray tray", "--omni-bar unknown"}) {
        QTest::newRow(*line ? line : "no argument") << words(line);
    }
}

void tst_Launch::opensTheOmniBar()
{
    QFETCH(QStringList, arguments);

    DesktopRun run(arguments);

    QVERIFY2(run.waitForWindow(), run.errors().constData());
    // The window manager may still take it away and bring it back.
    QTRY_COMPARE_WITH_TIMEOUT(run.windowCount(), 1, Timeouts::Program);
    QTRY_COMPARE_WITH_TIMEOUT(run.geometry(), QRect(0, 0, 1280, 800), Timeouts::Program);
    QCOMPARE(run.property("WM_CLASS"), QByteArray("\"tovictl\", \"loomra-kde\""));
    QTRY_VERIFY_WITH_TIMEOUT(run.property("_NET_WM_STATE").contains("_NET_WM_STATE_ABOVE"), Timeouts::Program);
    QVERIFY2(run.errors().contains("LoomraSDK::initialize() called, connectOnly: true\n"), run.errors().constData());
    QVERIFY(run.property("_NET_WM_WINDOW_TYPE").contains("_NET_WM_WINDOW_TYPE_DIALOG"));
    QCOMPARE(run.output(), QByteArray());
}

void tst_Launch::failedLoad_data()
{
    QTest::addColumn<QStringList>("arguments");

    // The first of voice test, main window and tray view wins, wherever it is.
    for (const char *line : {"--main", "-m", "--tray -m", "-m --tray", "--omni-bar --main"}) {
        QTest::newRow(line) << words(line);
    }
}

//! The main window is chosen, but a module that it needs is broken.
void tst_Launch::failedLoad()
{
    QFETCH(QStringList, arguments);
    if (!PrivateNetwork::isAvailable()) {
        QSKIP(PrivateNetwork::SkipReason);
    }

    const QTemporaryDir modules;
    QVERIFY(BrokenModule::write(modules.path()));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QML2_IMPORT_PATH"), modules.path());
    const Program::Result result = Program::run(arguments, environment);

    QVERIFY(result.finished);
    QVERIFY(!result.crashed);
    QCOMPARE(result.exitCode, s_exitFailedLoad);
    QVERIFY2(result.errors.contains("QQmlApplicationEngine failed to load component\n"
                                    "qrc:/org/kde/loomra/MainWindow.qml:"),
             result.errors.constData());
    // It runs a bridge of its own, which is started before the window is loaded.
    QVERIFY(result.errors.contains("LoomraSDK::initialize() called, connectOnly: false\n"));
    QCOMPARE(result.errors.count("LoomraSDK::initialize()"), 1);
    int position = 0;
    for (const char *step :
         {"[AgentBridge] Connecting to Loomra bridge ", "[VoiceBridge] init ", "LoomraSDK::initialize() called, ",
          "LoomraSDK::startBridgeProcess() called, ", "QQmlApplicationEngine failed to load component"}) {
        const int next = result.errors.indexOf(step, position);
        QVERIFY2(next >= 0, step);
        position = next;
    }
    QCOMPARE(result.output, QByteArray());
}

void tst_Launch::opensTheTrayView_data()
{
    QTest::addColumn<QStringList>("arguments");

    for (const char *line : {"--tray", "-t", "unknown -o -t"}) {
        QTest::newRow(line) << words(line);
    }
}

void tst_Launch::opensTheTrayView()
{
    QFETCH(QStringList, arguments);
    if (!PrivateNetwork::isAvailable()) {
        QSKIP(PrivateNetwork::SkipReason);
    }

    DesktopRun run(arguments);

    QVERIFY2(run.waitForWindow(), run.errors().constData());
    // The window manager may still take it away and bring it back.
    QTRY_COMPARE_WITH_TIMEOUT(run.windowCount(), 1, Timeouts::Program);
    QTRY_COMPARE_WITH_TIMEOUT(run.geometry().size(), QSize(200, 200), Timeouts::Program);
    QCOMPARE(run.property("WM_CLASS"), QByteArray("\"tovictl\", \"loomra-kde\""));
    QCOMPARE(run.property("WM_NAME"), QByteArray("\"Warden Desk\""));
    QVERIFY2(run.errors().contains("LoomraSDK::initialize() called, connectOnly: false\n"), run.errors().constData());
    QVERIFY(run.closeWindow());
    QCOMPARE(run.unexpectedWords(), QString());
    QCOMPARE(run.output(), QByteArray());
}

void tst_Launch::opensTheVoiceValidation_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("byKey");

    QTest::newRow("--voice-test") << words("--voice-test") << false;
    // It takes precedence over the other modes, wherever it is.
    QTest::newRow("--voice-test --main") << words("--voice-test --main") << false;
    QTest::newRow("-t --main --voice-test") << words("-t --main --voice-test") << true;
}

void tst_Launch::opensTheVoiceValidation()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, byKey);

    DesktopRun run(arguments);

    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_COMPARE_WITH_TIMEOUT(run.windowCount(), 1, Timeouts::Program);
    QTRY_COMPARE_WITH_TIMEOUT(run.geometry().size(), QSize(580, 720), Timeouts::Program);
    QCOMPARE(run.property("WM_CLASS"), QByteArray("\"tovictl\", \"loomra-kde\""));
    QVERIFY2(run.property("_NET_WM_NAME").contains("Voice STT Validation"), run.property("_NET_WM_NAME").constData());
    if (byKey) {
        QVERIFY(run.takeKeyboard());
        run.press("Escape");
        QVERIFY(run.waitForEnd());
        QCOMPARE(run.exitCode(), 0);
    } else {
        QVERIFY(run.closeWindow());
    }
    // It needs no bridge.
    QVERIFY(!run.errors().contains("LoomraSDK::initialize()"));
    QCOMPARE(run.unexpectedWords(), QString());
    QCOMPARE(run.output(), QByteArray());
}

void tst_Launch::startsWithoutUnexpectedWords()
{
    DesktopRun run;
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(run.takeKeyboard());
    // After the first refused attempt the entrance animation and everything built after the first frame are done.
    QTRY_VERIFY_WITH_TIMEOUT(run.errors().contains("[AgentBridge]"), 10000);
    run.click(s_closeButton);
    QVERIFY(run.waitForEnd());

    QCOMPARE(run.unexpectedWords(), QString());
    QCOMPARE(run.output(), QByteArray());
}

void tst_Launch::closeButtonEndsIt()
{
    DesktopRun run;
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_COMPARE_WITH_TIMEOUT(run.geometry(), QRect(0, 0, 1280, 800), Timeouts::Program);

    run.click(s_closeButton);

    QVERIFY(run.waitForEnd());
    QVERIFY(!run.crashed());
    QCOMPARE(run.exitCode(), 0);
}

void tst_Launch::windowManagerEndsIt()
{
    DesktopRun run;
    QVERIFY2(run.waitForWindow(), run.errors().constData());

    QVERIFY(run.closeWindow());
}

void tst_Launch::escapeLeavesABubble()
{
    DesktopRun run;
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    const QRect bubble(1280 - 56 - 20, 20, 56, 56);

    // Pressed again until it helps: a key is lost if the window manager moves the focus at the same time.
    QVERIFY(QTest::qWaitFor(
        [&run, &bubble] {
            if (run.geometry() != bubble && run.takeKeyboard()) {
                run.press("Escape");
            }
            return run.geometry() == bubble;
        },
        Timeouts::Program));
    QVERIFY(run.isRunning());

    run.click({1280 - 20 - 28, 20 + 28});
    QTRY_COMPARE_WITH_TIMEOUT(run.geometry(), QRect(0, 0, 1280, 800), Timeouts::Program);
}

void tst_Launch::signalsEndIt_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("signal");

    const std::pair<const char *, QStringList> modes[] = {
        {"OmniBar", {}},
        {"main window", {QStringLiteral("--main")}},
        {"tray view", {QStringLiteral("--tray")}},
        {"voice validation", {QStringLiteral("--voice-test")}},
    };
    const std::pair<const char *, int> signals[] = {{"SIGTERM", SIGTERM}, {"SIGINT", SIGINT}, {"SIGHUP", SIGHUP}};
    for (const auto &[mode, arguments] : modes) {
        for (const auto &[name, signal] : signals) {
            QTest::addRow("%s, %s", mode, name) << arguments << signal;
        }
    }
}

void tst_Launch::signalsEndIt()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, signal);
    DesktopRun run(arguments);
    QVERIFY2(run.waitForWindow(), run.errors().constData());

    run.send(signal);

    // As if the user had closed the window.
    QVERIFY(run.waitForEnd());
    QVERIFY(!run.crashed());
    QCOMPARE(run.exitCode(), 0);
    QCOMPARE(run.unexpectedWords(), QString());
}

void tst_Launch::twoRunSideBySide()
{
    DesktopRun first;
    QVERIFY2(first.waitForWindow(), first.errors().constData());
    DesktopRun second;
    QVERIFY2(second.waitForWindow(), second.errors().constData());
    QVERIFY(first.isRunning());
    QTRY_COMPARE_WITH_TIMEOUT(first.windowCount(), 1, Timeouts::Program);

    // Each has its own window and ends on its own.
    QVERIFY(second.closeWindow());
    QVERIFY(first.isRunning());
    QTRY_COMPARE_WITH_TIMEOUT(first.windowCount(), 1, Timeouts::Program);
}

void tst_Launch::dataBesideTheExecutable_data()
{
    QTest::addColumn<bool>("exists");
    QTest::addColumn<QString>("directories");
    QTest::addColumn<QString>("theme");
    QTest::addColumn<QString>("ofChildren"); // "%1" is the folder of the executable

    const QString usual = QStringLiteral("/usr/local/share:/usr/share");
    QTest::newRow("absent") << false << usual << QStringLiteral("hicolor") << usual;
    QTest::newRow("before the others") << true << usual << QStringLiteral("hicolor")
                                       << QString(QStringLiteral("%1/share:") + usual);
    // If the variable is unset, it replaces all other directories, and only its theme is found.
    QTest::newRow("alone") << true << QString() << QStringLiteral("breeze") << QStringLiteral("%1/share:");
}

//! Data such as the window icon is found in a directory "share" beside the executable, by child processes too.
void tst_Launch::dataBesideTheExecutable()
{
    QFETCH(bool, exists);
    QFETCH(QString, directories);
    QFETCH(QString, theme);
    QFETCH(QString, ofChildren);

    FakePath programs;
    const QString seen = programs.filePath(QStringLiteral("environment"));
    programs.add(QStringLiteral("systemctl"),
                 "printf '%s\\n%s' \"$XDG_DATA_DIRS\" \"$QML_XHR_ALLOW_FILE_READ\" > " + QFile::encodeName(seen));
    const QTemporaryDir folder;
    // A symbolic link would not do, because the program resolves its path.
    const QString program = folder.filePath(QStringLiteral("tovictl"));
    QVERIFY(QFile::copy(Program::path(), program));
    if (exists) {
        const QDir icons(folder.filePath(QStringLiteral("share/icons/") + theme));
        QVERIFY(icons.mkpath(QStringLiteral("37x37/apps"))); // no system icon has this size
        QFile index(icons.filePath(QStringLiteral("index.theme")));
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=Any\nDirectories=37x37/apps\n\n[37x37/apps]\nSize=37\nType=Fixed\n");
        index.close();
        QImage image(37, 37, QImage::Format_ARGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(icons.filePath(QStringLiteral("37x37/apps/loomra-kde.png"))));
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("XDG_DATA_DIRS"));
    if (!directories.isEmpty()) {
        environment.insert(QStringLiteral("XDG_DATA_DIRS"), directories);
    }

    DesktopRun run({}, environment, program);

    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QTRY_COMPARE_WITH_TIMEOUT(run.property("_NET_WM_ICON").contains("Icon (37 x 37)"), exists, Timeouts::Program);
    // main() has also allowed QML to read the files that the user attaches.
    const QString expected = ofChildren.replace(QLatin1String("%1"), folder.path()) + QStringLiteral("\n1");
    QTRY_COMPARE_WITH_TIMEOUT(QString::fromUtf8(contentOf(seen)), expected, Timeouts::Program);
}

//! QML reads it through XMLHttpRequest, which warns about local files unless main() has allowed them.
void tst_Launch::attachesAFile()
{
    const QTemporaryDir home;
    QVERIFY(writeFile(home.filePath(QStringLiteral("notes.txt")), "content"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    const ScreenReader reader(ScreenReader::Events::None);
    DesktopRun run({}, environment);
    QVERIFY2(run.waitForWindow(), run.errors().constData());
    QVERIFY(run.takeKeyboard());
    for (const char *key : {"slash", "a", "t", "t", "a", "c", "h", "Return"}) {
        run.press(key);
    }
    QTRY_COMPARE_WITH_TIMEOUT(run.windowCount(), 2, Timeouts::Program);

    // The dialog ignores keys until its content has the focus. Each row of the conversation is named by its author.
    const QRegularExpression ofTheFile(QStringLiteral("^System, .*\\bnotes\\.txt\\b"));
    QStringList rows;
    const auto hasResult = [&] {
        run.press("Down");
        run.press("Return");
        rows = reader.shown(QStringLiteral("list item")).filter(ofTheFile);
        return !rows.isEmpty();
    };
    QVERIFY(QTest::qWaitFor(hasResult, Timeouts::Program));
    QVERIFY2(rows.first().contains(QLatin1String("Attached **notes.txt** (7 chars)")), qPrintable(rows.first()));
    QVERIFY2(!run.errors().contains("XMLHttpRequest"), run.errors().constData());
}

REGISTER_TEST(tst_Launch, QCoreApplication)
#include "tst_Launch.moc"
