// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the plugin's file is one that can be loaded, and of this program's version.
#include "host/doctor/plugincheck.h"

#include "host/catalogue/findings.h"
#include "host/plugin/pluginfacts.h"
#include "host/plugin/pluginfile.h"

#include <QCoreApplication>
#include <QVersionNumber>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PluginCheck)
};

} // namespace

Diagnosis qtDiagnosis(const QString &built, const QString &loading)
{
    Diagnosis diagnosis;
    const QVersionNumber builtWith = QVersionNumber::fromString(built);
    const QVersionNumber here = QVersionNumber::fromString(loading);
    if (builtWith.majorVersion() != here.majorVersion()
        || builtWith.minorVersion() > here.minorVersion())
        diagnosis.findings.append(finding("E-PLUGIN-QT", Text::tr("plugin"), {built, loading}));
    return diagnosis;
}

Diagnosis pluginDiagnosis(const QString &file, const QString &programVersion)
{
    PluginFile plugin(file);
    Diagnosis diagnosis;
    if (const Failure failure = plugin.check()) {
        diagnosis.findings.append(finding("E-PLUGIN-FILE", file, {failure.text}));
        return diagnosis;
    }
    diagnosis = qtDiagnosis(qtVersionOf(plugin), QString::fromLatin1(qVersion()));
    if (!diagnosis.findings.isEmpty())
        return diagnosis;
    PluginFacts facts;
    if (const Failure failure = readPluginFacts(&plugin, &facts)) {
        diagnosis.findings.append(finding("E-PLUGIN-FILE", file, {failure.text}));
        return diagnosis;
    }
    const QString version = facts.value(QStringLiteral("VER"));
    if (version != programVersion)
        diagnosis.findings.append(finding("W-PLUGIN-VERSION", file, {version, programVersion}));
    else
        diagnosis.passed.append(Text::tr("plugin %1").arg(version));
    diagnosis.unknown.append(
        {Text::tr("Qt of the attendance server"),
         Text::tr("only its own process tells; the plugin needs Qt %1 or a later one of the same "
                  "major version")
             .arg(qtVersionOf(plugin).section(QLatin1Char('.'), 0, 1))});
    return diagnosis;
}
