// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <cstddef>

// Beside whisper.h, so that the worker doesn't find the header of a real library: where computing is done by plugins,
// none is loaded before somebody asks for all.

std::size_t ggml_backend_reg_count();
void ggml_backend_load_all();
