// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The catalogue of messages: which one a text is, whom it names, and the page that is written of
// it.
#include "host/catalogue/messages.h"
#include "host/catalogue/messagesdocument.h"
#include "support/eventlog.h"

#include <QFile>
#include <QtTest>

namespace {

/// The text with its places filled.
QString instance(const PluginMessage &message, const char *text)
{
    QString filled = QString::fromUtf8(message.text);
    filled.replace(QLatin1String("%u"), QLatin1String("7"));
    filled.replace(QLatin1String("%i"), QLatin1String("-3"));
    return filled.replace(QLatin1String("%s"), QString::fromUtf8(text));
}

MessageEvent eventOf(QtMsgType type, const char *text)
{
    const PluginMessage *const message = findMessage(type, QString::fromUtf8(text));
    return message ? message->event : MessageEvent::Nothing;
}

} // namespace

Q_DECLARE_METATYPE(NamedPeople)
Q_DECLARE_METATYPE(QtMsgType)

class tst_MessageCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyMessage_findsItself_data();
    void everyMessage_findsItself();
    void everyMessage_isWhole();
    void people_data();
    void people();
    void strangers_data();
    void strangers();
    void events();
    void saidBy();
    void document_isTheCommittedPage();
    void document_holdsEveryMessageOnce();
};

void tst_MessageCatalogue::everyMessage_findsItself_data()
{
    QTest::addColumn<QString>("filling");
    QTest::newRow("a word") << "word";
    QTest::newRow("nothing") << "";
    QTest::newRow("brackets and quotes") << "x) - 'y' (z): \"";
    QTest::newRow("line breaks") << "first\nsecond";
}

/// No two of one kind share a text, and what is filled in does not matter.
void tst_MessageCatalogue::everyMessage_findsItself()
{
    QFETCH(QString, filling);
    int count = 0;
    for (const MessageTopic &topic : messageTopics()) {
        for (const PluginMessage &message : topic.messages) {
            const QString text = instance(message, qPrintable(filling));
            QVERIFY2(findMessage(message.type, text) == &message, qPrintable(text));
            QCOMPARE(valuesIn(message, text).size(),
                     QString::fromUtf8(message.text).count(QLatin1Char('%')));
            QCOMPARE(&topicOf(message), &topic);
            ++count;
        }
    }
    QVERIFY(count > 100);
}

void tst_MessageCatalogue::everyMessage_isWhole()
{
    for (const MessageTopic &topic : messageTopics()) {
        for (const PluginMessage &message : topic.messages) {
            const bool explained = message.isComplaint() && topic.ofPlugin;
            QVERIFY2(explained == (message.meaning != nullptr), message.text);
            QVERIFY2(message.meaning || (!message.effect && !message.remedy), message.text);
            QVERIFY2(message.level >= 0 && message.level <= 3, message.text);
            for (const char *sentence : {message.meaning, message.effect, message.remedy})
                QVERIFY2(!sentence || QByteArray(sentence).endsWith('.'), message.text);
        }
    }
}

void tst_MessageCatalogue::people_data()
{
    QTest::addColumn<QtMsgType>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<NamedPeople>("people");
    const auto row = [](QtMsgType type, const char *text, const NamedPeople &people) {
        QTest::newRow(text) << type << QString::fromUtf8(text) << people;
    };
    const NamedPeople pid {NamedPeople::Pid, {10161}};
    const NamedPeople uid {NamedPeople::Uid, {14}};
    row(QtDebugMsg, "THRWorker::doSyncRecord(1016.1 O'Hara Sean (S: 2, K: 1 from ))", pid);
    row(QtDebugMsg, "THRWorker::doSyncRecord(1016.1 X) - dbAddPersonIntoPam(5, 1) FAILED!)", pid);
    row(QtWarningMsg, "THRWorker::doSyncRecord(1016.1 5, 5) - dbAddPersonIntoPam(9, 1) FAILED!",
        pid);
    row(QtWarningMsg,
        "THRWorker: Group ID NOT found for Branch 1 and calendar 2 [employee: '1016.1 X']!", pid);
    row(QtWarningMsg,
        "THRWorker: User (employee) ID NOT found for pid (Personal ID) 10161 [employee: "
        "'5.1 X'] - lastCalc not changed (manual recalculation is needed)!",
        pid);
    row(QtWarningMsg,
        "THRWorker::doSyncRecord() - funds_move type (type=3, valeu=-50) not writed for uid 14 "
        "(pid: 10161)",
        pid);
    row(QtWarningMsg, "THRWorker - zamestnanec s osobnym cislom 10161 nebol najdeny!", pid);
    row(QtWarningMsg, "THRWorker - admin s osobnym cislom 10161 nebol najdeny!", {});
    row(QtDebugMsg, "THRWorker::dbResetAdminPeopleRequest(aid: 2, uid: 14) - affected: -1", uid);
    row(QtDebugMsg, "GroupsPlanRepo::add(G: 2, U: 14, S: 202403)", uid);
    row(QtInfoMsg, "BranchesRepository::addPeopleToBranch(2, '14,0,15')",
        {NamedPeople::Uid, {14, 0, 15}});
    row(QtCriticalMsg, "THRWorker::dbLoadPeople() - SQL ERROR [1]: pid: 10161", {});
}

