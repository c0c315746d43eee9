// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// Preloaded into a program by FaultInjection: functions of the C library that fail, or return another time. They call
// the kernel directly, because they may be called before the C library is ready. What the C library calls itself, such
// as open() in fopen(), isn't replaced.

#include "FaultState.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <linux/limits.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

namespace
{

const FaultState *mappedState()
{
    const char *file = std::getenv(FaultState::FileVariable);
    const long fd = file ? syscall(SYS_openat, AT_FDCWD, file, O_RDONLY | O_CLOEXEC) : -1;
    if (fd < 0) {
        return nullptr;
    }
    void *memory = ::mmap(nullptr, sizeof(FaultState), PROT_READ, MAP_SHARED, static_cast<int>(fd), 0);
    syscall(SYS_close, fd);
    return memory == MAP_FAILED ? nullptr : static_cast<const FaultState *>(memory);
}

const FaultState *state()
{
    static const FaultState *const s_state = mappedState();
    return s_state;
}

std::int64_t clockOffset()
{
    return state() ? state()->clockOffset.load() : 0;
}

std::int32_t disk()
{
    return state() ? state()->disk.load() : FaultState::Works;
}

//! Whether an absolute path is in one of the folders.
bool isAffected(const char *path)
{
    const char *folder = std::getenv(FaultState::FoldersVariable);
    while (path && path[0] == '/' && path[1] == '/') { // Qt with the root directory as home
        ++path;
    }
    while (path && folder && *folder) {
        const std::size_t length = std::strcspn(folder, ":");
        if (std::strncmp(path, folder, length) == 0 && (path[length] == '/' || path[length] == '\0')) {
            return true;
        }
        folder += length + (folder[length] == ':' ? 1 : 0);
    }
    return false;
}

bool isReadOnly(const char *path)
{
    return disk() == FaultState::ReadOnly && isAffected(path);
}

//! Whether a file that is open can't take another byte.
bool isFull(int fd)
{
    if (disk() != FaultState::Full) {
        return false;
    }
    char link[32];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", fd);
    char path[PATH_MAX];
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link, path, sizeof path - 1);
    if (length < 0) {
        return false;
    }
    path[length] = '\0';
    return isAffected(path);
}

template<typename... Arguments>
long unless(int error, long number, Arguments... arguments)
{
    if (error != 0) {
        errno = error;
        return -1;
    }
    return syscall(number, arguments...);
}

//! The error of a change at a path, 0 for none.
int errorAt(const char *path)
{
    return isReadOnly(path) ? EROFS : 0;
}

int openFile(int folder, const char *path, int flags, mode_t mode)
{
    const bool writes = (flags & (O_WRONLY | O_RDWR | O_CREAT | O_TRUNC)) != 0;
    return static_cast<int>(unless(writes ? errorAt(path) : 0, SYS_openat, folder, path, flags, mode));
}

mode_t modeIn(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

// NOLINTBEGIN: the names and signatures are those of the C library
extern "C" {

time_t time(time_t *result) noexcept
{
    timespec now = {};
    syscall(SYS_clock_gettime, CLOCK_REALTIME, &now);
    const time_t seconds = now.tv_sec + clockOffset();
    if (result) {
        *result = seconds;
    }
    return seconds;
}

int gettimeofday(timeval *__restrict result, void *__restrict zone) noexcept
{
    const long status = syscall(SYS_gettimeofday, result, zone);
    if (status == 0) {
        result->tv_sec += clockOffset();
    }
    return static_cast<int>(status);
}

int clock_gettime(clockid_t clock, timespec *result) noexcept
{
    const long status = syscall(SYS_clock_gettime, clock, result);
    if (status == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE)) {
        result->tv_sec += clockOffset();
    }
    return static_cast<int>(status);
}

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openFile(AT_FDCWD, path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openFile(AT_FDCWD, path, flags | O_LARGEFILE, mode);
}

int openat(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openFile(folder, path, flags, mode);
}

int openat64(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeIn(flags, arguments);
    va_end(arguments);
    return openFile(folder, path, flags | O_LARGEFILE, mode);
}

int mkdir(const char *path, mode_t mode) noexcept
{
    const int error = disk() == FaultState::Full && isAffected(path) ? ENOSPC : errorAt(path);
    return static_cast<int>(unless(error, SYS_mkdirat, AT_FDCWD, path, mode));
}

int rename(const char *from, const char *to) noexcept
{
    return static_cast<int>(unless(errorAt(to), SYS_renameat, AT_FDCWD, from, AT_FDCWD, to));
}

int link(const char *from, const char *to) noexcept
{
    return static_cast<int>(unless(errorAt(to), SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    return static_cast<int>(unless(errorAt(to), SYS_linkat, fromFolder, from, toFolder, to, flags));
}

int unlink(const char *path) noexcept
{
    return static_cast<int>(unless(errorAt(path), SYS_unlinkat, AT_FDCWD, path, 0));
}

int access(const char *path, int mode) noexcept
{
    return static_cast<int>(unless((mode & W_OK) != 0 ? errorAt(path) : 0, SYS_faccessat, AT_FDCWD, path, mode));
}

ssize_t write(int fd, const void *bytes, size_t size)
{
    return unless(isFull(fd) ? ENOSPC : 0, SYS_write, fd, bytes, size);
}

ssize_t writev(int fd, const iovec *parts, int count)
{
    return unless(isFull(fd) ? ENOSPC : 0, SYS_writev, fd, parts, count);
}

ssize_t pwrite64(int fd, const void *bytes, size_t size, off64_t offset)
{
    return unless(isFull(fd) ? ENOSPC : 0, SYS_pwrite64, fd, bytes, size, offset);
}

int ftruncate64(int fd, off64_t size) noexcept
{
    return static_cast<int>(unless(isFull(fd) && size > 0 ? ENOSPC : 0, SYS_ftruncate, fd, size));
}

} // extern "C"
// NOLINTEND
