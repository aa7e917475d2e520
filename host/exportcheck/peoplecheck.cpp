// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// People of an export: against the day, and against each other.
#include "host/exportcheck/peoplecheck.h"

#include "host/exportcheck/cellform.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PeopleCheck)
};

/// Looks at all lines together.
class PeopleCheck
{
public:
    PeopleCheck(const ExportDigest &lines, const QVector<OddSpelling> &oddSpellings) :
        digest(lines),
        spellings(oddSpellings)
    { }

    ExportFindings look();

private:
    void lookAtKeys();
    void lookForTwice();
    void addTwice(const QVector<const DigestLine *> &lines);
    void lookAtSupervisors();
    void lookForCircles();
    void addCircle(const QVector<uint> &people);
    void lookAtSpellings();
    void add(const char *code, const QVector<int> &lines, int column, const QStringList &values);

    const ExportDigest &digest;
    const QVector<OddSpelling> &spellings;
    QHash<uint, int> lineOfNumber; ///< the last one of each person
    QHash<uint, uint> supervisorOf; ///< of each person who has one, as their last line has it
    ExportFindings findings;
};

ExportFindings PeopleCheck::look()
{
    lineOfNumber.reserve(static_cast<int>(digest.size()));
    for (const DigestLine &line : digest) {
        lineOfNumber[line.number] = line.line;
        if (line.supervisor != 0)
            supervisorOf[line.number] = line.supervisor;
    }
    lookAtKeys();
    lookForTwice();
    lookAtSupervisors();
    lookForCircles();
    lookAtSpellings();
    return findings;
}

void PeopleCheck::add(const char *code, const QVector<int> &lines, int column,
                      const QStringList &values)
{
    findings.append({&findingKind(code), lines.constLast(), column, values,
                     lines.size() > 1 ? lines : QVector<int>()});
}

/// 12.3 and 1.23 are both 123.
void PeopleCheck::lookAtKeys()
{
    QHash<uint, const DigestLine *> first;
    first.reserve(static_cast<int>(digest.size()));
    for (const DigestLine &line : digest) {
        if (line.pid == 0)
            continue;
        const DigestLine *&known = first[line.pid];
        if (!known)
            known = &line;
        else if (known->relation() != line.relation())
            add("E-PERSON-KEY", {known->line, line.line}, ExportCell::Number + 1,
                {known->pamId(), line.pamId(), QString::number(line.pid)});
    }
}

void PeopleCheck::lookForTwice()
{
    const std::vector<int> places = orderedByRelation(digest);
    QVector<const DigestLine *> same;
    for (const int place : places) {
        const DigestLine *const line = &digest[static_cast<size_t>(place)];
        if (!same.isEmpty() && same.constFirst()->relation() != line->relation()) {
            addTwice(same);
            same.clear();
        }
        same.append(line);
    }
    addTwice(same);
}

/// The names of the columns in which the lines are not all alike.
QStringList differingColumns(const QVector<const DigestLine *> &lines)
{
    QStringList names;
    for (size_t column = 0; column < exportColumnCount; ++column) {
        const bool differs = std::any_of(lines.cbegin(), lines.cend(), [&](const DigestLine *line) {
            return line->cells[column] != lines.constFirst()->cells[column];
        });
        if (differs)
            names.append(exportColumn(static_cast<int>(column)));
    }
    return names;
}

void PeopleCheck::addTwice(const QVector<const DigestLine *> &lines)
{
    if (lines.size() < 2)
        return;
    QVector<int> numbers;
    for (const DigestLine *line : lines)
        numbers.append(line->line);
    const QStringList columns = differingColumns(lines);
    const QString count = QString::number(lines.size());
    if (columns.isEmpty())
        add("W-PERSON-TWICE", numbers, ExportCell::Number + 1,
            {lines.constFirst()->pamId(), count, Text::tr(", all alike"),
             Text::tr("the later ones change nothing")});
    else
        add("W-PERSON-TWICE", numbers, ExportCell::Number + 1,
            {lines.constFirst()->pamId(), count,
             Text::tr("; the lines differ in %1").arg(columns.join(QStringLiteral(", "))),
             Text::tr("the last line wins in the first pass; after that the lines overwrite each "
                      "other, so that the row changes back and forth in every pass")});
}

