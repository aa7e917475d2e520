// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The texts that lie in a sandbox: settings, the HR system's script, things to try.
#include "host/sandbox/sandboxpage.h"

#include "host/company/company.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SandboxPage)
};

/// A value of an INI file.
QString iniText(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

/// One word of a command that the plugin splits: it takes three quotes for one.
QString commandWord(QString text)
{
    text.replace(QLatin1Char('"'), QLatin1String("\"\"\""));
    return QLatin1Char('"') + text + QLatin1Char('"');
}

/// One word for a shell, as it stands where that is possible.
QString shellWord(QString text)
{
    static const QRegularExpression plain(QStringLiteral("\\A[\\w/.,+@%-]+\\z"));
    if (plain.match(text).hasMatch())
        return text;
    text.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

/// A command of the program on the sandbox's database.
QString sqlCommand(const SandboxOptions &options, const QString &statement)
{
    return QStringLiteral("%1 sql --private-db %2 --execute %3")
        .arg(shellWord(options.program), shellWord(options.folder + QStringLiteral("/db")),
             statement);
}

QString runCommand(const SandboxOptions &options, const QString &length)
{
    return QStringLiteral("%1 run --data-dir %2 --private-db %3 %4")
        .arg(shellWord(options.program), shellWord(options.folder),
             shellWord(options.folder + QStringLiteral("/db")), length);
}

/// A thing to try: what, a command for it, what it shows.
QString trial(const QString &title, const QString &command, const QString &text)
{
    return QStringLiteral("## %1\n\n```sh\n%2\n```\n\n%3\n\n").arg(title, command, text);
}

} // namespace

QString sandboxSettings(const QString &folder)
{
    QString text = QStringLiteral("; a pass on every tick, a tick every second\n"
                                  "enabled=true\n"
                                  "timerInterval=1\n"
                                  "syncInterval=1\n"
                                  "importFile=%1\n"
                                  "; before every pass: puts the next day's export in place\n"
                                  "syncCommand=%2\n"
                                  "syncCommandRun=2\n"
                                  "\n"
                                  "[MES]\n")
                       .arg(iniText(folder + QStringLiteral("/ron.data")),
                            iniText(commandWord(folder + QStringLiteral("/hr-system.sh"))));
    for (const EvidenceState &state : evidenceStates)
        text += QStringLiteral("%1=%2\n")
                    .arg(state.state)
                    .arg(iniText(evidenceStateText(state.state)));
    return text;
}

QString hrSystemScript()
{
    return QStringLiteral(
        "#!/bin/sh\n"
        "# The HR system: puts the next day's export in place at one stroke, and after the last one\n"
        "# that one again. The name of the latest is kept in last-export; remove it to begin anew.\n"
        "set -e\n"
        "umask 077\n"
        "cd \"$(dirname \"$0\")\"\n"
        "last=\n"
        "[ ! -f last-export ] || read -r last <last-export\n"
        "next=$last\n"
        "before=\n"
        "# Their names sort by day.\n"
        "for file in exports/*.data; do\n"
        "    if [ \"$before\" = \"$last\" ]; then\n"
        "        next=$file\n"
        "    fi\n"
        "    before=$file\n"
        "done\n"
        "cp \"$next\" ron.data.new\n"
        "mv ron.data.new ron.data\n"
        "echo \"$next\" >last-export\n");
}

QString dayText(const QDate &day, const QVector<LifeEvent> &events)
{
    QString text = day.toString(Qt::ISODate) + QLatin1Char('\n');
    for (const LifeEvent &event : events)
        text += QStringLiteral("  ") + event.text() + QLatin1Char('\n');
    return text;
}

QString shortPage(const SandboxOptions &options)
{
    return Text::tr("A company of %1 people and %2 days of its life lie in '%3'. Let some of them "
                    "pass:\n\n    %4\n\nTRY.md there tells what else to try.\n")
        .arg(options.people)
        .arg(options.days)
        .arg(options.folder, runCommand(options, QStringLiteral("--passes 3")));
}

QString sandboxPage(const SandboxOptions &options)
{
    const QString folder = shellWord(options.folder);
    QString page
        = Text::tr("# A company to play with\n\n"
                   "%1 people from seed %2, and %3 days of their lives. Nothing here is anybody's "
                   "own data.\n\n"
                   "- `db/`: the attendance database, with %4 days of attendance, as it was before "
                   "the first export\n"
                   "- `exports/`: what the HR system exports, one file a day; the last one is that "
                   "of the day on which all this was made\n"
                   "- `life.txt`: what happened on each day\n"
                   "- `hr-system.sh`: the HR system, which the plugin runs before each pass; it "
                   "puts the next day's export in place\n"
                   "- `night.sql`: what the attendance system does at night\n"
                   "- `TalvenHR.ini`: the plugin's settings\n\n")
              .arg(options.people)
              .arg(options.seed)
              .arg(options.days)
              .arg(attendanceDays(options.people));
    page += trial(
        Text::tr("Let days pass"), runCommand(options, QStringLiteral("--passes 5")),
        Text::tr("Each pass takes the export of another day; compare with `life.txt`. The "
                 "first one writes everybody, for the plugin remembers nothing from "
                 "before. Without `--passes` it runs until Ctrl+C; with `--show-changes` each "
                 "pass shows the rows that it has changed."));
    page += trial(Text::tr("Look into the database"),
                  sqlCommand(options,
                             QStringLiteral("\"SELECT pamId, name, surname, FROM_UNIXTIME(edited) "
                                            "FROM people ORDER BY edited DESC LIMIT 10\"")),
                  Text::tr("Also while a run is at work. `term_sync` holds the news for terminals, "
                           "`funds_move` the leave, `brape` who belongs to which branch."));
    page += trial(Text::tr("Let a night pass"),
                  sqlCommand(options,
                             QStringLiteral("\"$(cat %1)\"")
                                 .arg(shellWord(options.folder + QStringLiteral("/night.sql")))),
                  Text::tr("The plugin reopens attendance, and corrects the leave only of those "
                           "whose attendance is calculated; this calculates it."));
    page += trial(Text::tr("Force a pass"), runCommand(options, QStringLiteral("--once --force")),
                  Text::tr("It looks at everybody again, whether changed or not."));
    page += trial(
        Text::tr("Break a line"),
        QStringLiteral("sed -i \"2s/|1|/|1|O'/\" %1/exports/*.data\n").arg(folder)
            + runCommand(options, QStringLiteral("--once --log-level 0")),
        Text::tr("An apostrophe before a title: the statement for that person fails, and the "
                 "server's error shows what it stumbled over. Take away a separator instead, and "
                 "the line is dropped, with a warning. The same sed with the texts exchanged "
                 "undoes it."));
    page += trial(
        Text::tr("Begin again"), QStringLiteral("rm %1/last-export").arg(folder),
        Text::tr("The first export comes next. For a fresh database, remove the folder and "
                 "make it again: the same seed gives the same company."));
    return page;
}
