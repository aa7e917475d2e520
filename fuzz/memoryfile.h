// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A file that lies in memory.
#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>

/// A regular file without a disk under it, which this process can open by its path. It cannot be
/// removed. Each content has a later time of change than the one before, so that a reader that
/// caches by time and size notices.
class MemoryFile
{
public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    void setContent(const uint8_t *bytes, std::size_t size);
    QString path() const;

private:
    const int descriptor;
    long changes = 0;
};
