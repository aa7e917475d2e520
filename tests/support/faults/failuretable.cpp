// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a call of the database owes when it fails, operation by operation.
#include "support/faults/failuretable.h"

namespace {

PassRow row(PassRow::Kind kind, const char *id, const char *when, const char *text)
{
    PassRow made;
    made.kind = kind;
    made.id = QString::fromUtf8(id);
    made.when = QString::fromUtf8(when);
    made.text = QString::fromUtf8(text);
    return made;
}

} // namespace

PassRow call(const char *id, const char *when, const char *text,
             std::initializer_list<const char *> owed)
{
    PassRow made = row(PassRow::Call, id, when, text);
    for (const char *message : owed)
        made.owed.append(QString::fromUtf8(message));
    return made;
}

PassRow message(const char *when, const char *text)
{
    return row(PassRow::Message, "", when, text);
}

PassRow fact(const char *id, const char *when)
{
    return row(PassRow::Fact, id, when, "");
}

PassRow queue(const char *when)
{
    PassRow made = row(PassRow::Queue, "{bid}.somebody", when, "{bid}");
    made.person = QStringLiteral("@");
    return made;
}

PassRow waiting(const char *when)
{
    PassRow made = row(PassRow::Waiting, "", when, "");
    made.person = QStringLiteral("@");
    return made;
}

PassRows passBegin()
{
    return {
        call("open", "", "open",
             {"critical THRWorker::dbCheckOpen() - SQL ERROR: told to fail (scripted)",
              "warning THRWorker::checkSync() - database not open!"}),
        call("force", "open",
             "exec SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync' LIMIT 1",
             {"critical OrvDbSettings::variableGet - SQL ERROR:",
              "critical told to fail (scripted)"}),
        message("force", "from 1: debug THRWorker: BEGIN synchronization #1 (force: YES)"),
        message("open !force", "from 1: debug THRWorker: BEGIN synchronization #1 (force: NO)"),
        call("people", "open", "exec SELECT p.pid, p.pamId, ... WHERE p.status;",
             {"critical THRWorker::dbLoadPeople() - SQL ERROR [9999]: told to fail (scripted)",
              "critical THRWorker: load people from ORVDB failed - synchronization terminated!"}),
        call("branches", "people",
             "exec SELECT bid, number FROM branches WHERE number IS NOT NULL;",
             {"critical THRWorker::dbLoadBranches() - SQL ERROR [9999]: told to fail (scripted)"}),
        call("fund", "people", "exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;",
             {"critical THRWorker::checkDovolenkaFond() - SQL ERROR [9999]: "
              "told to fail (scripted)"})};
}

/// Nobody of this pid: the attendance is not at rest.
PassRows fundChecksOfAStranger()
{
    return {
        call("@.move", "fund",
             "exec SELECT COUNT(*) FROM funds_move WHERE type=3 "
             "AND day = midnightFromTs(UNIX_TIMESTAMP()) AND fid = 7 "
             "AND uid=(SELECT uid FROM people WHERE pid = {pid});",
             {"critical THRWorker::dbCheckFundMove() - SQL ERROR [9999]: told to fail (scripted)"}),
        call("@.attendance", "fund", "exec SELECT p.uid, calc, ... FROM people p WHERE pid = {pid}",
             {"critical THRWorker::dbCheckAttendance() - SQL ERROR [9999]: "
              "told to fail (scripted)"})};
}

/// The second question about the attendance, when it fails, counts as answered.
PassRows fundChecks()
{
    return fundChecksOfAStranger()
        + PassRows {
            call("@.open", "@.attendance",
                 "exec SELECT COUNT(*) FROM atten WHERE uid = {uid} AND `lock`=0 AND ok < 0 "
                 "AND date >= midnightFromTs(UNIX_TIMESTAMP())",
                 {"critical THRWorker::dbCheckAttendance() - SQL ERROR [9999]: "
                  "told to fail (scripted)"}),
            fact("@.atRest", "@.move @.attendance")};
}

