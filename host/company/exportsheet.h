// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export taken apart into lines and cells, to be changed and put together again.
#pragma once

#include "host/company/draw.h"

#include <QByteArray>
#include <QList>
#include <QVector>

/// Lines and columns count from 1, the header is line 1.
class ExportSheet
{
public:
    explicit ExportSheet(const QByteArray &text);

    int lineCount() const { return rows.size(); }
    QByteArray &cell(int line, int column) { return rows[line - 1][column - 1]; }
    QByteArray line(int number) const { return rows.at(number - 1).join('|'); }
    /// The line has these cells from now on.
    void setLine(int number, const QByteArray &text) { rows[number - 1] = text.split('|'); }
    void append(const QByteArray &line) { rows.append(line.split('|')); }
    /// The line has this number from now on, the later ones have one more.
    void insert(int number, const QByteArray &line) { rows.insert(number - 1, line.split('|')); }
    void remove(int number) { rows.remove(number - 1); }
    /// Only so many lines are left.
    void cut(int count) { rows.resize(count); }

    /// An ordinary line: of somebody with one current relation whom nobody has as supervisor.
    int drawLine(Draw *draw) const { return ordinary.at(draw->below(ordinary.size())); }
    /// So many of them, the first one first.
    QVector<int> drawLines(Draw *draw, int count) const;

    /// With an end behind each line.
    QByteArray text() const;

private:
    QVector<QList<QByteArray>> rows;
    QVector<int> ordinary;
};
