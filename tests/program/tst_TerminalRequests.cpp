// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Program.h"
#include "TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace
{

const QByteArray s_version = "tovictl 0.3.2\n";

const QByteArray s_promptRefusal = "tovictl: please run `tovictl --prompt ...` via the /usr/bin/tovictl wrapper,\n"
                                   "       not the libexec binary directly.\n";

const QByteArray s_uninstallRefusal = "tovictl: please run `tovictl uninstall` via the /usr/bin/tovictl wrapper,\n"
                                      "       not the libexec binary directly.\n"
                                      "       (or run /usr/libexec/tovi-forkeldaos/tovictl-uninstall directly)\n";

const QByteArray s_testRefusal = "tovictl: please run `tovictl test` via the /usr/bin/tovictl wrapper,\n"
                                 "       not the libexec binary directly.\n"
                                 "       (the wrapper execs node on the diagnostic script)\n";

const QByteArray s_usage = "Usage: tovictl [MODE | SUBCOMMAND] [OPTIONS]\n"
                           "\n"
                           "Tovi is the KeldaOS desktop AI assistant.  By default it opens the\n"
                           "OmniBar - the floating prompt bar wired to the system bridge.\n"
                           "\n"
                           "Modes (open the GUI):\n"
                           "  (no args)            Open the OmniBar (default).\n"
                           "  -o, --omni-bar       Open the OmniBar explicitly.\n"
                           "  -m, --main           Open the full Tovi chat / settings window.\n"
                           "  -t, --tray           Open the tray-icon view (mainly for testing).\n"
                           "  --voice-test         Open the voice STT validation window (mic +\n"
                           "                       whisper transcription, no bridge required).\n"
                           "\n"
                           "Subcommands (run in the terminal, no GUI):\n"
                           "  --prompt TEXT        Send one chat prompt through the running bridge.\n"
                           "                       Optional: -m, --model MODEL\n"
                           "  models               List available AI models (provider/id).\n"
                           "  test                 Run sanity checks on the local stack (env,\n"
                           "                       provider auth, bridge service, models,\n"
                           "                       MCP servers). Use `--chat` for an end-to-end\n"
                           "                       prompt probe, `--json` for machine output,\n"
                           "                       `--help` for full options.\n"
                           "  uninstall            Stop the bridge, purge the package, and remove\n"
                           "                       per-user state. Run with `--help` for options.\n"
                           "  help, -h, --help     Show this message and exit.\n"
                           "  -V, --version        Print tovictl version and exit.\n"
                           "\n"
                           "Examples:\n"
                           "  tovictl                       # open the OmniBar\n"
                           "  tovictl --main                # open the full chat window\n"
                           "  tovictl --prompt \"Say hello\" # one-shot terminal prompt\n"
                           "  tovictl --prompt \"Hi\" -m loomra/qwen3.6-plus-free\n"
                           "  tovictl models                # list models in the terminal\n"
                           "  tovictl models | grep openai  # filter the model list\n"
                           "  tovictl test                  # quick health check on a fresh box\n"
                           "  tovictl test --chat           # also send a real prompt\n"
                           "  tovictl uninstall             # interactive cleanup\n"
                           "  tovictl uninstall -y          # unattended cleanup\n";

} // namespace

//! Requests that are answered in the terminal. These runs have no display, so creating a QGuiApplication would abort
//! the program.
class tst_TerminalRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void answers_data();
    void answers();
    void graphicalRunDiesWithoutDisplay_data();
    void graphicalRunDiesWithoutDisplay();
    void argumentsThatAreNoText();
    void leavesNothingInTheHome();
    void writesToAFullDeviceWithoutHarm();

    void modelsPassesOneArgument();
    void modelsGivesTheExitCode_data();
    void modelsGivesTheExitCode();
    void modelsKeepsStreamsApart();
    void modelsKeepsTheOrder();
    void modelsPassesAnyBytes();
    void modelsPassesTheInput();
    void modelsWithoutCli();
    void modelsWithCliThatIsNotExecutable();
    void modelsWithCliThatCrashes();
    void modelsWinsOverAWindow();

private:
    //! Installs a shell script in place of the agent CLI. It is the only program on PATH.
    void installCli(const QByteArray &script, bool executable = true);
    Program::Result run(const QStringList &arguments) const { return Program::run(arguments, m_environment); }

    QScopedPointer<QTemporaryDir> m_binaries;
    QProcessEnvironment m_environment;
};

void tst_TerminalRequests::initTestCase()
{
    QVERIFY2(QFile::exists(Program::path()), qPrintable(Program::path()));
}

void tst_TerminalRequests::init()
{
    m_binaries.reset(new QTemporaryDir);
    QVERIFY(m_binaries->isValid());
    m_environment = Program::withoutDisplay();
    m_environment.insert(QStringLiteral("PATH"), m_binaries->path());
}