PassRows addition(const char *statement)
{
    return {
        call("@.insert", "people", statement,
             {"critical THRWorker::dbAddPerson({pamId}) - SQL ERROR: told to fail (scripted)"})};
}

/// The list of the one PaM block. One that cannot be read counts as empty.
PassRows pamList()
{
    return {call("@.blocks", "@.insert",
                 "exec SELECT name, value FROM vars WHERE name LIKE 'exportPam.%.active%'",
                 {"critical OrvDbSettings::variableGetMultiple - SQL ERROR:",
                  "critical told to fail (scripted)",
                  "warning THRWorker::dbAddPerson({pamId}) - addPersonIntoPam() FAILED!"}),
            call("@.list", "@.blocks",
                 "exec SELECT value FROM vars WHERE name='exportPam.1.selPeople' LIMIT 1",
                 {"critical OrvDbSettings::variableGet - SQL ERROR:",
                  "critical told to fail (scripted)"})};
}

PassRow preparedListing(const char *when)
{
    return call("@.prepare", when,
                "prepare INSERT INTO vars (name, value) VALUES(:name, :value) "
                "ON DUPLICATE KEY UPDATE value=VALUES(value);",
                {"critical variableSet ERROR: \"told to fail (scripted)\"",
                 "warning THRWorker::dbAddPerson({pamId}) - addPersonIntoPam() FAILED!"});
}

PassRow listing(const char *when, const char *text)
{
    return call("@.listed", when, text,
                {"critical variableSet ERROR: \"told to fail (scripted)\"",
                 "warning THRWorker::dbAddPerson({pamId}) - addPersonIntoPam() FAILED!"});
}

/// Of all warnings of a pass only the one about the unknown uid has a gate.
PassRows pamRow()
{
    return {
        call("@.pamUid", "@.insert", "exec SELECT uid FROM people WHERE pid={pid}",
             {"from 1: warning THRWorker::dbAddPersonIntoPam(pid: {pid}, pamSettingsID: {block}) "
              "- Unique person ID ([people].uid) not found!",
              "warning THRWorker::doSyncRecord({text}) - dbAddPersonIntoPam({pid}, {block}) "
              "FAILED!"}),
        call("@.pamRow", "@.pamUid",
             "exec INSERT INTO people_pam (uid, id) VALUES({uid}, {block}) "
             "ON DUPLICATE KEY UPDATE id=VALUES(id)",
             {"critical THRWorker::dbAddPersonIntoPam(pid: {pid}, pamSettingsID: {block}) - "
              "SQL ERROR: told to fail (scripted)",
              "warning THRWorker::doSyncRecord({text}) - dbAddPersonIntoPam({pid}, {block}) "
              "FAILED!"})};
}

PassRows update(const char *statement)
{
    return {
        call("@.update", "people", statement,
             {"critical THRWorker::dbUpdatePerson({pamId}) - SQL ERROR: told to fail (scripted)"})};
}

/// What the terminals of a person are told once his row has changed.
PassRows news()
{
    return {call("@.newsUid", "@.update", "exec SELECT uid FROM people WHERE pid={pid} LIMIT 1",
                 {"warning THRWorker::addTermSyncPerson({pid}) - uid NOT selected from DB!"}),
            call("@.news", "@.newsUid",
                 "exec INSERT INTO `term_sync` (...) SELECT `tid` tid, 'U' type, 'people' ref, "
                 "'uid' ref_col, {uid} ref_id, ... AND uid = {uid} AND (flags & 2);",
                 {"critical THRWorker::addTermSyncPerson() ERROR: told to fail (scripted)"}),
            call("@.call", "@.news", "exec CALL updateTermsSync({uid}, 2);",
                 {"critical THRWorker::addTermSyncPerson() - updateTermsSync() ERROR: "
                  "told to fail (scripted)"})};
}

