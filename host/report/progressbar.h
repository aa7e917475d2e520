// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A line at the bottom of the terminal that shows how far a pass has come, or what goes on.
#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

/// Gives the bytes that draw and wipe the bar; writing them is its owner's business, and so is the
/// lock. Drawn at most ten times a second.
class ProgressBar
{
public:
    /// What shows the bar now; empty when it is too early to draw it again.
    QByteArray draw(int done, int total);
    /// What shows a text in place of the bar, with the seconds that it has lasted, cut to the width
    /// of the terminal; empty as long as nothing of it changes.
    QByteArray draw(const QString &text, const QElapsedTimer &lasting);
    /// What makes room for a log line; empty when no bar stands there.
    QByteArray wipe();

    /// Whether standard error is a terminal that can wipe a line.
    static bool isPossible();

private:
    QElapsedTimer sinceDrawn;
    QByteArray drawnText;
    bool visible = false;
};
