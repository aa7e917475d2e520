// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines of an export that are about one person.
#include "host/explain/personlines.h"

#include "export/exportfile.h"
#include "host/exportcheck/cellform.h"

#include <algorithm>

namespace {

/// Of the first two cells, whatever has become of the line.
EmployeeRecord keyRecord(const ExportLine &line)
{
    EmployeeRecord record;
    record.osobniCislo = numberFromCell(line.cells[ExportCell::Number]);
    record.poradoveCisloPP = numberFromCell(line.cells[ExportCell::Ordinal]);
    return record;
}

bool isWanted(LineFate fate, const EmployeeRecord &key, const WantedLines &wanted)
{
    return wanted.pids.contains(key.pid()) || isNumberOf(wanted.number, key.pamId())
        || (fate == LineFate::NoKey && wanted.orphans.contains(key.osobniCislo));
}

PersonLine personLine(const ExportLine &line, int number, const QByteArray &bytes)
{
    PersonLine result;
    result.number = number;
    result.bytes = QByteArray(bytes.constData(), bytes.size());
    result.fate = line.fate;
    result.record = line.fate == LineFate::WrongCount ? keyRecord(line) : line.record;
    result.pid = result.record.pid();
    for (int i = 0; i < qMin(line.cellCount, exportColumnCount); ++i)
        result.cells.append(line.cells[static_cast<size_t>(i)].toString());
    return result;
}

} // namespace

QVector<PersonLine> readPersonLines(QIODevice *device, const WantedLines &wanted)
{
    QVector<PersonLine> found;
    ExportFile file(device);
    LineReader reader;
    QString text;
    while (file.nextLine(&text)) {
        const ExportLine line = reader.read(text);
        const int number = file.lineNumber();
        const bool header = number == 1 && line.fate != LineFate::Taken && isHeader(line);
        const EmployeeRecord key = keyRecord(line);
        if (!header && !isWanted(line.fate, key, wanted))
            continue;
        found.append(personLine(line, number, file.lineBytes()));
        found.last().isHeader = header;
    }
    return found;
}

QVector<LinePerson> peopleOf(const QVector<PersonLine> &lines)
{
    QVector<LinePerson> people;
    for (const PersonLine &line : lines) {
        if (!line.isHeader && line.fate != LineFate::NoKey)
            people.append({line.pid, line.record.pamId()});
    }
    return people;
}

QVector<PersonLine> linesOf(const QVector<PersonLine> &lines, const ChosenPerson &person)
{
    const uint number = numberFromCell(
        QStringRef(&person.pamId).left(person.pamId.indexOf(QLatin1Char('.'))));
    QVector<PersonLine> result;
    std::copy_if(lines.cbegin(), lines.cend(), std::back_inserter(result),
                 [&](const PersonLine &line) {
                     const bool isPerhapsTheirs = line.fate == LineFate::NoKey && number != 0
                         && line.record.osobniCislo == number;
                     return line.isHeader || line.pid == person.pid || isPerhapsTheirs;
                 });
    return result;
}

QByteArray exportOf(const QVector<PersonLine> &lines)
{
    QByteArray content;
    for (const PersonLine &line : lines)
        content += line.bytes + '\n';
    return content;
}
