// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a call of the database owes when it fails, operation by operation.
#pragma once

#include <QStringList>
#include <QVector>

#include <initializer_list>

/// A row of the table of a pass. Rows stand in the order of the pass.
///
/// `when` tells under which circumstances a row takes place: all its terms must hold, and of a term
/// "x|y" one part must. "x" holds once a call of that id has succeeded, "!x" as long as none has.
/// An id may stand at several calls: whoever was found once is not looked for again.
///
/// In calls "..." stands for whatever is of no interest. A message that begins "from 1: " comes at
/// log level 1 and above. The words in braces are those of ExpectedPass.
struct PassRow
{
    enum Kind {
        Call, ///< a call of the database, `text`; when it fails, the messages `owed` follow at once
        Message, ///< a line of the log, `text`
        Fact, ///< no event: from here on `id` holds
        Queue, ///< `person` is queued for the branch `text`; `id` holds if the uid is known
        Waiting ///< the record of `person` waits
    };

    Kind kind = Call;
    QString id;
    QString when;
    QString text;
    QStringList owed;
    QString person;
};

using PassRows = QVector<PassRow>;

PassRow call(const char *id, const char *when, const char *text,
             std::initializer_list<const char *> owed = {});
PassRow message(const char *when, const char *text);
PassRow fact(const char *id, const char *when);
/// The person is queued for the branch {bid}; "B.somebody" holds once that is one with a uid.
PassRow queue(const char *when);
PassRow waiting(const char *when);

// The operations of a pass, in its order; what is owed stands at their definitions. "@" stands for
// the person; {pid}, {pamId} and {text} are his, {uid} is the id that the database has for him, and
// {uid @} the same, or 0 as long as it was not found. The arguments tell when an operation takes
// place, where it does not always do so, and the statements that hold much of the person.

PassRows passBegin();
PassRows fundChecksOfAStranger();
PassRows fundChecks();
PassRows addition(const char *statement);
PassRows pamList();
PassRow preparedListing(const char *when);
PassRow listing(const char *when, const char *text);
PassRows pamRow();
PassRows update(const char *statement);
PassRows news();
PassRows balance(const char *when, const char *unread);
PassRows balance();
PassRows correction();
PassRows supervisorInsteadOfAnother(const char *when);
PassRows firstSupervisor(const char *when);
PassRows branch(const char *unloaded, const char *when, const char *unknown);
PassRows branch();
PassRows calendar(const char *when);
PassRows newPlan();
PassRows presentPlan();
PassRow uidForReopening(const char *when);
PassRows reopening(const char *when);
PassRows joining();
PassRow administrators();
PassRows joiningTerminal();
PassRows passEnd();
