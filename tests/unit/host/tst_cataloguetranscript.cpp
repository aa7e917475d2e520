// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The catalogue against the transcript of a company over four passes: it knows every statement and
// every message there, and whom each is about.
#include "support/catalogue/knownevents.h"
#include "support/catalogue/transcriptevents.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

namespace {

QString captured(const QString &text, const char *pattern)
{
    return QRegularExpression(QString::fromLatin1(pattern),
                              QRegularExpression::DotMatchesEverythingOption)
        .match(text)
        .captured(1);
}

QSet<QString> allCaptured(const QString &text, const char *pattern)
{
    QSet<QString> found;
    auto matches = QRegularExpression(QString::fromLatin1(pattern),
                                      QRegularExpression::CaseInsensitiveOption)
                       .globalMatch(text);
    while (matches.hasNext())
        found.insert(matches.next().captured(1));
    return found;
}

/// Who is being worked on, by the transcript's own words.
class Walk
{
public:
    /// Follows where the records and the branches begin.
    void take(const QString &event)
    {
        const QString record = captured(event, "^debug THRWorker::doSyncRecord\\(([0-9.]+) ");
        const QString queue = captured(
            event, "^info BranchesRepository::addPeopleToBranch\\(\\d+, '([0-9,]+)'\\)$");
        if (!record.isEmpty())
            pid = QString(record).remove(QLatin1Char('.')).toUInt();
        if (!record.isEmpty() || !queue.isEmpty())
            members = queue.isEmpty() ? QStringList() : queue.split(QLatin1Char(','));
    }

    /// Why these are not the people who are being worked on; empty if they are.
    QString objection(const NamedPeople &people)
    {
        if (people.key == NamedPeople::Nobody)
            return QString();
        if (people.ids.isEmpty())
            return QStringLiteral("names nobody");
        for (const uint id : people.ids) {
            const QString wrong = people.key == NamedPeople::Pid ? objectionToPid(id)
                                                                 : objectionToUid(id);
            if (!wrong.isEmpty())
                return wrong;
        }
        return QString();
    }

private:
    QString objectionToPid(uint id) const
    {
        return id == pid && members.isEmpty() ? QString() : QStringLiteral("pid %1").arg(id);
    }

    /// A person's uid is one, and nobody else's.
    QString objectionToUid(uint id)
    {
        if (!members.isEmpty())
            return members.contains(QString::number(id)) ? QString()
                                                         : QStringLiteral("no member: %1").arg(id);
        if (!uids.contains(pid))
            uids.insert(pid, id);
        const bool right = uids.value(pid) == id && uids.keys(id).size() == 1;
        return right ? QString() : QStringLiteral("uid %1 of pid %2").arg(id).arg(pid);
    }

    uint pid = 0; ///< of the record
    QStringList members; ///< of the branch that takes them in; empty while records are worked on
    QHash<uint, uint> uids;
};

} // namespace

class tst_CatalogueTranscript : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void statements_areKnownAndHaveTheirPerson();
    void statements_needWhatTheirTextNames();
    void messages_areKnownAndNameTheirPerson();

private:
    QStringList events;
};

void tst_CatalogueTranscript::initTestCase()
{
    events = transcriptEvents();
    QVERIFY(events.size() > 1000);
}

void tst_CatalogueTranscript::statements_areKnownAndHaveTheirPerson()
{
    Walk walk;
    KnownEvents known;
    QSet<int> met;
    int aboutSomebody = 0;
    for (const QString &event : qAsConst(events)) {
        walk.take(event);
        if (!KnownEvents::isStatement(event))
            continue;
        const ClassifiedStatement statement = known.statement(event);
        const NamedPeople people = peopleIn(statement);
        QVERIFY2(statement.statement != PassStatement::Unknown, qPrintable(event));
        QVERIFY2(statement.inPlace, qPrintable(event));
        QCOMPARE(walk.objection(people) + event, event);
        met.insert(static_cast<int>(statement.statement));
        aboutSomebody += people.key != NamedPeople::Nobody;
    }
    QVERIFY(aboutSomebody > 500);
    for (const StatementFacts &facts : allStatements())
        QVERIFY2(met.contains(static_cast<int>(facts.statement)),
                 qPrintable(QString::number(static_cast<int>(facts.statement))));
}

/// Tables and routines as the text itself has them.
void tst_CatalogueTranscript::statements_needWhatTheirTextNames()
{
    KnownEvents known;
    for (const QString &event : qAsConst(events)) {
        if (!KnownEvents::isStatement(event))
            continue;
        const StatementFacts &facts = factsOf(known.statement(event).statement);
        const QString text = known.statementText(event).section(
            QStringLiteral(" ON DUPLICATE KEY "), 0, 0);
        QSet<QString> tables;
        QSet<QString> routines;
        for (const StatementNeed &need : facts.needs)
            (need.rights.contains(QStringLiteral("EXECUTE")) ? routines : tables)
                .insert(need.object);
        QCOMPARE(tables, allCaptured(text, "\\b(?:FROM|JOIN|INTO|UPDATE)\\s+`?(\\w+)"));
        QCOMPARE(routines,
                 allCaptured(text,
                             "\\b(midnightFromTs|monthFromTimestamp|getCurrentGid|"
                             "updateTermsSync)\\("));
        const bool writes = !text.startsWith(QLatin1String("SELECT"));
        QVERIFY2((facts.access != StatementAccess::Reads) == writes, qPrintable(text));
    }
}

void tst_CatalogueTranscript::messages_areKnownAndNameTheirPerson()
{
    Walk walk;
    int aboutSomebody = 0;
    for (const QString &event : qAsConst(events)) {
        walk.take(event);
        if (event.startsWith(QLatin1String("sql ")))
            continue;
        const PluginMessage *const message = KnownEvents::message(event);
        QVERIFY2(message && topicOf(*message).ofPlugin, qPrintable(event));
        const NamedPeople people = peopleIn(*message, KnownEvents::messageText(event));
        QCOMPARE(walk.objection(people) + event, event);
        aboutSomebody += people.key != NamedPeople::Nobody;
    }
    QVERIFY(aboutSomebody > 500);
}

QTEST_GUILESS_MAIN(tst_CatalogueTranscript)
#include "tst_cataloguetranscript.moc"
