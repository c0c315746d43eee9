// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <cstddef>

// Hides the header of a real library. Like a library whose compute backends are plugins: none is loaded by default.

std::size_t ggml_backend_reg_count();
void ggml_backend_load_all();
