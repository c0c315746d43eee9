// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "SherpaEngine.h"

#include "ModelPaths.h"

using namespace std::chrono_literals;

const SherpaEngine &SherpaEngine::moonshine()
{
    static const SherpaEngine s_engine {
        .program = QLatin1String("bin/sherpa-onnx-offline"),
        .wavPattern = QLatin1String("/tovi-moonshine-XXXXXX.wav"),
        .modelFiles =
            {
                {QLatin1String("--moonshine-encoder="), QLatin1String("encoder_model.ort")},
                {QLatin1String("--moonshine-merged-decoder="), QLatin1String("decoder_model_merged.ort")},
                {QLatin1String("--tokens="), QLatin1String("tokens.txt")},
            },
        .runTimeout = 120s,
        .logWord = QLatin1String("OfflineRecognizer"),
        .resolveModelDir = ModelPaths::resolveMoonshineModelDir,

        .notLoaded = QLatin1String("Moonshine model not loaded"),
        .startFailed = QLatin1String("Failed to start sherpa-onnx-offline"),
        .timedOut = QLatin1String("sherpa-onnx-offline timed out"),
        .runFailed = QLatin1String("sherpa-onnx-offline failed: "),

        .unavailable = QLatin1String("Moonshine unavailable. Install sherpa-onnx-offline and download the tiny-en "
                                     "model (see ~/experiments/whisper-voice-test/setup-moonshine.sh)"),
        .dirNotFound = QLatin1String("Moonshine model dir not found"),
        .loadFailed = QLatin1String("Failed to load Moonshine model: "),

        .programNotFound = "MoonshineWorker: sherpa-onnx-offline not found",
        .modelDirMissing = "MoonshineWorker: model dir missing:",
        .incompleteModel = "MoonshineWorker: incomplete model in",
        .loaded = "MoonshineWorker: loaded",
        .loading = "VoiceBridge: loading moonshine model",
        .available = "VoiceBridge: moonshine available:",
    };
    return s_engine;
}

const SherpaEngine &SherpaEngine::nemotron()
{
    static const SherpaEngine s_engine {
        .program = QLatin1String("bin/sherpa-onnx"),
        .wavPattern = QLatin1String("/tovi-nemotron-XXXXXX.wav"),
        .modelFiles =
            {
                {QLatin1String("--encoder="), QLatin1String("encoder.int8.onnx")},
                {QLatin1String("--decoder="), QLatin1String("decoder.int8.onnx")},
                {QLatin1String("--joiner="), QLatin1String("joiner.int8.onnx")},
                {QLatin1String("--tokens="), QLatin1String("tokens.txt")},
            },
        .runTimeout = 180s,
        .logWord = QLatin1String("OnlineRecognizer"),
        .resolveModelDir = ModelPaths::resolveNemotronModelDir,

        .notLoaded = QLatin1String("Nemotron model not loaded"),
        .startFailed = QLatin1String("Failed to start sherpa-onnx"),
        .timedOut = QLatin1String("sherpa-onnx timed out"),
        .runFailed = QLatin1String("sherpa-onnx failed: "),

        .unavailable = QLatin1String("Nemotron unavailable. Install sherpa-onnx and download the 560ms INT8 "
                                     "model (see ~/experiments/whisper-voice-test/setup-nemotron.sh)"),
        .dirNotFound = QLatin1String("Nemotron model dir not found"),
        .loadFailed = QLatin1String("Failed to load Nemotron model: "),

        .programNotFound = "NemotronWorker: sherpa-onnx not found",
        .modelDirMissing = "NemotronWorker: model dir missing:",
        .incompleteModel = "NemotronWorker: incomplete model in",
        .loaded = "NemotronWorker: loaded",
        .loading = "VoiceBridge: loading nemotron model",
        .available = "VoiceBridge: nemotron available:",
    };
    return s_engine;
}
