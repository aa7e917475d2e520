// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines of the export file.
#include "export/exportfile.h"

#include <QIODevice>

#include <cstring>
#include <limits>

namespace {

constexpr int blockSize = 1 << 16;
constexpr int longestBlock = 1 << 26;
constexpr int longestLine = std::numeric_limits<int>::max() - 2 * longestBlock;

/// Where a byte stands among so many; -1 when it does not.
int indexOf(char byte, const char *bytes, int count)
{
    const void *const found = std::memchr(bytes, byte, count);
    return found ? static_cast<int>(static_cast<const char *>(found) - bytes) : -1;
}

} // namespace

ExportFile::ExportFile(QIODevice *source) :
    device(source)
{ }

bool ExportFile::nextLine(QString *line)
{
    while (findLine()) {
        const char *const bytes = buffer.constData() + lineStart;
        const int nul = indexOf('\0', bytes, lineSize);
        *line = QString::fromUtf8(bytes, nul < 0 ? lineSize : nul).trimmed();
        if (!line->isEmpty())
            return true;
    }
    return false;
}

QByteArray ExportFile::lineBytes() const
{
    return QByteArray::fromRawData(buffer.constData() + lineStart, lineSize);
}

/// Goes on to the next line, be it empty. False when there is none.
bool ExportFile::findLine()
{
    int end = findEnd(start);
    while (end < 0) {
        const int searched = buffer.size() - start;
        if (!readOn())
            break;
        end = findEnd(start + searched);
    }
    lineStart = start;
    lineSize = (end < 0 ? buffer.size() : end) - start;
    if (end < 0 && lineSize == 0)
        return false;
    start = end < 0 ? buffer.size() : end + 1;
    ++number;
    return true;
}

/// Where the next line end stands in the buffer; -1 when there is none.
int ExportFile::findEnd(int from) const
{
    const int end = indexOf('\n', buffer.constData() + from, buffer.size() - from);
    return end < 0 ? -1 : from + end;
}

/// Reads behind what is left of the buffer, and the more the longer a line already is.
bool ExportFile::readOn()
{
    buffer.remove(0, start);
    start = 0;
    const int left = buffer.size();
    if (left > longestLine)
        return false; // it goes on as another line
    buffer.resize(left + qBound(blockSize, left, longestBlock));
    const qint64 count = device->read(buffer.data() + left, buffer.size() - left);
    buffer.resize(left + static_cast<int>(qMax(count, Q_INT64_C(0))));
    return count > 0;
}
