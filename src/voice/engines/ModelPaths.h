// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"

#include <QString>

//! Where the models and programs of the speech engines are installed. Each search returns the first place that exists,
//! or an empty string. Nothing is cached: the next search finds what was installed in the meantime. Any thread.
namespace ModelPaths
{

//! The model file of a whisper backend. An unknown id has the base model; apart from that no other model is used in
//! place of a missing one.
QString resolveWhisperModelPath(const QString &backend, const SearchRoots &roots);

//! The directory of the model.
//! @param candidate is returned if it is a directory
QString resolveMoonshineModelDir(const QString &candidate, const SearchRoots &roots);
QString resolveNemotronModelDir(const QString &candidate, const SearchRoots &roots);

//! The directory of the model for live transcription. Searches the user's home only.
QString resolveStreamingModelDir(const SearchRoots &roots);

//! The directory with the libraries of the sherpa-onnx installation that contains the program.
//! @param program relative path in the installation, such as "bin/sherpa-onnx"
QString findSherpaLibDir(const QString &program, const SearchRoots &roots);
//! The path of the program in the same installation.
QString findSherpaBinary(const QString &program, const SearchRoots &roots);

} // namespace ModelPaths