void tst_TerminalRequests::installCli(const QByteArray &script, bool executable)
{
    QFile cli(m_binaries->filePath(QStringLiteral("loomra")));
    QVERIFY(cli.open(QIODevice::WriteOnly));
    cli.write("#!/bin/sh\n" + script + '\n');
    if (executable) {
        QVERIFY(cli.setPermissions(cli.permissions() | QFile::ExeOwner));
    }
}

void tst_TerminalRequests::answers_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("errors");
    QTest::addColumn<int>("exitCode");

    const auto row = [](const char *line, const QByteArray &output, const QByteArray &errors, int exitCode) {
        QTest::newRow(line) << QString::fromLatin1(line).split(QLatin1Char(' ')) << output << errors << exitCode;
    };
    const auto usage = [&row](const char *line) { row(line, s_usage, {}, 0); };
    const auto version = [&row](const char *line) { row(line, s_version, {}, 0); };
    const auto promptRefusal = [&row](const char *line) { row(line, {}, s_promptRefusal, 2); };

    usage("help");
    usage("--help");
    usage("-h");
    version("--version");
    version("-V");
    promptRefusal("--prompt");
    promptRefusal("-p");
    promptRefusal("--prompt=");
    promptRefusal("--prompt=hello");
    row("uninstall", {}, s_uninstallRefusal, 2);
    row("test", {}, s_testRefusal, 2);

    // The first request among the arguments is answered.
    usage("--help --version");
    version("--version --help");
    usage("--help uninstall");
    row("uninstall --help", {}, s_uninstallRefusal, 2);
    row("test --chat --json", {}, s_testRefusal, 2);
    promptRefusal("--prompt Hi -m loomra/qwen3.6-plus-free");
    promptRefusal("--prompt --help");
    version("-V models");

    // Unknown arguments and modes are ignored silently.
    version("unknown -V");
    version("--main --version");
    usage("--voice-test -t -o help");
    row("-m test", {}, s_testRefusal, 2);

    // Arguments must match exactly, except for the prefix.
    version("--Version -v --HELP -H --vers --prompt-x -P -pHi Help --version= --version");
    version(" -V"); // preceded by an empty argument
}

void tst_TerminalRequests::answers()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, errors);
    QFETCH(int, exitCode);

    const Program::Result result = run(arguments);

    QVERIFY(result.finished);
    QVERIFY(!result.crashed);
    QCOMPARE(result.errors, errors);
    QCOMPARE(result.output, output);
    QCOMPARE(result.exitCode, exitCode);
}

void tst_TerminalRequests::graphicalRunDiesWithoutDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("no argument") << QStringList {};
    QTest::newRow("a mode") << QStringList {QStringLiteral("--main")};
    QTest::newRow("no request, though it begins like one")
        << QStringList {QStringLiteral("--promptly"), QStringLiteral("--versions"), QStringLiteral("-v")};
}

//! Proves that the other tests would fail if they created a QGuiApplication.
void tst_TerminalRequests::graphicalRunDiesWithoutDisplay()
{
    QFETCH(QStringList, arguments);

    const Program::Result result = run(arguments);

    QVERIFY(result.finished);
    QVERIFY(result.crashed);
    QVERIFY2(result.errors.contains("display"), result.errors.constData());
    QCOMPARE(result.output, QByteArray());
}

void tst_TerminalRequests::argumentsThatAreNoText()
{
    // Only a shell can pass arguments that are not UTF-8.
    const Program::Result result = Program::run(
        {QStringLiteral("-c"),
         QStringLiteral("exec \"$0\" \"$(printf '\\377\\376--prompt')\" \"$(printf '\\303')\" -V"), Program::path()},
        m_environment, QStringLiteral("/bin/sh"));

    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.output, s_version);
    QCOMPARE(result.exitCode, 0);
}

void tst_TerminalRequests::leavesNothingInTheHome()
{
    const QTemporaryDir home;
    m_environment.insert(QStringLiteral("HOME"), home.path());
    installCli("exit 0");

    for (const char *request : {"help", "-V", "-p", "uninstall", "test", "models"}) {
        run({QString::fromLatin1(request)});
        QCOMPARE(QDir(home.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList());
    }
}

void tst_TerminalRequests::writesToAFullDeviceWithoutHarm()
{
    const Program::Result result =
        Program::run({QStringLiteral("-c"), QStringLiteral("exec \"$0\" --help > /dev/full"), Program::path()},
                     m_environment, QStringLiteral("/bin/sh"));

    QVERIFY(!result.crashed);
    QCOMPARE(result.exitCode, 0);
}

void tst_TerminalRequests::modelsPassesOneArgument()
{
    installCli("printf '%s\\n' \"$#\" \"$@\"");

    const Program::Result result = run({QStringLiteral("models"), QStringLiteral("openai")});

    QCOMPARE(result.output, QByteArray("1\nmodels\n"));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 0);
}

