// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "SearchRoots.h"

#include <QString>

//! Where the models and programs of the speech engines lie. Each search gives the first place that exists, or an empty
//! text. They look at the disk and keep nothing: a place that appears later is found by the next search. Any thread.
namespace ModelPaths
{

//! The model file of a whisper backend. An id that isn't known has the base model; no other file is taken for a missing
//! one.
QString resolveWhisperModelPath(const QString &backend, const SearchRoots &roots);

//! The directory of the model.
//! @param candidate is the answer if it is a directory
QString resolveMoonshineModelDir(const QString &candidate, const SearchRoots &roots);
QString resolveNemotronModelDir(const QString &candidate, const SearchRoots &roots);

//! The directory of the model for live transcription: the user's own only, none of the system.
QString resolveStreamingModelDir(const SearchRoots &roots);

//! The directory with the libraries of the sherpa-onnx that has the program.
//! @param program its path in the installation, such as "bin/sherpa-onnx"
QString findSherpaLibDir(const QString &program, const SearchRoots &roots);
//! The path of the program in the same installation.
QString findSherpaBinary(const QString &program, const SearchRoots &roots);

} // namespace ModelPaths