/// Both sums are asked for, whatever becomes of the first.
PassRows balance(const char *when, const char *unread)
{
    return {call("@.before", when,
                 "exec SELECT SUM(fm.value) FROM funds_move fm ... WHERE fm.day < ...  "
                 "AND fm.fid = 7 AND p.pid = {pid}",
                 {"critical THRWorker::loadFundStatusAndMove3() - SQL 1 ERROR [9999]: "
                  "told to fail (scripted)"}),
            call("@.corrections", when,
                 "exec SELECT SUM(fm.value) FROM funds_move fm ... WHERE fm.type=3 AND ... "
                 "AND fm.fid = 7 AND p.pid = {pid}",
                 {"critical THRWorker::loadFundStatusAndMove3() - SQL 2 ERROR [9999]: "
                  "told to fail (scripted)"}),
            message(unread,
                    "warning THRWorker::doSyncRecord() - loadFundStatusAndMove3(): "
                    "not loaded correctly!")};
}

PassRows balance()
{
    return balance("@.atRest", "@.atRest !@.before|!@.corrections");
}

PassRows correction()
{
    return {call("@.correction", "@.before @.corrections",
                 "exec INSERT INTO funds_move (type, day, month, value, fid, uid) VALUES(3, "
                 "{today}, monthFromTimestamp({today}), {difference}, 7, {uid}) "
                 "ON DUPLICATE KEY UPDATE value=VALUES(value)",
                 {"critical THRWorker::writeFundMove3() - SQL ERROR [9999]: told to fail (scripted)"
                  "\n SQL: INSERT INTO funds_move (type, day, month, value, fid, uid) VALUES(3, "
                  "{today}, monthFromTimestamp({today}), {difference}, 7, {uid}) "
                  "ON DUPLICATE KEY UPDATE value=VALUES(value)",
                  "warning THRWorker::doSyncRecord() - funds_move type (type=3, "
                  "valeu={difference}) not writed for uid {uid} (pid: {pid})"})};
}

namespace {

/// Up to the two statements that move the mark. Nobody looks at what becomes of the "begin".
PassRows supervisor(const char *when)
{
    return {
        call("@.admin", when, "exec SELECT aid FROM admins WHERE personalNumber = {supervisor}",
             {"critical THRWorker::dbGetAidByOsCis() - SQL ERROR [9999]: told to fail (scripted)"
              "\n SQL: SELECT aid FROM admins WHERE personalNumber = {supervisor}",
              "warning THRWorker - admin s osobnym cislom {supervisor} nebol najdeny!"}),
        call("@.uid", "@.admin", "exec SELECT uid FROM people WHERE pid = {pid} LIMIT 1;",
             {"critical THRWorker::dbGetUidByPid() - SQL ERROR [9999]: told to fail (scripted)",
              "warning THRWorker - zamestnanec s osobnym cislom {pid} nebol najdeny!"}),
        call("@.begin", "@.uid", "begin"),
        call("@.reset", "@.uid",
             "exec UPDATE admins_people SET request =0 WHERE uid={uid} AND aid != 6",
             {"critical THRWorker::dbResetAdminPeopleRequest() - SQL ERROR [9999]: "
              "told to fail (scripted)\n SQL: UPDATE admins_people SET request =0 "
              "WHERE uid={uid} AND aid != 6"}),
        call("@.set", "@.reset",
             "exec INSERT INTO admins_people (aid, uid, request) VALUES(6, {uid}, 1) "
             "ON DUPLICATE KEY UPDATE request=1",
             {"critical THRWorker::dbSetAdminPeopleRequest() - SQL ERROR [9999]: "
              "told to fail (scripted)\n SQL: INSERT INTO admins_people (aid, uid, request) "
              "VALUES(6, {uid}, 1) ON DUPLICATE KEY UPDATE request=1"})};
}

} // namespace

