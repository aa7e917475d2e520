// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A branch, and a triple of branch, attribute and section.
#pragma once

#include <QString>

/// A row of `branches`. `number` and `mgid` of 0 are stored as NULL; so are the hours of a day that
/// has neither begin nor end.
struct BranchRecord
{
    ushort bid = 0; ///< 0 for a branch that is not stored yet
    uint number = 0; ///< 0 for none
    QString name;
    QString address;
    QString note;
    // Working hours of days 1 to 7, begin and end; passed through as they are.
    ushort wh1b = 0;
    ushort wh1e = 0;
    ushort wh2b = 0;
    ushort wh2e = 0;
    ushort wh3b = 0;
    ushort wh3e = 0;
    ushort wh4b = 0;
    ushort wh4e = 0;
    ushort wh5b = 0;
    ushort wh5e = 0;
    ushort wh6b = 0;
    ushort wh6e = 0;
    ushort wh7b = 0;
    ushort wh7e = 0;
    uint mgid = 0; ///< master group, 0 for none
};

/// A row of `bas`.
struct BasRecord
{
    uint bid = 0;
    uint attrid = 0;
    uint secid = 0;
};