void tst_TerminalRequests::modelsGivesTheExitCode_data()
{
    QTest::addColumn<int>("exitCode");

    for (const int code : {0, 1, 7, 127, 255}) {
        QTest::addRow("%d", code) << code;
    }
}

void tst_TerminalRequests::modelsGivesTheExitCode()
{
    QFETCH(int, exitCode);
    installCli("echo loomra/some-model; exit " + QByteArray::number(exitCode));

    const Program::Result result = run({QStringLiteral("models")});

    QCOMPARE(result.output, QByteArray("loomra/some-model\n"));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY(!result.crashed);
}

void tst_TerminalRequests::modelsKeepsStreamsApart()
{
    installCli("echo a model; echo a complaint >&2");

    const Program::Result result = run({QStringLiteral("models")});

    QCOMPARE(result.output, QByteArray("a model\n"));
    QCOMPARE(result.errors, QByteArray("a complaint\n"));
}

void tst_TerminalRequests::modelsKeepsTheOrder()
{
    installCli("for i in 1 2 3; do echo out $i; echo error $i >&2; done");

    // Both streams use one pipe, so the order of the output is that of the writes.
    const Program::Result result =
        Program::run({QStringLiteral("-c"), QStringLiteral("exec \"$0\" models 2>&1"), Program::path()}, m_environment,
                     QStringLiteral("/bin/sh"));

    QCOMPARE(result.output, QByteArray("out 1\nerror 1\nout 2\nerror 2\nout 3\nerror 3\n"));
}

void tst_TerminalRequests::modelsPassesAnyBytes()
{
    // Not sorted, deduplicated or decoded, and more than the capacity of a pipe.
    installCli("printf 'z\\na\\na\\n\\377\\000no line end'\n"
               "i=0; while [ $i -lt 20000 ]; do echo 0123456789; i=$((i + 1)); done");

    const Program::Result result = run({QStringLiteral("models")});

    QCOMPARE(result.output, QByteArray("z\na\na\n\377\0no line end", 19) + QByteArray("0123456789\n").repeated(20000));
    QCOMPARE(result.exitCode, 0);
}

void tst_TerminalRequests::modelsPassesTheInput()
{
    installCli("while read -r line; do echo \"read $line\"; done; echo end");

    QCOMPARE(run({QStringLiteral("models")}).output, QByteArray("end\n")); // from the null device
    const Program::Result result =
        Program::run({QStringLiteral("-c"), QStringLiteral("printf 'a\\nb\\n' | \"$0\" models"), Program::path()},
                     m_environment, QStringLiteral("/bin/sh"));

    QVERIFY(result.finished);
    QCOMPARE(result.output, QByteArray("read a\nread b\nend\n"));
    QCOMPARE(result.exitCode, 0);
}

void tst_TerminalRequests::modelsWithoutCli()
{
    const Program::Result result = run({QStringLiteral("models")});

    const QByteArray start = "tovictl: failed to launch the bundled `loomra` CLI: ";
    QVERIFY2(result.errors.startsWith(start), result.errors.constData());
    QVERIFY(result.errors.size() > start.size() + 1);
    QCOMPARE(result.errors.indexOf('\n'), result.errors.size() - 1);
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.exitCode, 127);
}

void tst_TerminalRequests::modelsWithCliThatIsNotExecutable()
{
    installCli("echo never", false);

    const Program::Result result = run({QStringLiteral("models")});

    QVERIFY2(result.errors.startsWith("tovictl: failed to launch the bundled `loomra` CLI: "),
             result.errors.constData());
    QCOMPARE(result.output, QByteArray());
    QCOMPARE(result.exitCode, 127);
}

void tst_TerminalRequests::modelsWithCliThatCrashes()
{
    installCli("echo before; kill -SEGV $$");

    const Program::Result result = run({QStringLiteral("models")});

    // The exit code is the number of the child's signal.
    QVERIFY(!result.crashed);
    QCOMPARE(result.output, QByteArray("before\n"));
    QCOMPARE(result.errors, QByteArray());
    QCOMPARE(result.exitCode, 11);
}

void tst_TerminalRequests::modelsWinsOverAWindow()
{
    installCli("echo the list");

    QCOMPARE(run({QStringLiteral("models"), QStringLiteral("--main")}).output, QByteArray("the list\n"));
    QCOMPARE(run({QStringLiteral("--main"), QStringLiteral("models")}).output, QByteArray("the list\n"));
}

REGISTER_TEST(tst_TerminalRequests, QCoreApplication)
#include "tst_TerminalRequests.moc"
