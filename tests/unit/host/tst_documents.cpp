// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tables of the documents against those of the program.
#include "host/cli/helptext.h"
#include "host/cli/manpage.h"
#include "host/cli/options.h"
#include "host/commands/commands.h"
#include "host/commands/gateoptions.h"

#include <QtTest>

namespace {

QStringList documentLines(const char *name)
{
    QFile file(QStringLiteral(TALVENHR_SOURCE_FOLDER "/") + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
}

/// The rows of the table below the heading, up to the first line that is no row.
QStringList tableBelow(const QStringList &lines, const QString &heading)
{
    QStringList rows;
    for (int i = lines.indexOf(heading) + 2; i > 1 && i < lines.size(); ++i) {
        if (!lines.at(i).startsWith(QLatin1Char('|')))
            break;
        rows.append(lines.at(i));
    }
    return rows;
}

} // namespace

class tst_Documents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exitCodes_areThoseOfTheReadme();
    void commands_areThoseOfTheReadme();
    void settings_areThoseOfTheConfigurationPage();
    void gateSettings_areThoseOfTheOperationsPage();
    void manualPage_hasEveryCommandOptionAndCode();
};

void tst_Documents::exitCodes_areThoseOfTheReadme()
{
    QStringList rows;
    const QString help = helpText(allCommands()).simplified();
    const QVector<ExitMeaning> meanings = exitMeanings();
    for (const ExitMeaning &meaning : meanings) {
        const QString line = QStringLiteral("%1 %2").arg(meaning.code).arg(meaning.meaning);
        if (help.contains(line))
            rows.append(QStringLiteral("| %1 | %2 |").arg(meaning.code).arg(meaning.meaning));
    }
    QVERIFY(rows.size() >= 5);
    QCOMPARE(tableBelow(documentLines("README.md"), QStringLiteral("| Exit code | Meaning |")),
             rows);
}

void tst_Documents::commands_areThoseOfTheReadme()
{
    QStringList named;
    const QStringList rows = tableBelow(documentLines("README.md"),
                                        QStringLiteral("| Command | What it does |"));
    for (const QString &row : rows)
        named.append(row.section(QLatin1Char('`'), 1, 1));
    QStringList names;
    const QVector<Command> commands = allCommands();
    for (const Command &command : commands)
        names.append(QStringLiteral("talvenhr ") + command.name);
    QCOMPARE(named, names);
}

void tst_Documents::settings_areThoseOfTheConfigurationPage()
{
    QStringList rows;
    const QVector<Option> settings = settingsOf(allCommands());
    for (const Option &setting : settings)
        rows.append(QStringLiteral("| `%1` | `--%2` | `%3` |")
                        .arg(setting.setting, setting.name, Options::variable(setting.name)));
    QCOMPARE(tableBelow(documentLines("docs/configuration.md"),
                        QStringLiteral("| Setting | Option | Variable |")),
             rows);
}

/// Of [gate], and of the sections that only the file has.
void tst_Documents::gateSettings_areThoseOfTheOperationsPage()
{
    const QStringList lines = documentLines("docs/operations.md");
    QString keys;
    for (const char *heading :
         {"| Key | Value | Default |", "| Key | Value | Mends |", "| Key | Runs when |"}) {
        const QStringList rows = tableBelow(lines, QLatin1String(heading));
        for (const QString &row : rows)
            keys += row.section(QLatin1Char('|'), 1, 1);
    }
    QStringList expected;
    const QVector<Option> settings = settingsOf(allCommands());
    for (const Option &setting : settings) {
        if (setting.setting.startsWith(QLatin1String("gate/")))
            expected.append(setting.setting);
    }
    expected += gateFileSettings().filter(QRegularExpression(QStringLiteral("^(mend|hooks)/")));
    QVERIFY(expected.size() > 15);
    for (const QString &setting : qAsConst(expected)) {
        const QString key = QStringLiteral("`%1`").arg(setting.section(QLatin1Char('/'), 1));
        QVERIFY2(keys.contains(key), qPrintable(setting));
    }
    QCOMPARE(keys.count(QLatin1Char('`')) / 2, expected.size());
}

void tst_Documents::manualPage_hasEveryCommandOptionAndCode()
{
    const QString page = manPage(allCommands());
    const QVector<Command> commands = allCommands();
    for (const Command &command : commands) {
        QVERIFY(page.contains(QStringLiteral("\n## %1\n").arg(command.name)));
        for (const OptionGroup &group : command.groups) {
            for (const Option &option : group.options)
                QVERIFY2(page.contains(QStringLiteral("\n*--%1").arg(option.name)),
                         qPrintable(option.name));
        }
        for (const ExitCode code : command.exitCodes)
            QVERIFY(page.contains(QStringLiteral("\n*%1*\n\t").arg(code)));
    }
}

QTEST_GUILESS_MAIN(tst_Documents)
#include "tst_documents.moc"
