// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "NemotronStreamingWorker.h"

#include <QDebug>

bool NemotronStreamingWorker::loadModel(const QString &modelDir)
{
    Q_UNUSED(modelDir)
    m_modelName.clear();
    m_loaded = false;
    qWarning("NemotronStreamingWorker: built without HAVE_SHERPA_ONNX");
    return false;
}
