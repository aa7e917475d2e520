// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The header of changes in their file, both ways, and values that other parts have, too.
#include "host/changes/headerjson.h"

#include "host/report/jsonreport.h"
#include "host/report/report.h"

#include <QByteArrayList>
#include <QJsonArray>
#include <QJsonObject>

namespace {

QByteArray identity(const ExportIdentity &file)
{
    return jsonObject({{QStringLiteral("name"), jsonValue(file.name)},
                       {QStringLiteral("digest"), jsonValue(file.digest)},
                       {QStringLiteral("size"), jsonValue(file.size)},
                       {QStringLiteral("lines"), jsonValue(file.lines)}});
}

QByteArray identities(const QVector<ExportIdentity> &files)
{
    QByteArrayList all;
    for (const ExportIdentity &file : files)
        all.append(identity(file));
    return '[' + all.join(',') + ']';
}

ExportIdentity identityIn(const QJsonValue &value)
{
    const QJsonObject file = value.toObject();
    return {file.value(QStringLiteral("name")).toString(),
            file.value(QStringLiteral("digest")).toString(),
            numberIn(file.value(QStringLiteral("size"))),
            file.value(QStringLiteral("lines")).toInt()};
}

} // namespace

QByteArray headerJson(const ChangesHeader &header)
{
    const ExportIdentity &file = header.exported;
    const QByteArray exported = file.digest.isEmpty() ? QByteArrayLiteral("null") : identity(file);
    const bool isRun = header.how == ChangesHeader::Run;
    return jsonObject({{QStringLiteral("how"),
                        jsonValue(isRun ? QStringLiteral("run") : QStringLiteral("rehearsed"))},
                       {QStringLiteral("since"), jsonMoment(header.since)},
                       {QStringLiteral("when"), jsonMoment(header.when)},
                       {QStringLiteral("firstPass"), jsonValue(header.firstPass)},
                       {QStringLiteral("lastPass"), jsonValue(header.lastPass)},
                       {QStringLiteral("forced"), jsonValue(header.forced)},
                       {QStringLiteral("withOthers"), jsonValue(isRun)},
                       {QStringLiteral("export"), exported},
                       {QStringLiteral("after"), identities(header.after)},
                       {QStringLiteral("plugin"), jsonText(header.plugin)},
                       {QStringLiteral("server"), jsonText(header.server)},
                       {QStringLiteral("settings"), jsonText(header.settings)},
                       {QStringLiteral("state"), jsonText(header.state)}});
}

ChangesHeader headerIn(const QJsonObject &object)
{
    const auto text = [&object](const char *name) {
        return object.value(QLatin1String(name)).toString();
    };
    ChangesHeader header;
    header.how = text("how") == QLatin1String("rehearsed") ? ChangesHeader::Rehearsed
                                                           : ChangesHeader::Run;
    header.since = momentIn(object.value(QStringLiteral("since")));
    header.when = momentIn(object.value(QStringLiteral("when")));
    header.firstPass = object.value(QStringLiteral("firstPass")).toInt();
    header.lastPass = object.value(QStringLiteral("lastPass")).toInt();
    header.forced = object.value(QStringLiteral("forced")).toBool();
    header.plugin = text("plugin");
    header.server = text("server");
    header.settings = text("settings");
    header.state = text("state");
    header.exported = identityIn(object.value(QStringLiteral("export")));
    const QJsonArray after = object.value(QStringLiteral("after")).toArray();
    for (const QJsonValue &file : after)
        header.after.append(identityIn(file));
    return header;
}

QByteArray jsonText(const QString &text)
{
    return jsonValue(textOrNull(text));
}

QByteArray jsonMoment(const QDateTime &moment)
{
    if (!moment.isValid())
        return "null";
    return jsonValue(moment.toOffsetFromUtc(moment.offsetFromUtc()).toString(Qt::ISODateWithMs));
}

QDateTime momentIn(const QJsonValue &value)
{
    return QDateTime::fromString(value.toString(), Qt::ISODateWithMs);
}

qlonglong numberIn(const QJsonValue &value)
{
    return value.toVariant().toLongLong();
}

QStringList textsIn(const QJsonValue &value)
{
    QStringList texts;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &text : array)
        texts.append(text.toString());
    return texts;
}
