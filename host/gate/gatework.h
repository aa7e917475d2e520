// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder in which the gate looks at an export.
#pragma once

#include "host/base/failure.h"

#include <QString>

/// The folder "work" below the gate's state. What lies there is of use until all is decided, and
/// then moved to where it is kept; what a gate that was killed has left goes.
class GateWork
{
public:
    explicit GateWork(const QString &stateFolder);

    /// Makes it anew, for its owner only.
    Failure make() const;
    void remove() const;
    /// Copies a delivery to delivered().
    Failure takeIn(const QString &delivery) const;

    QString folder() const { return place; }
    QString path(const QString &name) const;
    QString delivered() const; ///< the export as it came
    QString mended() const; ///< what is judged, and put in place
    QString lastGood() const; ///< what it is compared with

private:
    const QString place;
};