/// The reset has taken the mark from somebody: then the set may fail, and both stand.
PassRows supervisorInsteadOfAnother(const char *when)
{
    return supervisor(when)
        + PassRows {call("@.commit", "@.reset", "commit"),
                    call("@.rollback", "@.uid !@.reset", "rollback"),
                    message("@.uid !@.reset",
                            "warning THRWorker::processNadOsCis() - (Re)Set Admin People Request "
                            "FAilED!")};
}

/// Nobody else had the mark.
PassRows firstSupervisor(const char *when)
{
    return supervisor(when)
        + PassRows {call("@.commit", "@.set", "commit"),
                    call("@.rollback", "@.uid !@.set", "rollback"),
                    message("@.uid !@.set",
                            "warning THRWorker::processNadOsCis() - (Re)Set Admin People Request "
                            "FAilED!")};
}

/// A record of a branch that was not loaded waits. Otherwise the uid is looked for, unless it is
/// known, and the membership; without an answer the person counts as none of the branch's.
PassRows branch(const char *unloaded, const char *when, const char *unknown)
{
    return {
        message(unloaded, "warning THRWorker: Branch '{number}' NOT FOUND for employee: '{text}'"),
        waiting(unloaded),
        call("@.uid", unknown, "exec SELECT uid FROM people WHERE pid = {pid} LIMIT 1;",
             {"critical THRWorker::dbGetUidByPid() - SQL ERROR [9999]: told to fail (scripted)"}),
        call("@.member", when,
             "exec SELECT COUNT(*) FROM brape WHERE bid = {bid} "
             "AND uid = (SELECT uid FROM people WHERE pid = {pid} LIMIT 1);",
             {"critical THRWorker::dbCheckPersonInBranch() - SQL ERROR [9999]: "
              "told to fail (scripted)"})};
}

PassRows branch()
{
    return branch("people !branches", "branches", "branches !@.uid");
}

/// Group and plan. A plan that is not found, for whatever reason, has to be added.
PassRows calendar(const char *when)
{
    return {
        call("@.group", when,
             "exec SELECT gid FROM branches b ... WHERE bid = {bid} "
             "AND g.calendarID = {calendar} LIMIT 1;",
             {"critical THRWorker::getGroupIdByCalendar() - SQL ERROR [9999]: "
              "told to fail (scripted)",
              "warning THRWorker: Group ID NOT found for Branch {number} and calendar {calendar} "
              "[employee: '{text}']!"}),
        call("@.plan", "@.group",
             "exec SELECT COUNT(*) FROM groups_plan WHERE gid = {gid} AND uid = {uid @} "
             "AND since = {since};",
             {"critical THRWorker::dbCheckGroupsPlan() - SQL ERROR [9999]: "
              "told to fail (scripted)"})};
}

namespace {

/// The uid 0 is refused without a statement. A row that was there already does not change, which
/// counts as a failure too.
PassRow refusedPlan(const char *when)
{
    return message(when, "warning THRWorker: can't add record '{text}' into [groups_plan]!");
}

PassRow addedPlan(const char *when)
{
    return call("@.planned", when,
                "exec INSERT INTO groups_plan (gid, uid, since) VALUES({gid}, {uid}, {since}) "
                "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), since=VALUES(since);",
                {"critical GroupsPlanRepo::add - ERROR[9999]: told to fail (scripted)",
                 "warning THRWorker: can't add record '{text}' into [groups_plan]!"});
}

} // namespace

PassRows newPlan()
{
    return {refusedPlan("@.group !@.uid"), addedPlan("@.group @.uid"),
            call("@.months", "@.planned",
                 "exec INSERT INTO groups_month  (gid, uid, month) SELECT ... WHERE a.uid={uid} "
                 "AND monthFromTimestamp(a.date) >= {since} GROUP BY ...",
                 {"critical GroupsPlanRepo::updateGroupsMonth - ERROR[9999]: "
                  "told to fail (scripted)"})};
}

