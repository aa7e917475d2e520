// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The last days as a drawing.
#pragma once

#include <QDate>
#include <QVariant>
#include <QVector>

/// What happened on a day, at its worst.
struct TimelineDay
{
    enum Kind {
        Nothing,
        Good,
        Warned, ///< errors, or lines dropped
        Refused,
    };

    QDate day;
    Kind kind = Nothing;
    qint64 people = 0; ///< who changed, at most
    QString page; ///< where more is told; may be empty
    QString text;
};

/// The values for the drawing in the template "siteindex", days from left to right: a bar each, the
/// higher the more people changed (by the logarithm), and the months' names.
QVariantHash timelineValues(const QVector<TimelineDay> &days);
