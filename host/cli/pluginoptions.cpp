// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options that name the plugin and its settings.
#include "host/cli/pluginoptions.h"

#include "host/base/programpaths.h"
#include "host/cli/options.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PluginOptions)
};

QString directoryOption()
{
    return QStringLiteral("data-dir");
}

} // namespace

Option pluginOption()
{
    return {QStringLiteral("plugin"),
            QStringLiteral("FILE"),
            Text::tr("the plugin (default: the one that was built or installed with this program)"),
            QStringLiteral("plugin/file"),
            defaultPluginFile(),
            Option::Path};
}

Option dataDirectoryOption()
{
    return {directoryOption(),
            QStringLiteral("DIR"),
            Text::tr("folder that holds TalvenHR.ini (default: the plugin's own search)"),
            QStringLiteral("plugin/data-dir"),
            QString(),
            Option::Path};
}

OptionGroup pluginOptions()
{
    return {Text::tr("Plugin"), {pluginOption(), dataDirectoryOption()}};
}

QString pluginFile(const Options &options)
{
    return options.value(QStringLiteral("plugin"));
}

Failure readDataDirectory(const Options &options, QString *directory)
{
    *directory = options.value(directoryOption());
    if (options.isSet(directoryOption()) && directory->isEmpty())
        return options.usageFailure(Text::tr("--data-dir takes a folder"));
    return {};
}
