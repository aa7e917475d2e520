// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Documents for machines against the schemas that are shipped.
#include "support/commands/jsonschema.h"

#include "support/patience.h"

#include <QProcess>
#include <QTemporaryFile>

QString schemaFault(const QByteArray &document, const QString &name)
{
    QTemporaryFile file;
    if (!file.open() || file.write(document) != document.size() || !file.flush())
        return file.errorString();
    QProcess validator;
    validator.start(QStringLiteral("python3"),
                    {QStringLiteral("-W"), QStringLiteral("ignore"), QStringLiteral("-m"),
                     QStringLiteral("jsonschema"), QStringLiteral("-i"), file.fileName(),
                     QStringLiteral(TALVENHR_SOURCE_FOLDER "/docs/%1.schema.json").arg(name)});
    if (!validator.waitForFinished(longestWait))
        return validator.errorString();
    const QString fault = QString::fromLocal8Bit(validator.readAllStandardError());
    return validator.exitCode() == 0 ? QString() : fault + QStringLiteral("not valid");
}
