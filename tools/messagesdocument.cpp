// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Writes docs/messages.md from the catalogue: messagesdocument FILE.
#include "host/catalogue/messagesdocument.h"

#include <QFile>
#include <QSaveFile>

#include <cstdio>

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: messagesdocument FILE\n");
        return 2;
    }
    QSaveFile file(QFile::decodeName(argv[1]));
    const bool written = file.open(QIODevice::WriteOnly)
        && file.write(messagesDocument().toUtf8()) >= 0 && file.commit();
    if (!written)
        std::fprintf(stderr, "messagesdocument: %s\n", qPrintable(file.errorString()));
    return written ? 0 : 1;
}
