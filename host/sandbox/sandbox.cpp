// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company to play with: a private database, exports that live, settings, a page of things to try.
#include "host/sandbox/sandbox.h"

#include "host/company/companyrows.h"
#include "host/company/exportwriter.h"
#include "host/company/life.h"
#include "host/sandbox/sandboxfolder.h"
#include "host/sandbox/sandboxpage.h"
#include "host/server/privatedatabase.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Sandbox)
};

const int twoYears = 730; // days
const int twoMonths = 62; // days

/// The export of each day, and what happened on it.
Failure writeExports(const SandboxFolder &folder, const Company &firstDay,
                     const SandboxOptions &options)
{
    if (const Failure failure = folder.makeFolder(QStringLiteral("exports")))
        return failure;
    Life life(firstDay, options.seed);
    QString story = dayText(firstDay.day, {});
    for (int day = 0; day < options.days; ++day) {
        if (day > 0) {
            const QVector<LifeEvent> events = life.nextDay();
            story += dayText(life.company().day, events);
        }
        const QString name = QStringLiteral("exports/%1.data")
                                 .arg(life.company().day.toString(Qt::ISODate));
        if (const Failure failure = folder.write(name, exportText(life.company())))
            return failure;
    }
    return folder.write(QStringLiteral("life.txt"), story.toUtf8());
}

Failure loadDatabase(const SandboxFolder &folder, const Company &company, const QDate &today,
                     int people)
{
    PrivateDatabase database(folder.path(QStringLiteral("db")));
    database.setCompany(loadingScript(structureRows(company)
                                      + peopleRows(company, {today, attendanceDays(people)})));
    const Failure failure = database.start();
    database.stop();
    return failure;
}

Failure writeTexts(const SandboxFolder &folder, const SandboxOptions &options)
{
    const QString night = nightStatements(QStringLiteral("midnightFromTs(UNIX_TIMESTAMP())"))
                              .join(QStringLiteral(";\n"))
        + QStringLiteral(";\n");
    const struct
    {
        QString name;
        QString text;
        bool isProgram;
    } files[] = {{QStringLiteral("TalvenHR.ini"), sandboxSettings(folder.path()), false},
                 {QStringLiteral("hr-system.sh"), hrSystemScript(), true},
                 {QStringLiteral("night.sql"), night, false},
                 {QStringLiteral("TRY.md"), sandboxPage(options), false}};
    for (const auto &file : files) {
        if (const Failure failure = folder.write(file.name, file.text.toUtf8(), file.isProgram))
            return failure;
    }
    return {};
}

} // namespace

int attendanceDays(int people)
{
    return people <= 1000 ? twoYears : qMax(twoMonths, twoYears * 1000 / people);
}

Failure makeSandbox(const SandboxOptions &options, const SandboxStep &step)
{
    SandboxFolder folder(options.folder);
    if (const Failure failure = folder.take())
        return failure;
    SandboxOptions absolute = options;
    absolute.folder = folder.path();
    const QDate today = QDate::currentDate();
    CompanyPlan plan;
    plan.people = options.people;
    plan.seed = options.seed;
    plan.day = today.addDays(1 - options.days);
    const Company company = generatedCompany(plan);

    step(Text::tr("writing %1 exports").arg(options.days));
    if (const Failure failure = writeExports(folder, company, options))
        return failure;
    step(Text::tr("loading %1 people with %2 days of attendance")
             .arg(options.people)
             .arg(attendanceDays(options.people)));
    if (const Failure failure = loadDatabase(folder, company, today, options.people))
        return failure;
    if (const Failure failure = writeTexts(folder, absolute))
        return failure;
    return folder.finish();
}
