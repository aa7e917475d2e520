// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The catalogue of messages, against the plugin itself and against the program.
#include "host/catalogue/messagegate.h"
#include "host/catalogue/messages.h"
#include "host/database/connection.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/pluginfile.h"
#include "host/server/privateserver.h"
#include "plugin/serverinterface.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"
#include "support/patience.h"

#include <QElapsedTimer>
#include <QMutex>
#include <QMutexLocker>
#include <QRegularExpression>
#include <QtTest>

#include <memory>

namespace {

struct Message
{
    QtMsgType type;
    QString text;
};

/// All messages as they come, without regard to any gate.
class Messages
{
public:
    Messages()
    {
        current = this;
        previous = qInstallMessageHandler(take);
    }
    ~Messages()
    {
        qInstallMessageHandler(previous);
        current = nullptr;
    }
    QVector<Message> all() const { return messages; }

private:
    static void take(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        const QMutexLocker locker(&current->mutex);
        current->messages.append({type, text});
    }

    static Messages *current;
    QMutex mutex;
    QVector<Message> messages;
    QtMessageHandler previous;
};

Messages *Messages::current = nullptr;

/// What of the messages belongs to the level.
QStringList belonging(const QVector<Message> &messages, int logLevel)
{
    QStringList texts;
    for (const Message &message : messages) {
        if (messageGate(message.type, message.text) <= logLevel)
            texts.append(message.text);
    }
    return texts;
}

/// What the catalogue does not give to the plugin.
QStringList strangers(const QVector<Message> &messages)
{
    QStringList texts;
    for (const Message &message : messages) {
        const PluginMessage *const known = findMessage(message.type, message.text);
        if (!known || !topicOf(*known).ofPlugin)
            texts.append(message.text);
    }
    return texts;
}

QStringList words(const QString &line)
{
    return line.split(QLatin1Char(' '));
}

} // namespace

class tst_MessageGate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void filteredLevel3EqualsThePluginAtEachLevel_data();
    void filteredLevel3EqualsThePluginAtEachLevel();
    void filteredLevel3EqualsTheProgramAtEachLevel();

private:
    void loadContent();
    void writeExport();
    QVector<Message> messagesAt(int logLevel, int passes);
    QVector<Message> patientMessagesAt(int logLevel, int passes);

    Site site;
    std::unique_ptr<DataDirectory> dataDirectory;
    std::unique_ptr<PrivateServer> server;
};

void tst_MessageGate::initTestCase()
{
    server.reset(new PrivateServer(site.path(QStringLiteral("db"))));
    server->setServerOptions(quickServerOptions());
    QString error;
    QVERIFY2(server->start(&error), qPrintable(error));
    dataDirectory.reset(new DataDirectory(site.dataDir()));

    // The export command counts the passes, also where the plugin is silent.
    site.writeFile(
        QStringLiteral("export.sh"),
        QStringLiteral("echo pass >> %1; exit 5").arg(site.path(QStringLiteral("passes"))));
    site.set({QStringLiteral("syncCommand=sh ") + site.path(QStringLiteral("export.sh")),
              QStringLiteral("syncCommandRun=2"), QStringLiteral("deleteFile=true")});
}

/// The sample company as it is before the first pass.
void tst_MessageGate::loadContent()
{
    const QStringList files = databaseFiles(QStringLiteral(TALVENHR_DATABASE_FOLDER),
                                            {QStringLiteral("schema"), QStringLiteral("routines"),
                                             QStringLiteral("sample"), QStringLiteral("grants")});
    const QString name = QStringLiteral("attendance");
    QString error;
    QVERIFY2(
        server->execute(QString(), QStringLiteral("DROP DATABASE IF EXISTS attendance"), &error)
            && server->createDatabase(name, &error) && server->loadFiles(name, files, &error),
        qPrintable(error));
}

/// Somebody known, somebody new, a supervisor whom nobody knows, and what gives warnings and
/// errors.
void tst_MessageGate::writeExport()
{
    QString underSupervisor = Site::employee(7001, QStringLiteral("Dáša"));
    underSupervisor.replace(QRegularExpression(QStringLiteral("0$")), QStringLiteral("1002"));
    QString underNobody = Site::employee(7003, QStringLiteral("Jiří"));
    underNobody.replace(QRegularExpression(QStringLiteral("0$")), QStringLiteral("9999"));
    const QStringList lines {Site::header(),
                             Site::employee(1001, QStringLiteral("Ľubomír")),
                             QStringLiteral("too|short"),
                             underSupervisor,
                             Site::employee(7002, QStringLiteral("D'Arc")),
                             underNobody};
    site.writeFile(QStringLiteral("ron.data"), lines.join(QLatin1Char('\n')));
}

