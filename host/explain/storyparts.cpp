// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the chapters of a story have in common.
#include "host/explain/storyparts.h"

#include "host/base/oneline.h"
#include "host/catalogue/messages.h"
#include "host/database/changetext.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Story)
};

} // namespace

ChapterWriter::ChapterWriter(const QString &name, const QString &title)
{
    chapter.name = name;
    chapter.title = title;
}

void ChapterWriter::say(const QString &text, const QStringList &statements)
{
    chapter.lines.append({oneLine(text), false, statements});
}

void ChapterWriter::sayOnce(const QString &text)
{
    const QString line = oneLine(text);
    for (const StoryLine &said : qAsConst(chapter.lines)) {
        if (said.text == line)
            return;
    }
    say(text);
}

void ChapterWriter::detail(const QString &text, const QStringList &statements)
{
    chapter.lines.append({oneLine(text), true, statements});
}

void ChapterWriter::support(const QStringList &statements)
{
    if (!chapter.lines.isEmpty())
        chapter.lines.last().statements += statements;
}

PersonBefore::PersonBefore(const ExplainFacts &storyFacts) :
    facts(storyFacts),
    people(storyFacts.before.find(QStringLiteral("people")))
{
    if (!people)
        return;
    for (const TableRow &candidate : people->rows) {
        const TableRow *const best = row;
        row = &candidate;
        // An active row counts more than those before it.
        if (best && !isActive())
            row = best;
    }
    countDays();
}

bool PersonBefore::isActive() const
{
    return cell(QStringLiteral("status")).toInt() != 0;
}

QVariant PersonBefore::cell(const QString &column) const
{
    const int place = row ? people->indexOf(column) : -1;
    return place < 0 ? QVariant() : row->at(place);
}

QString PersonBefore::shown(const QString &column) const
{
    const QVariant value = cell(column);
    return value.isValid() ? oneLine(cellText(*people->table, column, value)) : Text::tr("none");
}

int PersonBefore::count(const QString &table) const
{
    return cells(table, QStringLiteral("uid")).size();
}

QVector<QVariant> PersonBefore::cells(const QString &table, const QString &column) const
{
    QVector<QVariant> values;
    const TableContent *const content = facts.before.find(table);
    if (!content)
        return values;
    const int person = content->indexOf(content->table->person);
    const int place = content->indexOf(column);
    if (person < 0 || place < 0)
        return values;
    for (const TableRow &candidate : content->rows) {
        if (candidate.at(person).toLongLong() == uid())
            values.append(candidate.at(place));
    }
    return values;
}

void PersonBefore::countDays()
{
    const QString table = QStringLiteral("atten");
    const QVector<QVariant> days = cells(table, QStringLiteral("date"));
    const QVector<QVariant> marks = cells(table, QStringLiteral("ok"));
    const QVector<QVariant> locks = cells(table, QStringLiteral("lock"));
    for (int i = 0; i < qMin(days.size(), marks.size()); ++i) {
        const QDate day = QDateTime::fromSecsSinceEpoch(days.at(i).toLongLong()).date();
        const int mark = marks.at(i).toInt();
        if (locks.value(i).toInt() != 0)
            continue;
        if (mark == -1 && openDays++ == 0)
            openSince = day;
        if (mark == -1)
            openSince = qMin(openSince, day);
        if (mark < -1 && day >= facts.today)
            ++futureDays;
    }
}

QString namedId(const IdNames &names, const char *column, const QVariant &id)
{
    if (!id.isValid())
        return Text::tr("none");
    const QString name = names.value(QLatin1String(column)).value(id.toLongLong()).simplified();
    return name.isEmpty() ? Text::tr("number %1").arg(id.toString()) : oneLine(name);
}

QString dateText(const QDate &date)
{
    return date.isValid() ? date.toString(Qt::ISODate) : Text::tr("none");
}

QString plainText(const char *markdown)
{
    static const QRegularExpression link(QStringLiteral("\\[([^\\]]*)\\]\\([^)]*\\)"));
    QString text = QString::fromUtf8(markdown);
    text.replace(link, QStringLiteral("\\1"));
    return text.remove(QStringLiteral("**")).remove(QLatin1Char('`'));
}

QString messageText(const PluginMessage *known, const QString &text, PersonalTexts texts)
{
    if (texts == PersonalTexts::Shown)
        return oneLine(text);
    if (!known)
        return QStringLiteral("…");
    static const QRegularExpression place(QStringLiteral("%[sui]"));
    const QStringList values = valuesIn(*known, text);
    QString shown = QString::fromUtf8(known->text);
    int from = 0;
    for (int i = 0; i < values.size(); ++i) {
        const auto match = place.match(shown, from);
        const bool isNumber = match.captured() != QLatin1String("%s");
        const bool isKey = known->named.naming == Naming::PamId && known->named.place == i;
        const QString value = isNumber ? values.at(i)
            : isKey ? values.at(i).section(QLatin1Char(' '), 0, 0) + QStringLiteral(" …")
                    : QStringLiteral("…");
        shown.replace(match.capturedStart(), match.capturedLength(), value);
        from = match.capturedStart() + value.size();
    }
    return oneLine(shown);
}

const ChangedPerson *changedPerson(const ExplainFacts &facts)
{
    const auto &people = facts.changes.people;
    const auto found = std::find_if(
        people.cbegin(), people.cend(), [&facts](const ChangedPerson &changed) {
            return changed.pid == facts.person.pid || facts.person.uids.contains(changed.person.uid)
                || (!changed.person.pamId.isEmpty()
                    && keyOfPamId(changed.person.pamId) == facts.person.pid);
        });
    return found == people.cend() ? nullptr : &*found;
}

QVector<PersonLine> takenLines(const ExplainFacts &facts)
{
    QVector<PersonLine> taken;
    std::copy_if(
        facts.lines.cbegin(), facts.lines.cend(), std::back_inserter(taken),
        [](const PersonLine &line) { return !line.isHeader && line.fate == LineFate::Taken; });
    return taken;
}
