// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr info`: who the plugin is.
#include "host/commands/infocommand.h"

#include "host/base/programpaths.h"
#include "host/base/silentmessages.h"
#include "host/cli/commandparser.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/pluginfile.h"
#include "host/report/logwriter.h"
#include "plugin/serverinterface.h"
#include "plugin/verinfointerface.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cstdio>

namespace {

using Facts = QMap<QString, QString>;

/// Qt's version number as people write it: 0x050F02 is 5.15.2.
QString qtVersion(const QJsonObject &metaData)
{
    const int version = metaData.value(QStringLiteral("version")).toInt();
    return QStringLiteral("%1.%2.%3")
        .arg(version >> 16)
        .arg((version >> 8) & 0xff)
        .arg(version & 0xff);
}

/// yyMMddhhmm with the signs that make it readable.
QString readableBuild(const QString &stamp)
{
    if (stamp.size() != 10)
        return stamp;
    return QStringLiteral("20%1-%2-%3 %4:%5")
        .arg(stamp.mid(0, 2), stamp.mid(2, 2), stamp.mid(4, 2), stamp.mid(6, 2), stamp.mid(8, 2));
}

QString readableReport(const PluginFile &plugin, const Facts &facts)
{
    const QJsonObject metaData = plugin.metaData();
    const auto line = [](const char *label, const QString &value) {
        return QStringLiteral("%1%2\n").arg(QLatin1String(label), -19).arg(value);
    };
    const auto fact = [&facts](const char *key) {
        return facts.value(QLatin1String(key), QStringLiteral("unknown"));
    };
    return line("Plugin", plugin.path())
        + line("Class", metaData.value(QStringLiteral("className")).toString())
        + line("Interface (IID)", metaData.value(QStringLiteral("IID")).toString())
        + line("Built against Qt", qtVersion(metaData))
        + line("Debug build",
               metaData.value(QStringLiteral("debug")).toBool() ? QStringLiteral("yes")
                                                                : QStringLiteral("no"))
        + line("Version", fact("VER")) + line("Type", fact("phoryType"))
        + line("Built", readableBuild(fact("BUILD"))) + line("Database version", fact("ORVDB"));
}

QByteArray jsonReport(const PluginFile &plugin, const Facts &facts)
{
    const QJsonObject metaData = plugin.metaData();
    QJsonObject verInfo;
    for (auto it = facts.constBegin(); it != facts.constEnd(); ++it)
        verInfo.insert(it.key(), it.value());
    const QJsonObject report {
        {QStringLiteral("file"), plugin.path()},
        {QStringLiteral("IID"), metaData.value(QStringLiteral("IID"))},
        {QStringLiteral("className"), metaData.value(QStringLiteral("className"))},
        {QStringLiteral("qtVersion"), qtVersion(metaData)},
        {QStringLiteral("debug"), metaData.value(QStringLiteral("debug"))},
        {QStringLiteral("verInfo"), verInfo}};
    return QJsonDocument(report).toJson(QJsonDocument::Indented);
}

/// The report does not depend on the settings, so the plugin is sent to look for them in an empty
/// folder, and its complaint is not passed on.
Failure readFacts(PluginFile *plugin, Facts *facts)
{
    if (const Failure failure = plugin->check())
        return failure;
    const QTemporaryDir emptyFolder;
    const DataDirectory dataDirectory(emptyFolder.path());
    const SilentMessages silence;
    if (const Failure failure = plugin->load())
        return failure;
    if (const VerInfoInterface *verInfo = plugin->verInfo())
        *facts = verInfo->getVerInfo();
    else
        facts->insert(QStringLiteral("VER"), plugin->server()->getVersion());
    return {};
}

} // namespace

int infoCommand(const QStringList &arguments)
{
    CommandParser parser(QStringLiteral("talvenhr info"),
                         QStringLiteral("Shows the plugin's metadata and its version report. Needs "
                                        "neither settings nor a database."));
    parser.addGroup(QStringLiteral("Options"));
    parser.addOption(QStringLiteral("plugin"), QStringLiteral("FILE"),
                     QStringLiteral("the plugin (default: the one that was built or installed with "
                                    "this program)"));
    parser.addOption(QStringLiteral("json"), QString(), QStringLiteral("as one JSON object"));
    parser.addSection(QStringLiteral("Exit codes"),
                      QStringLiteral("  0  all went well\n"
                                     "  2  bad option, or plugin cannot be loaded"));

    Failure failure = parser.parse(arguments);
    if (!failure && parser.helpWanted()) {
        std::fputs(qPrintable(parser.help()), stdout);
        return ExitClean;
    }
    PluginFile plugin(parser.isSet(QStringLiteral("plugin"))
                          ? parser.value(QStringLiteral("plugin"))
                          : defaultPluginFile());
    Facts facts;
    if (!failure)
        failure = readFacts(&plugin, &facts);
    if (failure) {
        LogWriter(LogFormat::Text).fail(failure.text);
        return failure.exitCode;
    }
    std::fputs(parser.isSet(QStringLiteral("json")) ? jsonReport(plugin, facts).constData()
                                                    : qPrintable(readableReport(plugin, facts)),
               stdout);
    return ExitClean;
}