/// What the plugin itself logs when it runs at the level; nothing if it ran another number of
/// passes.
QVector<Message> tst_MessageGate::messagesAt(int logLevel, int passes)
{
    loadContent();
    writeExport();
    site.writeFile(QStringLiteral("passes"), QString());
    ConnectionParameters parameters;
    parameters.socket = server->socketPath();
    Connection connection(QStringLiteral("talvenhr"));
    const Failure failure = connection.open(parameters);
    if (failure)
        qFatal("%s", qPrintable(failure.text));

    const auto passesBegun = [this] {
        return site.readFile(QStringLiteral("passes")).count(QStringLiteral("pass"));
    };
    Messages messages;
    PluginFile plugin(TalvenhrProcess::pluginPath());
    plugin.load();
    plugin.server()->setLogLevel(static_cast<quint8>(logLevel));
    plugin.server()->setDatabase(connection.handle());
    plugin.server()->start();
    QElapsedTimer timer;
    timer.start();
    while (passesBegun() < passes && timer.elapsed() < longestWait)
        QTest::qWait(10);
    // Waits for the pass that has begun.
    plugin.unload();
    return passesBegun() == passes ? messages.all() : QVector<Message>();
}

/// On a machine that has no time for the test, one pass too many may begin.
QVector<Message> tst_MessageGate::patientMessagesAt(int logLevel, int passes)
{
    QVector<Message> messages;
    for (int attempt = 0; messages.isEmpty() && attempt < 5; ++attempt)
        messages = messagesAt(logLevel, passes);
    return messages;
}

void tst_MessageGate::filteredLevel3EqualsThePluginAtEachLevel_data()
{
    QTest::addColumn<QString>("testMode");
    QTest::addColumn<int>("passes");
    QTest::addColumn<int>("levels");
    // The second pass finds no file.
    QTest::newRow("writing") << "testMode=false" << 2 << 3;
    // What is special about test mode begins at level 1.
    QTest::newRow("test mode") << "testMode=true" << 1 << 2;
}

void tst_MessageGate::filteredLevel3EqualsThePluginAtEachLevel()
{
    QFETCH(QString, testMode);
    QFETCH(int, passes);
    QFETCH(int, levels);
    site.set({testMode});
    // A uid that was found once is not asked for again in the process: a run before all others.
    QVERIFY(!patientMessagesAt(2, passes).isEmpty());
    const QVector<Message> everything = patientMessagesAt(3, passes);
    QVERIFY(!everything.isEmpty());
    QCOMPARE(strangers(everything), QStringList());
    for (int logLevel = 0; logLevel < levels; ++logLevel) {
        QStringList printed;
        const QVector<Message> messages = patientMessagesAt(logLevel, passes);
        for (const Message &message : messages)
            printed.append(message.text);
        QCOMPARE(printed, belonging(everything, logLevel));
    }
}

void tst_MessageGate::filteredLevel3EqualsTheProgramAtEachLevel()
{
    site.set({QStringLiteral("testMode=true"), QStringLiteral("deleteFile=false")});
    QVector<QStringList> texts;
    for (int logLevel = 0; logLevel <= 3; ++logLevel) {
        loadContent();
        writeExport();
        TalvenhrProcess program(
            site.runOptions(words(QStringLiteral("--once --log-level %1 --socket %2")
                                      .arg(logLevel)
                                      .arg(server->socketPath()))));
        QCOMPARE(program.finish(), 1); // for the export command, which fails
        // Without the time and the program's own lines, which come when its thread gets to them.
        QStringList lines;
        const QStringList all = program.lines();
        QVERIFY(all.constLast().startsWith(QStringLiteral("talvenhr: 1 pass, ")));
        for (const QString &line : all) {
            if (!line.startsWith(QStringLiteral("talvenhr: ")))
                lines.append(line);
        }
        lines.replaceInStrings(QRegularExpression(QStringLiteral("^\\S+ ")), QString());
        texts.append(lines);
    }
    for (int logLevel = 0; logLevel < 3; ++logLevel) {
        QStringList expected;
        for (const QString &line : qAsConst(texts.last())) {
            const QString level = line.section(QLatin1Char(' '), 0, 0);
            const QtMsgType type = level == QLatin1String("debug") ? QtDebugMsg
                : level == QLatin1String("info")                   ? QtInfoMsg
                : level == QLatin1String("warning")                ? QtWarningMsg
                                                                   : QtCriticalMsg;
            if (isShown(type, line.mid(9), logLevel))
                expected.append(line);
        }
        QCOMPARE(texts.at(logLevel), expected);
    }
}

QTEST_GUILESS_MAIN(tst_MessageGate)
#include "tst_messagegate.moc"
