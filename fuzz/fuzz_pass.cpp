// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Any bytes as the answers of the database and the export file, through whole ticks.
#include "answereddatabase.h"
#include "check.h"
#include "exportmodel.h"
#include "host/catalogue/messages.h"
#include "memoryfile.h"
#include "messagelist.h"
#include "support/workerpeer.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <memory>

namespace {

/// What the first byte of an input chooses.
struct Choices
{
    explicit Choices(uint8_t byte) :
        logLevel(byte & 3),
        forced(byte & 4),
        testMode(byte & 8),
        twoTicks(byte & 16),
        opens(!(byte & 32)),
        departmentId(byte & 64 ? 0 : 1),
        knowsStates(byte & 128)
    { }

    quint8 logLevel;
    bool forced;
    bool testMode;
    bool twoTicks; ///< the second one finds the same file
    bool opens; ///< the connection can be opened
    uint departmentId;
    bool knowsStates;
};

void setUp(THRWorker *worker, const Choices &choices, const QString &importFile)
{
    worker->setLogLevel(choices.logLevel);
    worker->setOrvDb(AnsweredDatabase::handle());
    worker->init();
    worker->setSyncInterval(1);
    worker->setTestMode(choices.testMode);
    worker->setDeleteFile(false);
    worker->setDepartmentId(choices.departmentId);
    worker->setImportFile(importFile);
    if (choices.knowsStates)
        worker->setMes({{21, QStringLiteral("materská")}, {22, QString()}});
}

/// The message of the catalogue that stands in the list as "debug TEXT" and the like; null if none
/// does.
const PluginMessage *messageOf(const QString &listed)
{
    const QString level = listed.section(QLatin1Char(' '), 0, 0);
    const QtMsgType type = level == QLatin1String("debug") ? QtDebugMsg
        : level == QLatin1String("info")                   ? QtInfoMsg
        : level == QLatin1String("warning")                ? QtWarningMsg
                                                           : QtCriticalMsg;
    return findMessage(type, listed.mid(level.size() + 1));
}

/// The error of the database may stand alone in a message; all others are the plugin's own and of
/// the log level.
void checkMessage(const Choices &choices, const PluginMessage *message, const QString &listed)
{
    if (listed == QLatin1String("critical ") + AnsweredDatabase::errorText())
        return;
    FUZZ_CHECK(message && topicOf(*message).ofPlugin, QStringLiteral("nobody's: ") + listed);
    FUZZ_CHECK(message->level <= choices.logLevel,
               QStringLiteral("at level %1: ").arg(choices.logLevel) + listed);
}

/// Every message is one of a pass and of its level; one pass begins and ends in the log, and the
/// end tells how many records wait.
void checkMessages(const Choices &choices, bool passRan, int waiting)
{
    int begins = 0;
    QStringList ends;
    for (const QString &listed : MessageList::all()) {
        const PluginMessage *const message = messageOf(listed);
        checkMessage(choices, message, listed);
        begins += message && message->event == MessageEvent::PassBegins;
        if (message && message->event == MessageEvent::PassEnds)
            ends.append(listed);
    }
    if (choices.logLevel == 0)
        return;
    const QString end = QStringLiteral("(waiting records: %1)").arg(waiting);
    FUZZ_CHECK(begins == (passRan ? 1 : 0) && ends.size() == begins,
               QStringLiteral("%1 begins, %2 ends").arg(begins).arg(ends.size()));
    FUZZ_CHECK(!passRan || ends.first().endsWith(end), ends.first());
}

bool isIn(const EmployeeRecord &record, const ExportModel &model)
{
    return std::any_of(
        model.records.begin(), model.records.end(),
        [&record](const ModelledRecord &modelled) { return agree(record, modelled); });
}

/// Every person of the file is remembered once the people could be read, and nobody else.
void checkRemembered(const WorkerPeer &peer, const ExportModel &model, bool peopleRead)
{
    QSet<uint> pids;
    for (const ModelledRecord &modelled : model.records)
        pids.insert(modelled.record.pid());
    const QList<uint> remembered = peer.lastRecords.keys();
    FUZZ_CHECK(remembered.size() == (peopleRead ? pids.size() : 0),
               QStringLiteral("%1 people remembered").arg(remembered.size()));
    for (auto it = peer.lastRecords.constBegin(); it != peer.lastRecords.constEnd(); ++it) {
        FUZZ_CHECK(it.key() == it->pid() && isIn(*it, model),
                   QStringLiteral("strange: ") + it->toText(false));
    }
}

void checkMembers(const WorkerPeer &peer)
{
    FUZZ_CHECK(peer.importedRecords.isEmpty(), QStringLiteral("records left over"));
    FUZZ_CHECK(peer.branchPeople.isEmpty(), QStringLiteral("people left over"));
    FUZZ_CHECK(!peer.inProgress, QStringLiteral("still in progress"));
    FUZZ_CHECK(!peer.db.isOpen(), QStringLiteral("connection left open"));
    for (auto it = peer.dbPeople.constBegin(); it != peer.dbPeople.constEnd(); ++it)
        FUZZ_CHECK(it.key() == it->pid(), QStringLiteral("person under another key"));
}

/// Who waits is current, has a branch, is in the file and waits once.
void checkWaiting(const WorkerPeer &peer, const ExportModel &model)
{
    const QVector<EmployeeRecord> waiting = peer.waitingRecords.toVector();
    for (const EmployeeRecord &record : waiting) {
        const bool legal = record.stredisko != 0 && record.isCurrent() && isIn(record, model)
            && (waiting.count(record) == 1 || record.dovolenaZustatek != record.dovolenaZustatek);
        FUZZ_CHECK(legal, QStringLiteral("waits: ") + record.toText(false));
    }
}

void tick(THRWorker *worker, const Choices &choices, const ExportModel &model,
          const AnsweredDatabase &database)
{
    const WorkerPeer peer(*worker);
    MessageList::clear();
    FUZZ_CHECK(QMetaObject::invokeMethod(worker, "checkSync", Qt::DirectConnection),
               QStringLiteral("no tick"));
    FUZZ_CHECK(!database.isInTransaction(), QStringLiteral("transaction left open"));
    checkMembers(peer);
    checkRemembered(peer, model, database.gavePeople());
    checkWaiting(peer, model);
    checkMessages(choices, choices.opens, peer.waitingRecords.size());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    MessageList::install();
    static QCoreApplication application(*argc, *argv);
    return 0;
}

/// A byte of choices, the number of answers, the answers, and the export file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    if (size < 2)
        return 0;
    const Choices choices(data[0]);
    const std::size_t answers = std::min<std::size_t>(data[1], size - 2);
    const uint8_t *const bytes = data + 2 + answers;
    const QByteArray content(reinterpret_cast<const char *>(bytes),
                             static_cast<int>(size - 2 - answers));
    static MemoryFile file;
    file.setContent(bytes, static_cast<std::size_t>(content.size()));
    const ExportModel model = modelOfExport(content, file.path(), 0, false);

    AnsweredDatabase database(data + 2, answers, choices.forced, choices.opens,
                              content.contains('%'));
    THRWorker worker;
    setUp(&worker, choices, file.path());
    for (int i = choices.twoTicks ? 2 : 1; i > 0; --i)
        tick(&worker, choices, model, database);
    return 0;
}
