// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A story for machines, "talvenhr.explain/1".
#include "host/explain/storyjson.h"

#include "host/changes/changesjson.h"
#include "host/changes/headerjson.h"
#include "host/changes/rehearsaljson.h"
#include "host/exportcheck/cellform.h"

namespace {

/// An array of values that are made already.
QByteArray arrayOf(const QVector<QByteArray> &values)
{
    QByteArray text;
    for (const QByteArray &value : values)
        text += (text.isEmpty() ? "" : ",") + value;
    return '[' + text + ']';
}

QString fateName(LineFate fate)
{
    switch (fate) {
    case LineFate::Taken:
        return QStringLiteral("taken");
    case LineFate::WrongCount:
        return QStringLiteral("wrong-count");
    case LineFate::NoKey:
        return QStringLiteral("no-key");
    case LineFate::NoName:
        break;
    }
    return QStringLiteral("no-name");
}

QByteArray person(const ChosenPerson &person)
{
    QVector<QByteArray> uids;
    for (const qlonglong uid : person.uids)
        uids.append(QByteArray::number(uid));
    return jsonObject({{QStringLiteral("pamId"), jsonText(person.pamId)},
                       {QStringLiteral("pid"), QByteArray::number(person.pid)},
                       {QStringLiteral("uids"), arrayOf(uids)},
                       {QStringLiteral("name"), jsonText(person.name)},
                       {QStringLiteral("takenAs"), jsonValue(keyName(person.takenAs))}});
}

QByteArray findingsOf(const ExplainFacts &facts, int line)
{
    QVector<QByteArray> findings;
    for (const ExportFinding &found : facts.findings) {
        if (found.line != line && !found.lines.contains(line))
            continue;
        findings.append(findingJson(told(found, facts.texts)));
    }
    return arrayOf(findings);
}

QByteArray linesOf(const ExplainFacts &facts)
{
    QVector<QByteArray> lines;
    for (const PersonLine &line : facts.lines) {
        if (!line.isHeader)
            lines.append(
                jsonObject({{QStringLiteral("number"), QByteArray::number(line.number)},
                            {QStringLiteral("fate"), jsonValue(fateName(line.fate))},
                            {QStringLiteral("cells"), jsonValue(line.cells)},
                            {QStringLiteral("findings"), findingsOf(facts, line.number)}}));
    }
    return arrayOf(lines);
}

QByteArray chaptersOf(const Story &story)
{
    QVector<QByteArray> chapters;
    for (const StoryChapter &chapter : story.chapters) {
        QVector<QByteArray> lines;
        for (const StoryLine &line : chapter.lines)
            lines.append(jsonObject({{QStringLiteral("text"), jsonValue(line.text)},
                                     {QStringLiteral("detail"), jsonValue(line.isDetail)},
                                     {QStringLiteral("statements"), jsonValue(line.statements)}}));
        chapters.append(jsonObject({{QStringLiteral("name"), jsonValue(chapter.name)},
                                    {QStringLiteral("lines"), arrayOf(lines)}}));
    }
    return arrayOf(chapters);
}

} // namespace

void writeStory(const ExplainFacts &facts, const Story &story, const ByteSink &sink)
{
    QByteArray changes;
    writeChanges(facts.changes, [&changes](const QByteArray &bytes) { changes += bytes; });
    sink(jsonObject({{QStringLiteral("format"), jsonValue(QStringLiteral("talvenhr.explain/1"))},
                     {QStringLiteral("person"), person(facts.person)},
                     {QStringLiteral("export"), jsonValue(facts.exportName)},
                     {QStringLiteral("lines"), linesOf(facts)},
                     {QStringLiteral("chapters"), chaptersOf(story)},
                     {QStringLiteral("verdict"),
                      jsonObject({{QStringLiteral("text"), jsonValue(story.verdict)},
                                  {QStringLiteral("next"), jsonValue(story.next)},
                                  {QStringLiteral("exitCode"),
                                   jsonValue(static_cast<int>(story.exitCode))}})},
                     {QStringLiteral("changes"), changes.trimmed()}})
         + '\n');
}
