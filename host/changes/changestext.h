// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Changes for people: a summary that fits a screen, and one person's.
#pragma once

#include "host/changes/changes.h"

/// What a kind is called for people, with its number: "people added: 12".
QString kindText(ChangeKind kind, qint64 count);

/// At most 24 lines of at most `width` characters: what pass and export these are, then a line for
/// each kind that occurs, the worst first.
QString summaryText(const Changes &changes, int width);

/// People of whom there is something to tell: a kind, a message, something left undone or
/// uncertain. The others have rows that are only written again.
bool isWorthTelling(const ChangedPerson &person);
/// Places in Changes::people, the worst first: errors, what was not done, who ends, moves, comes
/// back, comes; people without any of these in their order.
QVector<int> worstFirst(const Changes &changes);

/// "4711.1", or another key of somebody who has no such number.
QString personNumber(const ChangedPerson &changed);
/// "4711.1 Eva Malá", in one line.
QString personTitle(const ChangedPerson &changed);

/// Lines of at most `width` characters: who it is, in words of the trade what happens and what does
/// not, and underneath the rows. No text of the database can break them.
QString personText(const ChangedPerson &person, const IdNames &names, int width);
/// The words alone, a line each, not broken.
QStringList personWords(const ChangedPerson &person, const IdNames &names);

/// "2.50 days", "-2.50 days"
QString daysText(qint64 hundredths);
/// The same with a sign in any case: "+2.50 days".
QString correctionText(qint64 hundredths);
/// "2024-03" of 202403; any other number as it is, such as the 0 of a plan since ever.
QString monthText(uint month);
