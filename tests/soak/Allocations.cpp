// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

#include "Allocations.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>

#include <malloc.h>

namespace
{

// Both are constant-initialized, because the first allocations precede main().
std::atomic<qint64> s_blocks {0};
std::atomic<qint64> s_bytes {0};

} // namespace

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace
{

void *counted(void *block)
{
    if (block) {
        s_blocks.fetch_add(1, std::memory_order_relaxed);
        s_bytes.fetch_add(static_cast<qint64>(malloc_usable_size(block)), std::memory_order_relaxed);
    }
    return block;
}

void discount(void *block)
{
    if (block) {
        s_blocks.fetch_sub(1, std::memory_order_relaxed);
        s_bytes.fetch_sub(static_cast<qint64>(malloc_usable_size(block)), std::memory_order_relaxed);
    }
}

} // namespace

extern "C" {

void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void *__libc_memalign(size_t alignment, size_t size);
void __libc_free(void *block);

Q_DECL_EXPORT void *malloc(size_t size)
{
    return counted(__libc_malloc(size));
}

Q_DECL_EXPORT void *calloc(size_t count, size_t size)
{
    return counted(__libc_calloc(count, size));
}

Q_DECL_EXPORT void *realloc(void *block, size_t size)
{
    const qint64 before = block ? static_cast<qint64>(malloc_usable_size(block)) : 0;
    void *moved = __libc_realloc(block, size);
    if (!moved && size > 0) {
        return nullptr; // the block is as it was
    }
    if (block) {
        s_blocks.fetch_sub(1, std::memory_order_relaxed);
        s_bytes.fetch_sub(before, std::memory_order_relaxed);
    }
    return counted(moved);
}

Q_DECL_EXPORT void *memalign(size_t alignment, size_t size)
{
    return counted(__libc_memalign(alignment, size));
}

Q_DECL_EXPORT void *aligned_alloc(size_t alignment, size_t size)
{
    return counted(__libc_memalign(alignment, size));
}

Q_DECL_EXPORT int posix_memalign(void **block, size_t alignment, size_t size)
{
    *block = counted(__libc_memalign(alignment, size));
    return *block ? 0 : ENOMEM;
}

Q_DECL_EXPORT void free(void *block)
{
    discount(block);
    __libc_free(block);
}

} // extern "C"

bool Allocations::areCounted()
{
    return true;
}

#else

bool Allocations::areCounted()
{
    return false;
}

#endif

qint64 Allocations::blocks()
{
    return s_blocks.load(std::memory_order_relaxed);
}

qint64 Allocations::bytes()
{
    return s_bytes.load(std::memory_order_relaxed);
}
