// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All that a pass says and asks of the database, in its order.
#include "host/changes/passtrace.h"

#include "host/database/databasecall.h"
#include "host/database/errortext.h"
#include "host/database/recordingdriver.h"
#include "host/report/jsonreport.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMutexLocker>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(PassTrace)
};

struct TypeName
{
    QtMsgType type;
    const char *name;
};

const TypeName typeNames[] = {
    {QtDebugMsg, "debug"},       {QtInfoMsg, "info"},   {QtWarningMsg, "warning"},
    {QtCriticalMsg, "critical"}, {QtFatalMsg, "fatal"},
};

QString nameOf(QtMsgType type)
{
    for (const TypeName &known : typeNames) {
        if (known.type == type)
            return QLatin1String(known.name);
    }
    return QString();
}

bool typeOf(const QString &name, QtMsgType *type)
{
    for (const TypeName &known : typeNames) {
        if (name == QLatin1String(known.name)) {
            *type = known.type;
            return true;
        }
    }
    return false;
}

bool readStep(const QJsonObject &object, TraceStep *step)
{
    step->isMessage = object.contains(QStringLiteral("message"));
    if (step->isMessage) {
        step->text = object.value(QStringLiteral("message")).toString();
        return typeOf(object.value(QStringLiteral("level")).toString(), &step->type);
    }
    step->text = object.value(QStringLiteral("call")).toString();
    step->values = object.value(QStringLiteral("values")).toArray().toVariantList();
    step->done = object.value(QStringLiteral("done")).toBool();
    step->affected = object.value(QStringLiteral("affected")).toInt(-1);
    step->error = object.value(QStringLiteral("error")).toString();
    return object.contains(QStringLiteral("call"));
}

} // namespace

Failure PassTrace::open(const QString &path)
{
    file.setFileName(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        return {ExitUsage, Text::tr("cannot make '%1': %2").arg(path, file.errorString())};
    if (!file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return {ExitUsage, Text::tr("cannot protect '%1': %2").arg(path, file.errorString())};
    return {};
}

void PassTrace::message(QtMsgType type, const QString &text)
{
    TraceStep step;
    step.type = type;
    step.text = text;
    write(step);
}

void PassTrace::call(const DatabaseCall &call, const CallOutcome &outcome)
{
    TraceStep step;
    step.isMessage = false;
    step.text = call.statement.isEmpty() ? call.text() : call.statement;
    for (const DatabaseCall::Value &value : call.values)
        step.values.append(value.value);
    step.done = outcome.done;
    step.affected = outcome.affected;
    if (!outcome.done)
        step.error = errorText(outcome.error);
    write(step);
}

void PassTrace::write(const TraceStep &step)
{
    const QByteArray line = traceLine(step);
    const QMutexLocker locker(&mutex);
    if (file.isOpen())
        file.write(line);
}

Failure PassTrace::close()
{
    const QMutexLocker locker(&mutex);
    if (!file.isOpen())
        return {};
    const bool isWhole = file.error() == QFileDevice::NoError;
    const QString trouble = file.errorString();
    file.close();
    if (isWhole)
        return {};
    return {ExitErrors, Text::tr("the trace '%1' is not whole: %2").arg(file.fileName(), trouble)};
}

QByteArray traceLine(const TraceStep &step)
{
    if (step.isMessage)
        return jsonObject({{QStringLiteral("level"), jsonValue(nameOf(step.type))},
                           {QStringLiteral("message"), jsonValue(step.text)}})
            + '\n';
    const QVariant error = step.error.isEmpty() ? QVariant() : QVariant(step.error);
    return jsonObject({{QStringLiteral("call"), jsonValue(step.text)},
                       {QStringLiteral("values"), jsonValue(step.values)},
                       {QStringLiteral("done"), jsonValue(step.done)},
                       {QStringLiteral("affected"), jsonValue(step.affected)},
                       {QStringLiteral("error"), jsonValue(error)}})
        + '\n';
}

Failure readTrace(const QString &path, TraceSteps *steps)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {ExitErrors, Text::tr("cannot read '%1': %2").arg(path, file.errorString())};
    for (int number = 1; !file.atEnd(); ++number) {
        TraceStep step;
        const QJsonDocument document = QJsonDocument::fromJson(file.readLine());
        if (!document.isObject() || !readStep(document.object(), &step))
            return {
                ExitErrors,
                Text::tr("line %1 of the trace '%2' is none").arg(QString::number(number), path)};
        steps->append(step);
    }
    return {};
}
