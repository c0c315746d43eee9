// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

// The part of libwhisper that the worker uses, and a few fields that it must not change. Parameters are passed by
// value, so this header must be used with the stand-in only.

struct whisper_context;

enum whisper_sampling_strategy
{
    WHISPER_SAMPLING_GREEDY,
    WHISPER_SAMPLING_BEAM_SEARCH,
};

struct whisper_context_params
{
    bool use_gpu;
    int gpu_device;
};

struct whisper_full_params
{
    whisper_sampling_strategy strategy;
    int n_threads;
    int n_max_text_ctx;
    bool translate;
    bool no_context;
    bool no_timestamps;
    bool single_segment;
    bool print_special;
    bool print_progress;
    bool print_realtime;
    bool print_timestamps;
    const char *language;
    bool detect_language;
    float temperature;
};

whisper_context_params whisper_context_default_params();
whisper_context *whisper_init_from_file_with_params(const char *path, whisper_context_params params);
void whisper_free(whisper_context *context);
whisper_full_params whisper_full_default_params(whisper_sampling_strategy strategy);
int whisper_full(whisper_context *context, whisper_full_params params, const float *samples, int n_samples);
int whisper_full_n_segments(whisper_context *context);
const char *whisper_full_get_segment_text(whisper_context *context, int index);
