// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Modes, limits and cluster of a server, from what it says of itself.
#include "host/catalogue/findings.h"
#include "host/doctor/servercheck.h"
#include "host/doctor/serverquestions.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ServerCheck)
};

const int shortWait = 5; // seconds
const int longWait = 300; // seconds
const int shortRest = 600; // seconds that an export command may well take
const double shortStatement = 60; // seconds
const quint64 mostRows = std::numeric_limits<quint32>::max(); // of any company
const int leastRetries = 4;
const int aroundNumbers = 5; // letters of a pair: "(, ),"
const qint64 statementAround = 1024; // bytes of a statement besides its list
const qint64 packetStep = 4 * 1024 * 1024;

QStringList modesOf(const QString &text)
{
    return text.split(QLatin1Char(','), Qt::SkipEmptyParts);
}

const QLatin1String groupBy("ONLY_FULL_GROUP_BY");
const QLatin1String emptyNull("EMPTY_STRING_IS_NULL");
const QLatin1String strictMode("STRICT_TRANS_TABLES");

bool isStrict(const QStringList &modes)
{
    return modes.contains(strictMode) || modes.contains(QLatin1String("STRICT_ALL_TABLES"));
}

/// The same modes without any fault, so that no remedy undoes another one.
QString goodModes(QStringList modes)
{
    modes.removeAll(groupBy);
    modes.removeAll(emptyNull);
    if (!isStrict(modes))
        modes.append(strictMode);
    return modes.join(QLatin1Char(','));
}

QString textOf(const QStringList &modes)
{
    return modes.join(QStringLiteral(", "));
}

} // namespace

Diagnosis modeDiagnosis(const ServerVariables &variables)
{
    Diagnosis diagnosis;
    const auto add = [&diagnosis](const char *code, const QStringList &values) {
        diagnosis.findings.append(finding(code, QStringLiteral("sql_mode"), values));
    };
    const QString text = variables.session("sql_mode");
    const QString global = variables.global("sql_mode");
    if (text.isNull()) {
        diagnosis.unknown.append({Text::tr("SQL modes"), Text::tr("the server does not tell")});
        return diagnosis;
    }
    const QStringList modes = modesOf(text);
    const QString good = goodModes(modes);
    if (modes.contains(groupBy))
        add("E-SRV-GROUPBY", {good});
    if (modes.contains(emptyNull))
        add("E-SRV-EMPTYNULL", {good});
    if (!isStrict(modes))
        add("W-SRV-LENIENT", {good});
    if (modes.contains(QStringLiteral("NO_BACKSLASH_ESCAPES")))
        add("N-SRV-BACKSLASH", {});
    if (text != global)
        add("N-SRV-MODES", {textOf(modes), textOf(modesOf(global))});
    if (variables.session("autocommit") == QLatin1String("OFF"))
        diagnosis.findings.append(finding("E-SRV-AUTOCOMMIT", QStringLiteral("autocommit")));
    if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(Text::tr("SQL modes"));
    return diagnosis;
}

Diagnosis limitDiagnosis(const ServerVariables &variables, bool runsCommand)
{
    Diagnosis diagnosis;
    const auto add = [&diagnosis](const char *code, const char *name, const QStringList &values) {
        diagnosis.findings.append(finding(code, QLatin1String(name), values));
    };
    for (const char *name : {"read_only", "tx_read_only"}) {
        if (variables.isOn(name))
            add("E-SRV-READONLY", name, {QLatin1String(name)});
    }
    const QString rows = variables.session("sql_select_limit");
    if (!rows.isNull() && rows.toULongLong() < mostRows)
        add("E-SRV-ROWS", "sql_select_limit", {rows});
    const QString time = variables.session("max_statement_time");
    if (time.toDouble() > 0 && time.toDouble() < shortStatement)
        add("W-SRV-TIME", "max_statement_time", {time});
    const QString wait = variables.session("innodb_lock_wait_timeout");
    if (!wait.isNull() && wait.toInt() < shortWait)
        add("W-SRV-LOCKSHORT", "innodb_lock_wait_timeout", {wait});
    if (wait.toInt() > longWait)
        add("W-SRV-LOCKLONG", "innodb_lock_wait_timeout", {wait});
    const QString rest = variables.session("wait_timeout");
    if (runsCommand && !rest.isNull() && rest.toInt() < shortRest)
        add("W-SRV-IDLE", "wait_timeout", {rest});
    if (variables.isOn("log_bin")
        && variables.session("binlog_format") == QLatin1String("STATEMENT")
        && !variables.isOn("wsrep_on"))
        add("W-SRV-BINLOG", "binlog_format", {});
    if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(Text::tr("limits of the server"));
    return diagnosis;
}

Diagnosis packetDiagnosis(qint64 largest, const ListSizes &sizes)
{
    const auto pairs = [&](int digits) {
        return sizes.people * (digits + sizes.uidDigits + aroundNumbers);
    };
    const std::pair<qint64, QString> lists[] = {
        {sizes.pids, Text::tr("the list of PaM")},
        {pairs(sizes.tidDigits), Text::tr("a branch's list for a terminal")},
        {sizes.admins * pairs(sizes.aidDigits), Text::tr("a branch's list for its administrators")},
    };
    const auto &longest = *std::max_element(std::begin(lists), std::end(lists));
    Diagnosis diagnosis;
    const qint64 wanted = (2 * longest.first / packetStep + 1) * packetStep;
    if (largest > 0 && longest.first + statementAround > largest)
        diagnosis.findings.append(
            finding("E-SRV-PACKET", QStringLiteral("max_allowed_packet"),
                    {QString::number(largest), QString::number(sizes.people),
                     QString::number(longest.first), QString::number(wanted), longest.second}));
    return diagnosis;
}

Diagnosis clusterDiagnosis(const ServerVariables &variables)
{
    Diagnosis diagnosis;
    if (!variables.isOn("wsrep_on"))
        return diagnosis;
    const auto add = [&diagnosis](const char *code, const QStringList &values) {
        diagnosis.findings.append(finding(code, Text::tr("cluster"), values));
    };
    const auto wanted = [&](const char *name, const char *value) {
        const QString is = variables.status(name);
        if (!is.isNull() && is != QLatin1String(value))
            add("E-CLUSTER-NODE", {Text::tr("%1 is %2").arg(QLatin1String(name), is)});
    };
    wanted("wsrep_ready", "ON");
    wanted("wsrep_cluster_status", "Primary");
    const int size = variables.status("wsrep_cluster_size").toInt();
    if (size == 1)
        add("W-CLUSTER-ALONE", {});
    else if (size > 0 && size % 2 == 0)
        add("W-CLUSTER-SIZE", {QString::number(size)});
    const QString retries = variables.session("wsrep_retry_autocommit");
    if (!retries.isNull() && retries.toInt() < leastRetries)
        add("W-CLUSTER-RETRY", {retries});
    if (variables.session("wsrep_sync_wait") == QLatin1String("0"))
        add("N-CLUSTER-WAIT", {});
    if (variables.isOn("wsrep_dirty_reads"))
        add("W-CLUSTER-DIRTY", {});
    const QString format = variables.session("binlog_format");
    if (!format.isNull() && format != QLatin1String("ROW"))
        add("E-CLUSTER-FORMAT", {format});
    const QString numbers = variables.session("innodb_autoinc_lock_mode");
    if (!numbers.isNull() && numbers != QLatin1String("2"))
        add("E-CLUSTER-NUMBERS", {numbers});
    if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(Text::tr("cluster"));
    return diagnosis;
}
