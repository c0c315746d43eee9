// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "CliModels.h"

#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>

namespace CliModels
{

namespace
{

QString fullIdOf(const QJsonValue &row)
{
    return row.toObject().value(QLatin1String("fullId")).toString();
}

} // namespace

void start(QProcess &cli)
{
    cli.start(QStringLiteral("loomra"), {QStringLiteral("models")});
}

QJsonArray rowsIn(const QString &output)
{
    static const QRegularExpression s_lineEnds(QStringLiteral("[\r\n]+"));
    QJsonArray rows;
    for (const QString &line : output.split(s_lineEnds, Qt::SkipEmptyParts)) {
        // Split at the first slash: a model's name may contain more.
        const int slash = line.indexOf(QLatin1Char('/'));
        const QString provider = line.left(slash).trimmed();
        const QString model = line.mid(slash + 1).trimmed();
        if (slash < 0 || provider.isEmpty() || model.isEmpty()) {
            continue;
        }
        const QString fullId = provider + QLatin1Char('/') + model;
        rows.append(QJsonObject {
            {QStringLiteral("id"), model},
            {QStringLiteral("name"), model},
            {QStringLiteral("provider"), provider},
            {QStringLiteral("fullId"), fullId},
            {QStringLiteral("displayName"), fullId},
            {QStringLiteral("free"), fullId.contains(QLatin1String("free"), Qt::CaseInsensitive)},
        });
    }
    return rows;
}

QJsonArray merge(QJsonArray bridgeRows, const QJsonArray &cliRows)
{
    QSet<QString> known;
    for (const QJsonValue row : qAsConst(bridgeRows)) {
        known.insert(fullIdOf(row));
    }
    for (const QJsonValue row : cliRows) {
        const QString fullId = fullIdOf(row);
        if (!fullId.isEmpty() && !known.contains(fullId)) {
            known.insert(fullId);
            bridgeRows.append(row);
        }
    }
    return bridgeRows;
}

QJsonArray list(std::chrono::milliseconds timeout)
{
    QProcess cli;
    // A pipe would stay open, and a CLI that reads its input to the end would never exit.
    cli.setStandardInputFile(QProcess::nullDevice());
    start(cli);
    if (!cli.waitForFinished(static_cast<int>(timeout.count()))) {
        cli.kill();
        cli.waitForFinished();
        return {};
    }
    if (cli.exitStatus() != QProcess::NormalExit || cli.exitCode() != 0) {
        return {};
    }
    return rowsIn(QString::fromUtf8(cli.readAllStandardOutput()));
}

} // namespace CliModels
