// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The place where the plugin finds its export.
#pragma once

#include "host/base/failure.h"

#include <QString>

class QFile;

/// The file at `importFile`. What comes there is written beside and renamed, so that the plugin
/// finds the old file or the new one, or none.
class Placement
{
public:
    explicit Placement(const QString &importFile);

    QString path() const { return place; }
    bool exists() const;
    /// SHA-256 in hex of what lies there; empty if nothing does, or if it cannot be read.
    QString digest() const;

    /// Writes a copy beside the place, under the name of its record. It gets these rights, as chmod
    /// takes them, and those by which its owner reads it. Made by the administrator, it belongs to
    /// the owner of the folder: the plugin has to be able to read it.
    Failure prepare(const QString &name, const QString &source, int rights);
    bool isPrepared(const QString &name) const;
    /// Puts the prepared copy in place.
    Failure put(const QString &name);
    /// Removes one that was prepared.
    void drop(const QString &name);
    /// Removes what was prepared and never put in place.
    void removePrepared();

private:
    QString preparedPath(const QString &name) const;
    Failure fill(QFile *from, QFile *to, int rights) const;

    const QString place;
};

/// SHA-256 in hex of a file; empty if it cannot be read.
QString digestOfFile(const QString &path);
