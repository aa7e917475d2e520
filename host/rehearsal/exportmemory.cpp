// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a server remembers of the exports that it has taken.
#include "host/rehearsal/exportmemory.h"

#include "export/exportfile.h"
#include "export/exportline.h"
#include "host/base/regularfile.h"

#include <QFile>
#include <QFileInfo>

#include <functional>

namespace {

/// All lines that come to a record, as the plugin reads them.
Failure readRecords(
    const QString &path,
    const std::function<void(const EmployeeRecord &record, const QByteArray &bytes)> &take)
{
    QFile file(path);
    if (const Failure failure = openRegularFile(&file))
        return failure;
    ExportFile lines(&file);
    LineReader reader;
    QString line;
    while (lines.nextLine(&line)) {
        const ExportLine parsed = reader.read(line);
        if (parsed.fate == LineFate::Taken)
            take(parsed.record, lines.lineBytes());
    }
    return {};
}

} // namespace

Failure ExportMemory::take(const QString &path)
{
    const QDateTime taken = QFileInfo(path).lastModified();
    return readRecords(path, [this, &taken](const EmployeeRecord &record, const QByteArray &) {
        people.insert(record.pid(), {record, taken});
    });
}

Failure ExportMemory::compare(const QString &path, QVector<SeenPerson> *seen) const
{
    QHash<uint, int> places; // in `seen`, by pid
    return readRecords(path, [&](const EmployeeRecord &record, const QByteArray &bytes) {
        const uint pid = record.pid();
        const auto last = people.constFind(pid);
        if (last == people.constEnd())
            return;
        if (!places.contains(pid)) {
            places.insert(pid, seen->size());
            seen->append({pid, record.pamId(), last->taken, true, true, QByteArray()});
        }
        SeenPerson &person = (*seen)[places.value(pid)];
        person.isUnchanged = person.isUnchanged && record == last->record;
        // A balance that is not a number differs from itself.
        person.hasSameLeave = person.hasSameLeave
            && record.dovolenaZustatek == last->record.dovolenaZustatek;
        person.lines += bytes + '\n';
    });
}
