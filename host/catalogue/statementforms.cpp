// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The forms of the statements of a pass, and what each needs.
#include "host/catalogue/statementforms.h"

namespace {

using S = PassStatement;

const NamingPlace nobody;

NamingPlace pid(int place)
{
    return {Naming::Pid, place};
}

NamingPlace uid(int place)
{
    return {Naming::Uid, place};
}

std::vector<StatementForm> wholePassForms()
{
    return {
        {S::ForceFlag, "SELECT vars", nobody,
         "SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync' LIMIT 1"},
        {S::People, "SELECT people branches", nobody,
         "SELECT p.pid, p.pamId, p.title, p.name, p.surname, p.title2, p.phone, p.begin, p.end, "
         "p.rsBegin, p.rsEnd, p.rsText, p.calendarID, b.number "
         "FROM people p LEFT JOIN branches b USING(bid) WHERE p.status;"},
        {S::Branches, "SELECT branches", nobody,
         "SELECT bid, number FROM branches WHERE number IS NOT NULL;"},
        {S::LeaveFund, "SELECT funds", nobody, "SELECT fid FROM funds WHERE iid = 3 AND unit=2;"},
        // The name decides which of two it is.
        {S::WriteVariable, "SELECT INSERT UPDATE vars", nobody,
         "INSERT INTO vars (name, value) VALUES({b}, {b}) "
         "ON DUPLICATE KEY UPDATE value=VALUES(value);"},
    };
}

std::vector<StatementForm> fundForms()
{
    return {
        {S::CorrectionsOfToday, "SELECT funds_move people, EXECUTE midnightFromTs", pid(1),
         "SELECT COUNT(*) FROM funds_move WHERE type=3 "
         "AND day = midnightFromTs(UNIX_TIMESTAMP()) AND fid = {k} "
         "AND uid=(SELECT uid FROM people WHERE pid = {u});"},
        {S::Calculated, "SELECT people atten", pid(0),
         "SELECT p.uid, calc, (SELECT COUNT(*) FROM atten a WHERE a.uid = p.uid AND !a.lock "
         "AND a.ok = -1) uncalc FROM people p WHERE pid = {u}"},
        {S::OpenDays, "SELECT atten, EXECUTE midnightFromTs", uid(0),
         "SELECT COUNT(*) FROM atten WHERE uid = {u} AND `lock`=0 AND ok < 0 "
         "AND date >= midnightFromTs(UNIX_TIMESTAMP())"},
        {S::Balance, "SELECT funds_move people", pid(2),
         "SELECT SUM(fm.value) FROM funds_move fm JOIN people p USING(uid) "
         "WHERE fm.day < {u}  AND fm.fid = {k} AND p.pid = {u}"},
        {S::Corrections, "SELECT funds_move people, EXECUTE midnightFromTs", pid(2),
         "SELECT SUM(fm.value) FROM funds_move fm JOIN people p USING(uid) WHERE fm.type=3 "
         "AND fm.day >= {u} AND fm.day < midnightFromTs(UNIX_TIMESTAMP()) "
         "AND fm.fid = {k} AND p.pid = {u}"},
        {S::WriteCorrection, "SELECT INSERT UPDATE funds_move, EXECUTE monthFromTimestamp", uid(4),
         "INSERT INTO funds_move (type, day, month, value, fid, uid) "
         "VALUES(3, {u}, monthFromTimestamp({u}), {i}, {k}, {u}) "
         "ON DUPLICATE KEY UPDATE value=VALUES(value)"},
    };
}

std::vector<StatementForm> personForms()
{
    return {
        {S::AddPerson, "SELECT INSERT UPDATE people", pid(0),
         "INSERT INTO people (pid, pamId, title, name, surname, title2, phone, begin, end, "
         "created, rsBegin, rsEnd, rsText, type, did, calendarID, bid) "
         "VALUES('{u}', '{m}', '{t}', '{t}', '{t}', '{t}', '{t}', {u}, {n}, UNIX_TIMESTAMP(), "
         "{n}, {n}, '{t}', {u}, {n}, {u}, {n}) ON DUPLICATE KEY UPDATE pamId=VALUES(pamId), "
         "title=VALUES(title), name=VALUES(name), surname=VALUES(surname), "
         "title2=VALUES(title2), phone=VALUES(phone), begin=VALUES(begin), end=VALUES(end), "
         "edited=VALUES(created), status=1, type=VALUES(type), did=1"},
        {S::UpdatePerson,
         "SELECT UPDATE people",
         {Naming::PamId, 0},
         "UPDATE people SET pamId={m}, title='{t}', name='{t}', surname='{t}', title2='{t}', "
         "phone='{t}', begin={u}, end={n}, edited=UNIX_TIMESTAMP(), editor=0, rsBegin={n}, "
         "rsEnd={n}, rsText='{t}', lastCalc={u}, type={u}, did={n}, calendarID={u}, bid={n} "
         "WHERE pid={u}"},
        {S::UpdatePerson,
         "SELECT UPDATE people",
         {Naming::PamId, 0},
         "UPDATE people SET pamId={m}, title='{t}', name='{t}', surname='{t}', title2='{t}', "
         "phone='{t}', begin={u}, end={n}, edited=UNIX_TIMESTAMP(), editor=0, rsBegin={n}, "
         "rsEnd={n}, rsText='{t}', type={u}, did={n}, calendarID={u}, bid={n}  WHERE pid={u}"},
        {S::PamBlocks, "SELECT vars", nobody,
         "SELECT name, value FROM vars WHERE name LIKE 'exportPam.%.active%'"},
        {S::PamList, "SELECT vars", nobody, "SELECT value FROM vars WHERE name='{t}' LIMIT 1"},
        {S::PersonForPam, "SELECT people", pid(0), "SELECT uid FROM people WHERE pid={u}"},
        {S::EnrolInPam, "SELECT INSERT UPDATE people_pam", uid(0),
         "INSERT INTO people_pam (uid, id) VALUES({k}, {k}) ON DUPLICATE KEY UPDATE "
         "id=VALUES(id)"},
        {S::UidByPid, "SELECT people", pid(0), "SELECT uid FROM people WHERE pid = {u} LIMIT 1;"},
        {S::PersonForTerminals, "SELECT people", pid(0),
         "SELECT uid FROM people WHERE pid={u} LIMIT 1"},
        {S::QueueNews, "INSERT term_sync, SELECT people_term term", uid(0),
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
         "SELECT `tid` tid, 'U' type, 'people' ref, 'uid' ref_col, {k} ref_id, "
         "UNIX_TIMESTAMP() created, 2 flags FROM people_term JOIN term USING(tid) "
         "WHERE status = 1 AND uid = {k} AND (flags & 2);"},
        {S::CallUpdateTermsSync, "EXECUTE updateTermsSync", uid(0),
         "CALL updateTermsSync({k}, 2);"},
        {S::ReopenDays, "SELECT UPDATE atten", uid(1),
         "UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND `date` >= {i} AND uid ={k}"},
        {S::MoveMark, "SELECT UPDATE people", uid(2),
         "UPDATE people set lastCalc = {i}, calc = 0 WHERE lastCalc > {i} AND uid={k}"},
        {S::AdminByNumber, "SELECT admins", nobody,
         "SELECT aid FROM admins WHERE personalNumber = {k}"},
        {S::TakeSupervisorMarks, "SELECT UPDATE admins_people", uid(0),
         "UPDATE admins_people SET request =0 WHERE uid={k} AND aid != {k}"},
        {S::GiveSupervisorMark, "SELECT INSERT UPDATE admins_people", uid(1),
         "INSERT INTO admins_people (aid, uid, request) VALUES({k}, {k}, 1) "
         "ON DUPLICATE KEY UPDATE request=1"},
    };
}

std::vector<StatementForm> branchForms()
{
    return {
        {S::InBranch, "SELECT brape people", pid(1),
         "SELECT COUNT(*) FROM brape WHERE bid = {k} "
         "AND uid = (SELECT uid FROM people WHERE pid = {u} LIMIT 1);"},
        {S::GroupByCalendar, "SELECT branches mastergroups groups", nobody,
         "SELECT gid FROM branches b LEFT JOIN mastergroups mg ON mg.mgid = b.mgid "
         "LEFT JOIN groups g ON g.parent = mg.mgid WHERE bid = {k} AND g.calendarID = {k} "
         "LIMIT 1;"},
        {S::InGroupsPlan, "SELECT groups_plan", uid(1),
         "SELECT COUNT(*) FROM groups_plan WHERE gid = {k} AND uid = {u} AND since = {u};"},
        {S::AddGroupsPlan, "SELECT INSERT UPDATE groups_plan", uid(1),
         "INSERT INTO groups_plan (gid, uid, since) VALUES({k}, {k}, {u}) "
         "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), since=VALUES(since);"},
        {S::UpdateMonths,
         "SELECT INSERT UPDATE groups_month, SELECT atten people, "
         "EXECUTE getCurrentGid monthFromTimestamp",
         uid(0),
         "INSERT INTO groups_month  (gid, uid, month) "
         "SELECT getCurrentGid(p.uid, monthFromTimestamp(a.date), p.gid) gid, a.uid, "
         "monthFromTimestamp(a.date) month  FROM atten a LEFT JOIN people p USING(uid) "
         "WHERE a.uid={k} AND monthFromTimestamp(a.date) >= {k} "
         "GROUP BY monthFromTimestamp(a.date) HAVING gid IS NOT NULL "
         "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), month=VALUES(month);"},
        {S::AddToBranch,
         "SELECT INSERT UPDATE brape, SELECT people",
         {Naming::Uids, 1},
         "INSERT INTO brape (bid, uid, since) SELECT {k} bid, uid, UNIX_TIMESTAMP() since "
         "FROM people WHERE uid IN({l}) ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()"},
        {S::TermsOfBranch, "SELECT term", nobody,
         "SELECT tid FROM term WHERE status > 0 AND bid = {k}"},
        {S::PutOnTerm,
         "SELECT INSERT UPDATE people_term",
         {Naming::PairedUids, 0},
         "INSERT INTO people_term (tid, uid) VALUES {p} ON DUPLICATE KEY UPDATE "
         "tid=VALUES(tid);"},
        {S::NoticeToTerm,
         "INSERT term_sync, SELECT people",
         {Naming::Uids, 1},
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
         "SELECT {u} tid, 'I' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, "
         "UNIX_TIMESTAMP() created, 2 flags FROM people WHERE status = 1 AND uid IN({l});"},
        {S::MarkTerm, "SELECT UPDATE term", nobody,
         "Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = {u}"},
        {S::AdminsOfBranch, "SELECT bradm", nobody, "SELECT aid FROM bradm WHERE bid = {k}"},
        {S::PutUnderAdmins,
         "SELECT INSERT UPDATE admins_people",
         {Naming::PairedUids, 0},
         "INSERT INTO admins_people (aid, uid) VALUES {p} ON DUPLICATE KEY UPDATE "
         "uid=VALUES(uid);"},
        // What the values of the prepared statement make of it; never of a text alone.
        {S::WritePamList, "SELECT INSERT UPDATE vars", {Naming::LastPid, 1}, nullptr},
        {S::ClearForceFlag, "SELECT INSERT UPDATE vars", nobody, nullptr},
    };
}

} // namespace

const std::vector<StatementForm> &statementForms()
{
    static const std::vector<StatementForm> all = [] {
        std::vector<StatementForm> forms;
        for (const auto &some : {wholePassForms(), fundForms(), personForms(), branchForms()})
            forms.insert(forms.end(), some.begin(), some.end());
        return forms;
    }();
    return all;
}
