// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The place where the plugin finds its export.
#pragma once

#include "host/base/failure.h"

#include <QFileDevice>
#include <QString>

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

    /// Writes a copy beside the place, under the name of its record.
    Failure prepare(const QString &name, const QString &source,
                    QFileDevice::Permissions permissions);
    bool isPrepared(const QString &name) const;
    /// Puts the prepared copy in place.
    Failure put(const QString &name);
    /// Removes what was prepared and never put in place.
    void removePrepared();

private:
    QString preparedPath(const QString &name) const;

    const QString place;
};

/// SHA-256 in hex of a file; empty if it cannot be read.
QString digestOfFile(const QString &path);
