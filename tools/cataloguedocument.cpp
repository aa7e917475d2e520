// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Writes a page of docs/ from the catalogue, the one that it is built for: PROGRAM FILE.
#include TALVENHR_PAGE_HEADER

#include <QFile>
#include <QSaveFile>

#include <cstdio>

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s FILE\n", argv[0]);
        return 2;
    }
    QSaveFile file(QFile::decodeName(argv[1]));
    const bool written = file.open(QIODevice::WriteOnly)
        && file.write(TALVENHR_PAGE().toUtf8()) >= 0 && file.commit();
    if (!written)
        std::fprintf(stderr, "%s: %s\n", argv[0], qPrintable(file.errorString()));
    return written ? 0 : 1;
}
