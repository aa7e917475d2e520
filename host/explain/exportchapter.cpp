// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A story's first chapter: what the export says of the person.
#include "host/explain/storyparts.h"

#include "host/exportcheck/cellform.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Story)
};

/// What the plugin's reader made of the cells that decide.
QString recordText(const EmployeeRecord &record)
{
    QString calendar = QString::number(record.calendarID);
    if (record.kalendarPlatnostOd.isValid())
        calendar = Text::tr("%1 from %2 on").arg(calendar, dateText(record.kalendarPlatnostOd));
    return Text::tr("first day %1, last day %2, branch %3, calendar %4, type %5, state %6, "
                    "evidence state %7, leave %8, supervisor %9")
        .arg(dateText(record.datumNastupu), dateText(record.datumVystupu),
             QString::number(record.stredisko), calendar,
             QString::number(record.typPracovnihoPomeru),
             QString::number(record.stavPracovnihoPomeru), QString::number(record.evidencniStav),
             QString::number(record.dovolenaZustatek, 'g', 10), QString::number(record.nadOsCis));
}

QString nameText(const EmployeeRecord &record)
{
    const QStringList parts {record.titul, record.jmeno, record.prijmeni, record.titulZa};
    return parts.join(QLatin1Char(' ')).simplified();
}

bool isAbout(const ExportFinding &found, int line)
{
    return found.line == line || found.lines.contains(line);
}

void tellFindings(const ExplainFacts &facts, int line, ChapterWriter *chapter)
{
    for (const ExportFinding &found : facts.findings) {
        if (!isAbout(found, line))
            continue;
        const Finding finding = told(found, facts.texts);
        chapter->detail(Text::tr("%1: %2").arg(severityName(finding.severity), codedLine(finding)));
    }
}

void tellTaken(const ExplainFacts &facts, const PersonLine &line, ChapterWriter *chapter)
{
    const QString pamId = line.record.pamId();
    chapter->say(
        Text::tr("Line %1 of %2 is taken: %3 %4")
            .arg(QString::number(line.number), facts.exportName, pamId, nameText(line.record))
            .trimmed());
    chapter->detail(recordText(line.record));
    if (pamId != facts.person.pamId && line.pid == facts.person.pid)
        chapter->detail(Text::tr("it has the pid %1 as well, so the plugin takes both for one "
                                 "person")
                            .arg(line.pid));
}

void tellDropped(const ExplainFacts &facts, const PersonLine &line, ChapterWriter *chapter)
{
    const bool isTheirs = line.pid == facts.person.pid;
    chapter->say((isTheirs ? Text::tr("Line %1 of %2 is dropped: nothing is made of it.")
                           : Text::tr("Line %1 of %2 is dropped, and may be theirs: it has their "
                                      "personal number."))
                     .arg(QString::number(line.number), facts.exportName));
}

} // namespace

StoryChapter exportChapter(const ExplainFacts &facts)
{
    ChapterWriter chapter(QStringLiteral("export"), Text::tr("The export"));
    for (const PersonLine &line : facts.lines) {
        if (line.isHeader)
            continue;
        if (line.fate == LineFate::Taken)
            tellTaken(facts, line, &chapter);
        else
            tellDropped(facts, line, &chapter);
        tellFindings(facts, line.number, &chapter);
    }
    if (chapter.isEmpty())
        chapter.say(Text::tr("No line of %1 is about them.").arg(facts.exportName));
    return chapter.result();
}
