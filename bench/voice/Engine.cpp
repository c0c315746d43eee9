// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Engine.h"

#include "SherpaEngine.h"
#include "support/Figures.h"

#include <QDir>
#include <QFile>

namespace
{

void touch(const QString &path)
{
    QFile file(path);
    if (!QDir().mkpath(path.section(QLatin1Char('/'), 0, -2)) || !file.open(QIODevice::WriteOnly)
        || !file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)) {
        notMeasured("cannot install an engine in the home");
    }
}

} // namespace

void Engine::install()
{
    const SherpaEngine &engine = SherpaEngine::moonshine();
    const QString root = QDir::homePath() + QStringLiteral("/experiments/sherpa-onnx-prebuilt-v1.12.28/");
    const QString model = QDir::homePath()
        + QStringLiteral("/.local/share/tovi-forkeldaos/models/sherpa-onnx-moonshine-tiny-en-quantized-2026-02-27/");
    touch(root + engine.program);
    touch(root + QStringLiteral("lib/library"));
    for (const SherpaEngine::ModelFile &file : engine.modelFiles) {
        touch(model + file.name);
    }
}
