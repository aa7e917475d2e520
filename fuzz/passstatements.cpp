// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that a pass may run, and no others.
#include "passstatements.h"

#include <QStringList>

#include <vector>

namespace {

/// {u} a number without a sign, {k} one that is not 0, {i} a number with a sign, {n} one with a
/// sign or NULL, {t} any text, {l} numbers with commas, {p} pairs of numbers with commas.
struct Shape
{
    PassStatement statement;
    const char *form;
};

const Shape shapes[] = {
    {PassStatement::ForceFlag,
     "SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync' LIMIT 1"},
    {PassStatement::People,
     "SELECT p.pid, p.pamId, p.title, p.name, p.surname, p.title2, p.phone, p.begin, p.end, "
     "p.rsBegin, p.rsEnd, p.rsText, p.calendarID, b.number "
     "FROM people p LEFT JOIN branches b USING(bid) WHERE p.status;"},
    {PassStatement::Branches, "SELECT bid, number FROM branches WHERE number IS NOT NULL;"},
    {PassStatement::LeaveFund, "SELECT fid FROM funds WHERE iid = 3 AND unit=2;"},
    {PassStatement::CorrectionsOfToday,
     "SELECT COUNT(*) FROM funds_move WHERE type=3 AND day = midnightFromTs(UNIX_TIMESTAMP()) "
     "AND fid = {k} AND uid=(SELECT uid FROM people WHERE pid = {u});"},
    {PassStatement::Calculated,
     "SELECT p.uid, calc, (SELECT COUNT(*) FROM atten a WHERE a.uid = p.uid AND !a.lock "
     "AND a.ok = -1) uncalc FROM people p WHERE pid = {u}"},
    {PassStatement::OpenDays,
     "SELECT COUNT(*) FROM atten WHERE uid = {u} AND `lock`=0 AND ok < 0 "
     "AND date >= midnightFromTs(UNIX_TIMESTAMP())"},
    {PassStatement::Balance,
     "SELECT SUM(fm.value) FROM funds_move fm JOIN people p USING(uid) "
     "WHERE fm.day < {u}  AND fm.fid = {k} AND p.pid = {u}"},
    {PassStatement::Corrections,
     "SELECT SUM(fm.value) FROM funds_move fm JOIN people p USING(uid) WHERE fm.type=3 "
     "AND fm.day >= {u} AND fm.day < midnightFromTs(UNIX_TIMESTAMP()) "
     "AND fm.fid = {k} AND p.pid = {u}"},
    {PassStatement::WriteCorrection,
     "INSERT INTO funds_move (type, day, month, value, fid, uid) "
     "VALUES(3, {u}, monthFromTimestamp({u}), {i}, {k}, {u}) "
     "ON DUPLICATE KEY UPDATE value=VALUES(value)"},
    {PassStatement::AddPerson,
     "INSERT INTO people (pid, pamId, title, name, surname, title2, phone, begin, end, created, "
     "rsBegin, rsEnd, rsText, type, did, calendarID, bid) "
     "VALUES('{u}', '{u}.{u}', '{t}', '{t}', '{t}', '{t}', '{t}', {u}, {n}, UNIX_TIMESTAMP(), "
     "{n}, {n}, '{t}', {u}, {n}, {u}, {n}) ON DUPLICATE KEY UPDATE pamId=VALUES(pamId), "
     "title=VALUES(title), name=VALUES(name), surname=VALUES(surname), title2=VALUES(title2), "
     "phone=VALUES(phone), begin=VALUES(begin), end=VALUES(end), edited=VALUES(created), "
     "status=1, type=VALUES(type), did=1"},
    {PassStatement::UpdatePerson,
     "UPDATE people SET pamId={u}.{u}, title='{t}', name='{t}', surname='{t}', title2='{t}', "
     "phone='{t}', begin={u}, end={n}, edited=UNIX_TIMESTAMP(), editor=0, rsBegin={n}, "
     "rsEnd={n}, rsText='{t}', lastCalc={u}, type={u}, did={n}, calendarID={u}, bid={n} "
     "WHERE pid={u}"},
    {PassStatement::UpdatePerson,
     "UPDATE people SET pamId={u}.{u}, title='{t}', name='{t}', surname='{t}', title2='{t}', "
     "phone='{t}', begin={u}, end={n}, edited=UNIX_TIMESTAMP(), editor=0, rsBegin={n}, "
     "rsEnd={n}, rsText='{t}', type={u}, did={n}, calendarID={u}, bid={n}  WHERE pid={u}"},
    {PassStatement::PamBlocks,
     "SELECT name, value FROM vars WHERE name LIKE 'exportPam.%.active%'"},
    {PassStatement::PamList, "SELECT value FROM vars WHERE name='{t}' LIMIT 1"},
    {PassStatement::PersonForPam, "SELECT uid FROM people WHERE pid={u}"},
    {PassStatement::EnrolInPam,
     "INSERT INTO people_pam (uid, id) VALUES({k}, {k}) ON DUPLICATE KEY UPDATE id=VALUES(id)"},
    {PassStatement::UidByPid, "SELECT uid FROM people WHERE pid = {u} LIMIT 1;"},
    {PassStatement::PersonForTerminals, "SELECT uid FROM people WHERE pid={u} LIMIT 1"},
    {PassStatement::QueueNews,
     "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
     "SELECT `tid` tid, 'U' type, 'people' ref, 'uid' ref_col, {k} ref_id, "
     "UNIX_TIMESTAMP() created, 2 flags FROM people_term JOIN term USING(tid) "
     "WHERE status = 1 AND uid = {k} AND (flags & 2);"},
    {PassStatement::CallUpdateTermsSync, "CALL updateTermsSync({k}, 2);"},
    {PassStatement::ReopenDays,
     "UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND `date` >= {i} AND uid ={k}"},
    {PassStatement::MoveMark,
     "UPDATE people set lastCalc = {i}, calc = 0 WHERE lastCalc > {i} AND uid={k}"},
    {PassStatement::AdminByNumber, "SELECT aid FROM admins WHERE personalNumber = {k}"},
    {PassStatement::TakeSupervisorMarks,
     "UPDATE admins_people SET request =0 WHERE uid={k} AND aid != {k}"},
    {PassStatement::GiveSupervisorMark,
     "INSERT INTO admins_people (aid, uid, request) VALUES({k}, {k}, 1) "
     "ON DUPLICATE KEY UPDATE request=1"},
    {PassStatement::InBranch,
     "SELECT COUNT(*) FROM brape WHERE bid = {k} "
     "AND uid = (SELECT uid FROM people WHERE pid = {u} LIMIT 1);"},
    {PassStatement::GroupByCalendar,
     "SELECT gid FROM branches b LEFT JOIN mastergroups mg ON mg.mgid = b.mgid "
     "LEFT JOIN groups g ON g.parent = mg.mgid WHERE bid = {k} AND g.calendarID = {k} LIMIT 1;"},
    {PassStatement::InGroupsPlan,
     "SELECT COUNT(*) FROM groups_plan WHERE gid = {k} AND uid = {u} AND since = {u};"},
    {PassStatement::AddGroupsPlan,
     "INSERT INTO groups_plan (gid, uid, since) VALUES({k}, {k}, {u}) "
     "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), since=VALUES(since);"},
    {PassStatement::UpdateMonths,
     "INSERT INTO groups_month  (gid, uid, month) "
     "SELECT getCurrentGid(p.uid, monthFromTimestamp(a.date), p.gid) gid, a.uid, "
     "monthFromTimestamp(a.date) month  FROM atten a LEFT JOIN people p USING(uid) "
     "WHERE a.uid={k} AND monthFromTimestamp(a.date) >= {k} "
     "GROUP BY monthFromTimestamp(a.date) HAVING gid IS NOT NULL "
     "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), month=VALUES(month);"},
    {PassStatement::AddToBranch,
     "INSERT INTO brape (bid, uid, since) SELECT {k} bid, uid, UNIX_TIMESTAMP() since "
     "FROM people WHERE uid IN({l}) ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()"},
    {PassStatement::TermsOfBranch, "SELECT tid FROM term WHERE status > 0 AND bid = {k}"},
    {PassStatement::PutOnTerm,
     "INSERT INTO people_term (tid, uid) VALUES {p} ON DUPLICATE KEY UPDATE tid=VALUES(tid);"},
    {PassStatement::NoticeToTerm,
     "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
     "SELECT {u} tid, 'I' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, "
     "UNIX_TIMESTAMP() created, 2 flags FROM people WHERE status = 1 AND uid IN({l});"},
    {PassStatement::MarkTerm, "Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = {u}"},
    {PassStatement::AdminsOfBranch, "SELECT aid FROM bradm WHERE bid = {k}"},
    {PassStatement::PutUnderAdmins,
     "INSERT INTO admins_people (aid, uid) VALUES {p} ON DUPLICATE KEY UPDATE uid=VALUES(uid);"},
};

/// A form, cut at its places.
struct Form
{
    PassStatement statement;
    QString begin; ///< up to the first place
    QString places; ///< the letter of each place
    QStringList literals; ///< what follows each place
};

Form cut(const Shape &shape)
{
    const QStringList parts = QString::fromLatin1(shape.form).split(QLatin1Char('{'));
    Form form {shape.statement, parts.first(), QString(), QStringList()};
    for (int i = 1; i < parts.size(); ++i) {
        form.places.append(parts.at(i).at(0));
        form.literals.append(parts.at(i).mid(2));
    }
    return form;
}

const std::vector<Form> &forms()
{
    static const std::vector<Form> all = [] {
        std::vector<Form> cutForms;
        for (const Shape &shape : shapes)
            cutForms.push_back(cut(shape));
        return cutForms;
    }();
    return all;
}

bool isPerson(PassStatement statement)
{
    return statement == PassStatement::AddPerson || statement == PassStatement::UpdatePerson;
}

int afterNumber(const QString &text, int from)
{
    int end = from;
    while (end < text.size() && text.at(end) >= QLatin1Char('0')
           && text.at(end) <= QLatin1Char('9'))
        ++end;
    return end > from ? end : -1;
}

int afterSigned(const QString &text, int from)
{
    const bool negative = from < text.size() && text.at(from) == QLatin1Char('-');
    return afterNumber(text, negative ? from + 1 : from);
}

int afterNullable(const QString &text, int from)
{
    const QString null = QStringLiteral("NULL");
    return text.midRef(from, null.size()) == null ? from + null.size() : afterSigned(text, from);
}

int afterLiteral(const QString &text, int from, const QString &literal)
{
    return from >= 0 && text.midRef(from, literal.size()) == literal ? from + literal.size() : -1;
}

/// Numbers or pairs of numbers, with commas and perhaps a blank between them.
int afterList(const QString &text, int from, bool pairs)
{
    int end = from;
    for (;;) {
        if (pairs) {
            end = afterLiteral(text, end, QStringLiteral("("));
            end = end < 0 ? -1 : afterNumber(text, end);
            end = afterLiteral(text, end, QStringLiteral(", "));
        }
        end = end < 0 ? -1 : afterNumber(text, end);
        if (pairs)
            end = afterLiteral(text, end, QStringLiteral(")"));
        if (end < 0 || end >= text.size() || text.at(end) != QLatin1Char(','))
            return end;
        ++end;
        if (!pairs && end < text.size() && text.at(end) == QLatin1Char(' '))
            ++end;
    }
}

/// The end of a place that begins here, -1 when nothing of its kind stands here.
int afterPlace(QChar place, const QString &text, int from)
{
    switch (place.toLatin1()) {
    case 'u':
        return afterNumber(text, from);
    case 'k':
        return text.midRef(from, 1) == QLatin1String("0") ? -1 : afterNumber(text, from);
    case 'i':
        return afterSigned(text, from);
    case 'n':
        return afterNullable(text, from);
    default:
        return afterList(text, from, place == QLatin1Char('p'));
    }
}

/// All places in the text from which what follows could begin.
std::vector<int> step(const QString &text, const std::vector<int> &from, QChar place,
                      const QString &literal, bool last)
{
    std::vector<int> to;
    if (place == QLatin1Char('t')) {
        for (int i = from.front(); i + literal.size() <= text.size(); ++i) {
            if (afterLiteral(text, i, literal) >= 0 && (!last || i + literal.size() == text.size()))
                to.push_back(i + literal.size());
        }
        return to;
    }
    for (const int begin : from) {
        const int end = afterPlace(place, text, begin);
        const int next = end < 0 ? -1 : afterLiteral(text, end, literal);
        if (next >= 0)
            to.push_back(next);
    }
    return to;
}

bool matches(const QString &statement, const Form &form, bool anyText)
{
    if (!statement.startsWith(form.begin))
        return false;
    std::vector<int> reached {form.begin.size()};
    for (int i = 0; i < form.places.size() && !reached.empty(); ++i) {
        // The keys of a person come first, before any text.
        const bool loose = anyText && i > (form.statement == PassStatement::AddPerson ? 2 : 1);
        reached = step(statement, reached, loose ? QLatin1Char('t') : form.places.at(i),
                       form.literals.at(i), i + 1 == form.places.size());
    }
    for (const int end : reached) {
        if (end == statement.size())
            return true;
    }
    return false;
}

} // namespace

PassStatement classify(const QString &statement, bool markersInTexts)
{
    for (const Form &form : forms()) {
        if (matches(statement, form, markersInTexts && isPerson(form.statement)))
            return form.statement;
    }
    return PassStatement::Unknown;
}

bool isPreparedStatement(const QString &statement)
{
    return statement
        == QLatin1String("INSERT INTO vars (name, value) VALUES(:name, :value) "
                         "ON DUPLICATE KEY UPDATE value=VALUES(value);");
}