void tst_MessageCatalogue::people()
{
    QFETCH(QtMsgType, type);
    QFETCH(QString, text);
    const PluginMessage *const message = findMessage(type, text);
    QVERIFY(message);
    QTEST(peopleIn(*message, text), "people");
}

void tst_MessageCatalogue::strangers_data()
{
    QTest::addColumn<QtMsgType>("type");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QtDebugMsg << QString();
    QTest::newRow("of another program") << QtDebugMsg << "something new";
    QTest::newRow("another kind") << QtWarningMsg << "THRWorker::dbLoadPeople()";
    QTest::newRow("no number") << QtDebugMsg << "THRWorker::dbGetUidByPid(x)";
    QTest::newRow("cut off") << QtDebugMsg << "THRWorker::dbLoadPeople(";
    QTest::newRow("more behind") << QtDebugMsg << "THRWorker::dbLoadPeople() and more";
    QTest::newRow("more in front") << QtDebugMsg << " THRWorker::dbLoadPeople()";
}

void tst_MessageCatalogue::strangers()
{
    QFETCH(QtMsgType, type);
    QFETCH(QString, text);
    QVERIFY(!findMessage(type, text));
}

void tst_MessageCatalogue::events()
{
    QCOMPARE(eventOf(QtDebugMsg, "THRWorker: BEGIN synchronization #1 (force: NO)"),
             MessageEvent::PassBegins);
    QCOMPARE(eventOf(QtDebugMsg, "THRWorker::dbAddPerson(1.1 A) - SQL ERROR: x)"),
             MessageEvent::PersonAdded);
    QCOMPARE(eventOf(QtCriticalMsg, "THRWorker::dbAddPerson(1.1) - SQL ERROR: x"),
             MessageEvent::PersonNotAdded);
    QCOMPARE(eventOf(QtWarningMsg, "THRWorker::dbAddPerson(1.1) - addPersonIntoPam() FAILED!"),
             MessageEvent::Nothing);
    QCOMPARE(eventOf(QtWarningMsg, "THRWorker::loadAndParseData() - file 'a' NOT found!"),
             MessageEvent::ExportMissing);
    QCOMPARE(
        eventOf(QtWarningMsg, "THRWorker::loadAndParseData() - file 'NOT found!' NOT removed!"),
        MessageEvent::Nothing);

    const QString end = QStringLiteral("THRWorker: END synchronization #2 (waiting records: 7)");
    const PluginMessage *const message = findMessage(QtDebugMsg, end);
    QVERIFY(message);
    QCOMPARE(message->event, MessageEvent::PassEnds);
    QCOMPARE(valuesIn(*message, end), lines({"2", "7"}));
}

void tst_MessageCatalogue::saidBy()
{
    const auto by = [](QtMsgType type, const char *text) {
        return findMessage(type, QString::fromUtf8(text))->saidBy();
    };
    QCOMPARE(by(QtDebugMsg, "THRWorker::dbLoadPeople()"),
             QStringLiteral("THRWorker::dbLoadPeople"));
    QCOMPARE(by(QtCriticalMsg, "GroupsPlanRepo::add - ERROR[1]: x"),
             QStringLiteral("GroupsPlanRepo::add"));
    QCOMPARE(by(QtDebugMsg, "THRWorker::init()"),
             QStringLiteral("THRWorker::init, THRWorker::stop"));
    for (const MessageTopic &topic : messageTopics()) {
        for (const PluginMessage &message : topic.messages)
            QVERIFY2(message.saidBy().contains(QLatin1String("::"))
                         || message.saidBy() == QLatin1String("ensureDir"),
                     message.text);
    }
}

/// The target messages-document writes it anew.
void tst_MessageCatalogue::document_isTheCommittedPage()
{
    QFile file(QStringLiteral(TALVENHR_SOURCE_FOLDER "/docs/messages.md"));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QStringList committed = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    const QStringList written = messagesDocument().split(QLatin1Char('\n'));
    for (int i = 0; i < qMin(committed.size(), written.size()); ++i)
        QCOMPARE(committed.at(i), written.at(i));
    QCOMPARE(committed.size(), written.size());
}

void tst_MessageCatalogue::document_holdsEveryMessageOnce()
{
    QString page = messagesDocument();
    page.replace(QLatin1String("\\|"), QLatin1String("|"));
    const QStringList rows = page.split(QLatin1Char('\n'));
    for (const MessageTopic &topic : messageTopics()) {
        for (const PluginMessage &message : topic.messages) {
            const QString text = QString::fromUtf8(message.text).section(QLatin1Char('\n'), 0, 0);
            const QString code = QLatin1Char('`') + text + QLatin1Char('`');
            QCOMPARE(rows.filter(code).size(), 1);
        }
    }
}

QTEST_GUILESS_MAIN(tst_MessageCatalogue)
#include "tst_messagecatalogue.moc"