void PeopleCheck::lookAtSupervisors()
{
    for (const DigestLine &line : digest) {
        if (line.supervisor == 0)
            continue;
        if (line.supervisor == line.number)
            add("N-PERSON-SELF", {line.line}, ExportCell::Supervisor + 1, {});
        else if (!lineOfNumber.contains(line.supervisor))
            add("N-PERSON-SUPERVISOR", {line.line}, ExportCell::Supervisor + 1,
                {QString::number(line.supervisor)});
    }
}

/// Walks up from everybody, and each way once.
void PeopleCheck::lookForCircles()
{
    QSet<uint> done;
    for (const DigestLine &line : digest) {
        QVector<uint> way;
        QSet<uint> onTheWay;
        uint person = line.number;
        while (person != 0 && !done.contains(person) && !onTheWay.contains(person)) {
            way.append(person);
            onTheWay.insert(person);
            const uint supervisor = supervisorOf.value(person);
            person = supervisor == person ? 0 : supervisor;
        }
        if (onTheWay.contains(person))
            addCircle(way.mid(way.indexOf(person)));
        done += onTheWay;
    }
}

void PeopleCheck::addCircle(const QVector<uint> &people)
{
    QVector<int> lines;
    QStringList numbers;
    for (const uint person : people) {
        lines.append(lineOfNumber.value(person));
        numbers.append(QString::number(person));
    }
    std::sort(lines.begin(), lines.end());
    add("W-PERSON-CIRCLE", lines, ExportCell::Supervisor + 1, {numbers.join(QStringLiteral(", "))});
}

/// The number has no other spelling unless somebody has it, or names it, in plain digits or in
/// another odd form.
void PeopleCheck::lookAtSpellings()
{
    if (spellings.isEmpty())
        return;
    QHash<uint, QSet<QString>> oddForms;
    QSet<QPair<int, int>> oddPlaces;
    for (const OddSpelling &spelling : spellings) {
        oddForms[spelling.number].insert(spelling.text);
        oddPlaces.insert({spelling.line, spelling.column});
    }
    QSet<uint> plain;
    for (const DigestLine &line : digest) {
        if (!oddPlaces.contains({line.line, ExportCell::Number + 1}))
            plain.insert(line.number);
        if (!oddPlaces.contains({line.line, ExportCell::Supervisor + 1}))
            plain.insert(line.supervisor);
    }
    for (const OddSpelling &spelling : spellings) {
        if (plain.contains(spelling.number) || oddForms.value(spelling.number).size() > 1)
            add("W-PERSON-SPELLING", {spelling.line}, spelling.column,
                {QString::number(spelling.number), spelling.text});
    }
}

} // namespace

void checkPerson(const EmployeeRecord &record, int lineNumber, const QDate &today,
                 ExportFindings *findings)
{
    if (record.pid() == 0)
        findings->append({&findingKind("E-PERSON-ZERO"),
                          lineNumber,
                          ExportCell::Number + 1,
                          {record.pamId()},
                          {}});
    const QDate &end = record.datumVystupu;
    if (!end.isValid())
        return;
    if (record.datumNastupu.isValid() && end < record.datumNastupu)
        findings->append({&findingKind("W-PERSON-DATES"), lineNumber, ExportCell::End + 1, {}, {}});
    else if (record.stavPracovnihoPomeru <= 3 && end < today)
        findings->append({&findingKind("N-PERSON-ENDED"),
                          lineNumber,
                          ExportCell::End + 1,
                          {QString::number(record.stavPracovnihoPomeru)},
                          {}});
}

ExportFindings checkPeople(const ExportDigest &digest, const QVector<OddSpelling> &spellings)
{
    return PeopleCheck(digest, spellings).look();
}
