// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the plugin logs while it is fuzzed.
#include "messagelist.h"

#include "check.h"

#include <QTextCodec>

namespace {

QStringList &messages()
{
    static QStringList list;
    return list;
}

const char *levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug ";
    case QtInfoMsg:
        return "info ";
    case QtWarningMsg:
        return "warning ";
    case QtCriticalMsg:
    case QtFatalMsg:
        break;
    }
    return "critical ";
}

void take(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const bool bare = !context.file && !context.function && context.line == 0
        && qstrcmp(context.category, "default") == 0;
    FUZZ_CHECK(bare, QStringLiteral("message with context: ") + text);
    messages().append(QLatin1String(levelName(type)) + text);
}

} // namespace

void MessageList::install()
{
    qputenv("TZ", "UTC");
    qputenv("LC_ALL", "C.UTF-8");
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    qInstallMessageHandler(take);
}

void MessageList::clear()
{
    messages().clear();
}

const QStringList &MessageList::all()
{
    return messages();
}
