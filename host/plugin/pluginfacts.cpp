// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Who a plugin is, by its own report.
#include "host/plugin/pluginfacts.h"

#include "host/base/scratchfolder.h"
#include "host/base/silentmessages.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/pluginfile.h"
#include "plugin/serverinterface.h"
#include "plugin/verinfointerface.h"

Failure readPluginFacts(PluginFile *plugin, PluginFacts *facts)
{
    if (const Failure failure = plugin->check())
        return failure;
    const ScratchFolder emptyFolder;
    if (!emptyFolder.failure().isEmpty())
        return {ExitUsage, emptyFolder.failure()};
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

QString qtVersionOf(const PluginFile &plugin)
{
    const int version = plugin.metaData().value(QStringLiteral("version")).toInt();
    return QStringLiteral("%1.%2.%3")
        .arg(version >> 16)
        .arg((version >> 8) & 0xff)
        .arg(version & 0xff);
}
