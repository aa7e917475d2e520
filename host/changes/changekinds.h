// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The kinds of what a pass does, by which changes are counted and limited.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <array>

/// What each of them means, and what is counted; docs/changes.md says the same for people.
///
/// A row "comes" if it is there only after the pass, and "goes" if only before. `people` tells of a
/// person that stood before and after, unless it says otherwise.
///
/// | Kind           | One of these holds                                              | Counted |
/// |----------------|-----------------------------------------------------------------|---------|
/// | Added          | the row of `people` comes                                       | people  |
/// | Revived        | `people.status` was 0 and no longer is                          | people  |
/// | Updated        | not Revived, and a column of `people` differs that is none of   | people  |
/// |                | created, edited, editor, lastCalc, calc                         |         |
/// | Ended          | `people.end` is a day now, earlier than it was (none is later   | people  |
/// |                | than any), and the one before had not gone by when the pass ran |         |
/// | Moved          | `people.bid` differs                                            | people  |
/// | Memberships    | a row of `brape` comes or goes                                  | people  |
/// | Terminals      | a row of `people_term` comes or goes                            | people  |
/// | Administrators | a row of `admins_people` comes or goes                          | people  |
/// | Supervisors    | `admins_people.request` differs; no row counts as 0             | people  |
/// | Plans          | a row of `groups_plan` or `groups_month` comes, goes or differs | people  |
/// | Leave          | a row of `funds_move` comes, goes or differs                    | people  |
/// | Reopened       | `atten.ok` is -1 now and was not, in a row that stood before    | people  |
/// | Pam            | a row of `people_pam` comes, goes or differs, or the pid joins  | people  |
/// |                | or leaves the list of a PaM block                               |         |
/// | Notices        | a row of `term_sync` comes, whomever it is about                | rows    |
/// | Waiting        | the plugin says at the end of the pass how many wait            | records |
/// | Dropped        | a line of the export was dropped                                | lines   |
/// | Errors         | the plugin logged an error                                      | errors  |
enum class ChangeKind {
    Added,
    Revived,
    Updated,
    Ended,
    Moved,
    Memberships,
    Terminals,
    Administrators,
    Supervisors,
    Plans,
    Leave,
    Reopened,
    Pam,
    Notices,
    Waiting,
    Dropped,
    Errors,
};

const int changeKindCount = static_cast<int>(ChangeKind::Errors) + 1;

/// All of them, in the order above.
const QVector<ChangeKind> &changeKinds();
/// The word for machines and on the command line: "added".
QString kindName(ChangeKind kind);
/// False for a word that is none.
bool kindOfName(const QString &name, ChangeKind *kind);
/// The number of a kind is one of people; of the others docs and the table above say what it is.
bool countsPeople(ChangeKind kind);

/// Some of the kinds.
class KindSet
{
public:
    void add(ChangeKind kind) { bits |= bitOf(kind); }
    bool has(ChangeKind kind) const { return (bits & bitOf(kind)) != 0; }
    bool isEmpty() const { return bits == 0; }
    bool operator==(const KindSet &other) const { return bits == other.bits; }

private:
    static quint32 bitOf(ChangeKind kind) { return 1U << static_cast<int>(kind); }

    quint32 bits = 0;
};

/// The names of the kinds, in their order.
QStringList kindNames(const KindSet &kinds);

/// A number for each kind.
class KindCounts
{
public:
    qint64 &operator[](ChangeKind kind) { return counts[static_cast<size_t>(kind)]; }
    qint64 operator[](ChangeKind kind) const { return counts[static_cast<size_t>(kind)]; }
    bool operator==(const KindCounts &other) const { return counts == other.counts; }

private:
    std::array<qint64, changeKindCount> counts {};
};

/// "added 3, updated 5, ended 1, waiting 2, errors 0": the figures of a pass wherever one line
/// tells of it.
QString figuresText(const KindCounts &summary);
