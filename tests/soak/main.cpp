// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// See scripts/soak.

#include "Census.h"
#include "Soak.h"

#include "Application.h"

#include <QDir>
#include <QMap>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace
{

constexpr int s_keyLength = 120; // characters
constexpr int s_lastMessages = 100;

std::mutex s_mutex;
//! Warnings by their first words, without numbers.
QMap<QString, int> s_warnings;
//! The last messages, cut.
QStringList s_last;

//! Takes the place of the log, which would be longer than all replies.
void countWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const std::lock_guard lock(s_mutex);
    s_last.append(message.left(s_keyLength));
    if (s_last.size() > s_lastMessages) {
        s_last.removeFirst();
    }
    if (type == QtDebugMsg || type == QtInfoMsg) {
        return;
    }
    QString key;
    for (const QChar letter : message.left(s_keyLength)) {
        key += letter.isDigit() ? QLatin1Char('0') : letter;
    }
    ++s_warnings[key.replace(QLatin1String("00"), QLatin1String("0"))];
}

void printLastMessages()
{
    for (const QString &message : qAsConst(s_last)) {
        std::fprintf(stderr, "    %s\n", qPrintable(message));
    }
}

//! @return whether there were only warnings about what the bridge sent
bool reportWarnings()
{
    bool isFine = true;
    for (auto warning = s_warnings.constBegin(); warning != s_warnings.constEnd(); ++warning) {
        std::fprintf(stderr, "%8d x %s\n", warning.value(), qPrintable(warning.key()));
        // Intentional: MessageRow logs that it has no component for these two.
        const bool isKnown = warning.key().contains(QLatin1String("botCodeComponent"))
            || warning.key().contains(QLatin1String("botCalloutComponent"));
        isFine = isFine && (isKnown || !warning.key().startsWith(QLatin1String("qrc:")))
            && !warning.key().startsWith(QLatin1String("QObject"));
    }
    return isFine;
}

bool has(int argc, char **argv, const char *name)
{
    return std::any_of(argv + 1, argv + argc, [name](const char *argument) { return qstrcmp(argument, name) == 0; });
}

int amount(int argc, char **argv, const char *name)
{
    for (int i = 2; i + 1 < argc; ++i) {
        if (qstrcmp(argv[i], name) == 0) {
            return std::atoi(argv[i + 1]);
        }
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const Amounts amounts {amount(argc, argv, "--replies"), amount(argc, argv, "--losses"),
                           amount(argc, argv, "--utterances")};
    const QByteArray mode = argc > 1 ? argv[1] : "";

    qInstallMessageHandler(countWarning);
    Soak::reportState = printLastMessages;
    const QString temporary = QDir::homePath() + QStringLiteral("/tmp");
    QDir().mkpath(temporary);
    qputenv("TMPDIR", QFile::encodeName(temporary));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(QDir::homePath() + QStringLiteral("/.cache")));
    if (!has(argc, argv, "--gl")) {
        qputenv("QT_QUICK_BACKEND", "software");
    }
    Application::prepareEnvironment();
    Census::start();

    int status = EXIT_FAILURE;
    if (mode == "bar") {
        status = Soak::runBar(argv[0], amounts);
    } else if (mode == "main") {
        status = Soak::runMain(argv[0], amounts);
    } else if (mode == "voice") {
        status = Soak::runVoice(argv[0], amounts);
    } else {
        Soak::fail("usage: soak bar|main|voice [--replies N] [--losses N] [--utterances N] [--gl]");
    }
    if (!reportWarnings()) {
        std::fprintf(stderr, "soak: the program's QML reported errors\n");
        status = EXIT_FAILURE;
    }
    // No unwinding: all that counts was counted.
    std::fflush(stdout);
    std::_Exit(status);
}
