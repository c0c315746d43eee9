// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

//! Model files for the real libwhisper that ignore the audio: the library loads and runs them, and always returns the
//! words that were written into the model. A few megabytes, created in milliseconds.
namespace TinyModel
{

//! A model that returns these words for every started 30 s of audio.
//! @param words at most 31, each with the space before it if there is one
QByteArray saying(const QList<QByteArray> &words);

//! A model that always detects silence.
QByteArray silent();

//! The size of a model before its first tensor, in bytes. The library aborts the process if a file is shorter than
//! that.
int headSize(const QList<QByteArray> &words);

//! Writes a model file and creates the directories above it. @return its path
QString write(const QString &path, const QByteArray &model);

} // namespace TinyModel
