// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Fuzzes the parser of the agent CLI's list of models, and the merge with the list of the bridge.
//
// The first line of an input is the list of the bridge in JSON, the rest is the output of the CLI.

#include "CliModels.h"
#include "Require.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <cstdint>

namespace
{

QString fullIdOf(const QJsonValue &row)
{
    return row.toObject().value(QLatin1String("fullId")).toString();
}

void checkRow(const QJsonObject &row)
{
    const auto text = [&row](const char *key) { return row.value(QLatin1String(key)).toString(); };
    const QString provider = text("provider");
    const QString fullId = text("fullId");
    require(!provider.isEmpty() && provider == provider.trimmed() && !provider.contains(QLatin1Char('/')),
            "a provider is the text before the first slash");
    require(!text("id").isEmpty() && text("id") == text("id").trimmed() && text("id") == text("name"),
            "id and name are the model");
    require(fullId == provider + QLatin1Char('/') + text("id"), "a full id is the provider and the model");
    require(text("displayName") == fullId, "a model is shown by its full id");
    require(row.value(QLatin1String("free")) == fullId.contains(QLatin1String("free"), Qt::CaseInsensitive),
            "a model is free if its full id contains \"free\"");
}

void checkMerge(const QJsonArray &bridgeRows, const QJsonArray &cliRows)
{
    const QJsonArray merged = CliModels::merge(bridgeRows, cliRows);
    QSet<QString> known;
    for (int i = 0; i < merged.size(); ++i) {
        const QString fullId = fullIdOf(merged.at(i));
        if (i < bridgeRows.size()) {
            require(merged.at(i) == bridgeRows.at(i), "the bridge's rows come first and unchanged");
        } else {
            require(!fullId.isEmpty() && !known.contains(fullId), "a row of the CLI appears once");
        }
        known.insert(fullId);
    }
    for (const QJsonValue row : cliRows) {
        require(fullIdOf(row).isEmpty() || known.contains(fullIdOf(row)), "no row of the CLI is lost");
    }
    require(CliModels::merge(merged, cliRows) == merged, "a second merge changes nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const int lineEnd = input.indexOf('\n');
    const QJsonArray bridgeRows = QJsonDocument::fromJson(input.left(lineEnd)).array();
    const QString output = QString::fromUtf8(input.mid(lineEnd + 1));

    const QJsonArray cliRows = CliModels::rowsIn(output);
    require(cliRows.size() <= output.count(QLatin1Char('/')), "each row comes from a separate slash");
    for (const QJsonValue row : cliRows) {
        checkRow(row.toObject());
    }
    checkMerge(bridgeRows, cliRows);
    if (!bridgeRows.isEmpty()) {
        checkMerge(cliRows, bridgeRows);
    }
    return 0;
}
