// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "TerminalRequests.h"

#include "CliModels.h"

#include <QProcess>

#include <array>
#include <cstdio>

namespace TerminalRequests
{

namespace
{

constexpr int s_exitOk = 0;
constexpr int s_exitNotFinished = 1;
constexpr int s_exitRefused = 2;
constexpr int s_exitNotLaunched = 127; // the code of a shell for a command that isn't found

constexpr const char *s_promptPrefix = "--prompt=";

struct Spelling
{
    const char *argument;
    Request request;
};

constexpr std::array s_spellings {
    Spelling {"--prompt", Request::Prompt}, Spelling {"-p", Request::Prompt},
    Spelling {"help", Request::Usage},      Spelling {"--help", Request::Usage},
    Spelling {"-h", Request::Usage},        Spelling {"--version", Request::Version},
    Spelling {"-V", Request::Version},      Spelling {"uninstall", Request::Uninstall},
    Spelling {"test", Request::Test},       Spelling {"models", Request::Models},
};

constexpr const char *s_promptRefusal = "tovictl: please run `tovictl --prompt ...` via the /usr/bin/tovictl wrapper,\n"
                                        "       not the libexec binary directly.\n";

constexpr const char *s_uninstallRefusal = "tovictl: please run `tovictl uninstall` via the /usr/bin/tovictl wrapper,\n"
                                           "       not the libexec binary directly.\n"
                                           "       (or run /usr/libexec/tovi-forkeldaos/tovictl-uninstall directly)\n";

constexpr const char *s_testRefusal = "tovictl: please run `tovictl test` via the /usr/bin/tovictl wrapper,\n"
                                      "       not the libexec binary directly.\n"
                                      "       (the wrapper execs node on the diagnostic script)\n";

constexpr const char *s_version = "tovictl " TOVICTL_VERSION "\n";

constexpr const char *s_usage =
    R"(Usage: tovictl [MODE | SUBCOMMAND] [OPTIONS]

Tovi is the KeldaOS desktop AI assistant.  By default it opens the
OmniBar - the floating prompt bar wired to the system bridge.

Modes (open the GUI):
  (no args)            Open the OmniBar (default).
  -o, --omni-bar       Open the OmniBar explicitly.
  -m, --main           Open the full Tovi chat / settings window.
  -t, --tray           Open the tray-icon view (mainly for testing).
  --voice-test         Open the voice STT validation window (mic +
                       whisper transcription, no bridge required).

Subcommands (run in the terminal, no GUI):
  --prompt TEXT        Send one chat prompt through the running bridge.
                       Optional: -m, --model MODEL
  models               List available AI models (provider/id).
  test                 Run sanity checks on the local stack (env,
                       provider auth, bridge service, models,
                       MCP servers). Use `--chat` for an end-to-end
                       prompt probe, `--json` for machine output,
                       `--help` for full options.
  uninstall            Stop the bridge, purge the package, and remove
                       per-user state. Run with `--help` for options.
  help, -h, --help     Show this message and exit.
  -V, --version        Print tovictl version and exit.

Examples:
  tovictl                       # open the OmniBar
  tovictl --main                # open the full chat window
  tovictl --prompt "Say hello" # one-shot terminal prompt
  tovictl --prompt "Hi" -m loomra/qwen3.6-plus-free
  tovictl models                # list models in the terminal
  tovictl models | grep openai  # filter the model list
  tovictl test                  # quick health check on a fresh box
  tovictl test --chat           # also send a real prompt
  tovictl uninstall             # interactive cleanup
  tovictl uninstall -y          # unattended cleanup
)";

//! Writes UTF-8 text and flushes it; @return the exit code that goes with the text.
int print(std::FILE *stream, const QByteArray &text, int exitCode)
{
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stream);
    std::fflush(stream);
    return exitCode;
}

//! Runs the agent CLI with its input and output forwarded unchanged.
int listModels()
{
    QProcess cli;
    cli.setProcessChannelMode(QProcess::ForwardedChannels); // of output only
    cli.setInputChannelMode(QProcess::ForwardedInputChannel);
    CliModels::start(cli);
    if (!cli.waitForStarted(static_cast<int>(LaunchTimeout.count()))) {
        return print(stderr, "tovictl: failed to launch the bundled `loomra` CLI: " + cli.errorString().toUtf8() + '\n',
                     s_exitNotLaunched);
    }
    if (!cli.waitForFinished(-1)) {
        return print(stderr, "tovictl: `loomra models` did not finish: " + cli.errorString().toUtf8() + '\n',
                     s_exitNotFinished);
    }
    return cli.exitCode();
}

int answer(Request request)
{
    switch (request) {
    case Request::Prompt:
        return print(stderr, s_promptRefusal, s_exitRefused);
    case Request::Usage:
        return print(stdout, s_usage, s_exitOk);
    case Request::Version:
        return print(stdout, s_version, s_exitOk);
    case Request::Uninstall:
        return print(stderr, s_uninstallRefusal, s_exitRefused);
    case Request::Test:
        return print(stderr, s_testRefusal, s_exitRefused);
    case Request::Models:
        return listModels();
    }
    Q_UNREACHABLE();
}

} // namespace

std::optional<Request> requestOf(const QString &argument)
{
    for (const Spelling &spelling : s_spellings) {
        if (argument == QLatin1String(spelling.argument)) {
            return spelling.request;
        }
    }
    if (argument.startsWith(QLatin1String(s_promptPrefix))) {
        return Request::Prompt;
    }
    return std::nullopt;
}

std::optional<int> answer(int argc, const char *const *argv)
{
    for (int i = 1; i < argc; ++i) {
        if (const auto request = requestOf(QString::fromLocal8Bit(argv[i]))) {
            return answer(*request);
        }
    }
    return std::nullopt;
}

} // namespace TerminalRequests
