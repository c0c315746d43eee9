// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

//! Model files of libwhisper that no audio can impress: the real library loads one, runs all of it and says the words
//! that were written into it. A few megabytes, made in milliseconds.
namespace TinyModel
{

//! What a model says to every 30 s of audio, or what begins of that.
//! @param words at most 31, as the model has them: with the blanks before them
QByteArray saying(const QList<QByteArray> &words);

//! A model that hears nothing but silence.
QByteArray silent();

//! Bytes of a model before its first tensor: a file that is cut within these is not to be given to the library, which
//! ends the process.
int headSize(const QList<QByteArray> &words);

//! Writes a file, and the directories above it. @return its path
QString write(const QString &path, const QByteArray &model);

} // namespace TinyModel