PassRows presentPlan()
{
    return {addedPlan("@.group @.uid !@.plan"), refusedPlan("@.planned"),
            refusedPlan("@.group !@.uid")};
}

/// The uid is looked for once more, if it is not known by now.
PassRow uidForReopening(const char *when)
{
    return call("@.uid", when, "exec SELECT uid FROM people WHERE pid = {pid} LIMIT 1;",
                {"critical THRWorker::dbGetUidByPid() - SQL ERROR [9999]: told to fail (scripted)",
                 "warning THRWorker: User (employee) ID NOT found for pid (Personal ID) {pid} "
                 "[employee: '{text}'] - lastCalc not changed (manual recalculation is needed)!"});
}

PassRows reopening(const char *when)
{
    return {call("@.reopened", when,
                 "exec UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 "
                 "AND `date` >= {reopened} AND uid ={uid}",
                 {"critical THRWorker::dbChangeLastCalc() [UPDATE atten] - SQL ERROR [9999]: "
                  "told to fail (scripted)"}),
            call("@.marked", "@.reopened",
                 "exec UPDATE people set lastCalc = ..., calc = 0 WHERE lastCalc > ... "
                 "AND uid={uid}",
                 {"critical THRWorker::dbChangeLastCalc() [UPDATE people] - SQL ERROR [9999]: "
                  "told to fail (scripted)"})};
}

/// Of nobody but the uid 0 no row comes, and so no news.
PassRows joining()
{
    return {call("{bid}.join", "branches",
                 "exec INSERT INTO brape (bid, uid, since) SELECT {bid} bid, uid, "
                 "UNIX_TIMESTAMP() since FROM people WHERE uid IN({queue of {bid}}) "
                 "ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()",
                 {"critical BranchesRepository::addPeopleToBranch - ERROR: "
                  "told to fail (scripted)"}),
            call("{bid}.terminals", "{bid}.join {bid}.somebody",
                 "exec SELECT tid FROM term WHERE status > 0 AND bid = {bid}",
                 {"critical BranchesRepository::getTids4Branch - ERROR: "
                  "told to fail (scripted)"})};
}

PassRow administrators()
{
    return call("{bid}.admins", "{bid}.join {bid}.somebody",
                "exec SELECT aid FROM bradm WHERE bid = {bid}",
                {"critical BranchesRepository::getAids4Branch - ERROR: told to fail (scripted)"});
}

PassRows joiningTerminal()
{
    return {
        call("{tid}.people", "{bid}.terminals",
             "exec INSERT INTO people_term (tid, uid) VALUES {pairs of {tid} in {bid}} "
             "ON DUPLICATE KEY UPDATE tid=VALUES(tid);",
             {"critical BranchesRepository::AddPeopleToTerm - ERROR: told to fail (scripted)"}),
        call("{tid}.queue", "{tid}.people",
             "exec INSERT INTO `term_sync` (...) SELECT {tid} tid, 'I' type, 'people_term' ref, "
             "... WHERE status = 1 AND uid IN({list of {bid}});",
             {"critical TermSyncRepository::addTermSyncPeople() ERROR: told to fail (scripted)"}),
        call("{tid}.mark", "{tid}.queue",
             "exec Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = {tid}",
             {"critical TermSyncRepository::setTermSyn() ERROR: told to fail (scripted)"})};
}

PassRows passEnd()
{
    return {message("open",
                    "from 1: debug THRWorker: END synchronization #1 (waiting records: {waiting})"),
            call("prepare", "force",
                 "prepare INSERT INTO vars (name, value) VALUES(:name, :value) "
                 "ON DUPLICATE KEY UPDATE value=VALUES(value);",
                 {"critical variableSet ERROR: \"told to fail (scripted)\""}),
            call("cleared", "prepare", "run :name=OQS.THRWorker.forceSync, :value=0",
                 {"critical variableSet ERROR: \"told to fail (scripted)\""}),
            call("close", "open", "close")};
}
