// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Events of a test, in the form of EventLog, as the catalogue knows them.
#include "support/catalogue/knownevents.h"

#include <QRegularExpression>

namespace {

const QLatin1String exec("sql exec ");
const QLatin1String prepare("sql prepare ");
const QLatin1String run("sql run ");

QVariantList boundValues(const QString &event)
{
    static const QRegularExpression values(QStringLiteral("^sql run :name=(.*), :value=(.*)$"));
    const QRegularExpressionMatch match = values.match(event);
    return {match.captured(1), match.captured(2)};
}

QtMsgType typeOf(const QString &event)
{
    if (event.startsWith(QLatin1String("debug ")))
        return QtDebugMsg;
    if (event.startsWith(QLatin1String("info ")))
        return QtInfoMsg;
    return event.startsWith(QLatin1String("warning ")) ? QtWarningMsg : QtCriticalMsg;
}

} // namespace

bool KnownEvents::isStatement(const QString &event)
{
    return event.startsWith(exec) || event.startsWith(prepare) || event.startsWith(run);
}

QString KnownEvents::statementText(const QString &event)
{
    if (event.startsWith(prepare))
        prepared = event.mid(prepare.size());
    return event.startsWith(exec) ? event.mid(exec.size()) : prepared;
}

ClassifiedStatement KnownEvents::statement(const QString &event)
{
    return classifyStatement(statementText(event),
                             event.startsWith(run) ? boundValues(event) : QVariantList());
}

const PluginMessage *KnownEvents::message(const QString &event)
{
    return findMessage(typeOf(event), messageText(event));
}

QString KnownEvents::messageText(const QString &event)
{
    return event.section(QLatin1Char(' '), 1);
}

QStringList strangers(const QStringList &events, int logLevel)
{
    KnownEvents known;
    QStringList strange;
    for (const QString &event : events) {
        if (KnownEvents::isStatement(event)) {
            const ClassifiedStatement statement = known.statement(event);
            if (statement.statement == PassStatement::Unknown || !statement.inPlace)
                strange.append(event);
        } else if (!event.startsWith(QLatin1String("sql "))
                   && event != QLatin1String("critical told to fail (scripted)")) {
            const PluginMessage *const message = KnownEvents::message(event);
            if (!message || !topicOf(*message).ofPlugin || message->level > logLevel)
                strange.append(event);
        }
    }
    return strange;
}
