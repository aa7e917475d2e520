// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A file that lies in memory.
#include "memoryfile.h"

#include "check.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

MemoryFile::MemoryFile() :
    descriptor(memfd_create("fuzz", MFD_CLOEXEC))
{
    FUZZ_CHECK(descriptor >= 0, QStringLiteral("no file in memory"));
}

MemoryFile::~MemoryFile()
{
    close(descriptor);
}

void MemoryFile::setContent(const uint8_t *bytes, std::size_t size)
{
    const bool written = ftruncate(descriptor, 0) == 0
        && pwrite(descriptor, bytes, size, 0) == static_cast<ssize_t>(size);
    FUZZ_CHECK(written, QStringLiteral("file in memory not written"));

    const timespec change {++changes, 0};
    const timespec times[] = {change, change};
    FUZZ_CHECK(futimens(descriptor, times) == 0, QStringLiteral("time of change not set"));
}

QString MemoryFile::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(descriptor);
}
