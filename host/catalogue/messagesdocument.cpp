// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The messages as a page for administrators.
#include "host/catalogue/messagesdocument.h"

#include "host/catalogue/messages.h"

#include <QStringList>

namespace {

const char introduction[]
    = "# Messages\n"
      "\n"
      "All that the plugin logs. What a pass does, what a restart is, and how the log names an employee,\n"
      "stands in [administration.md](administration.md); what a fault costs, in\n"
      "[recovery.md](recovery.md).\n"
      "\n"
      "What stands for `%s`, `%u` and `%i` is filled in; `[%s]` holds the server's own error code.\n"
      "**W** is a warning, **E** an error; a number beside it is the lowest log level at which the\n"
      "message comes, where that is not every level. An SQL error almost always means one of three\n"
      "things: a right or a routine is missing (compare with `database/grants` and\n"
      "`database/routines`), a text is [not escaped](administration.md#what-is-not-escaped), or the\n"
      "server has gone; its text says which.\n"
      "\n"
      "This page is written from `host/catalogue`; `cmake --build --preset release --target\n"
      "messages-document` writes it anew.\n";

const char furtherIntroduction[]
    = "\n## What else the log says\n"
      "\n"
      "Lines of debug (D) and info (I) kind, by the lowest log level at which they come. Keys of the\n"
      "settings are logged at every level; `talvenhr` shows them from level 2 on.\n"
      "\n"
      "| Level | | Text | Said by |\n"
      "|---|---|---|---|\n";

QString kindOf(const PluginMessage &message)
{
    switch (message.type) {
    case QtDebugMsg:
        return QStringLiteral("D");
    case QtInfoMsg:
        return QStringLiteral("I");
    case QtWarningMsg:
        return QStringLiteral("W");
    default:
        return QStringLiteral("E");
    }
}

/// For a cell of a table.
QString cell(const char *text)
{
    return text ? QString::fromUtf8(text).replace(QLatin1Char('|'), QLatin1String("\\|"))
                : QString();
}

/// The first line of the message, as code also where it holds backticks itself.
QString code(const PluginMessage &message)
{
    const QString text = cell(message.text).section(QLatin1Char('\n'), 0, 0);
    const QLatin1String fence(text.contains(QLatin1Char('`')) ? "``" : "`");
    return fence + text + fence;
}

QString row(const QStringList &cells)
{
    return QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) + QStringLiteral(" |\n");
}

QString explained(const PluginMessage &message)
{
    QString kind = QStringLiteral("**%1**").arg(kindOf(message));
    if (message.level > 0)
        kind += QStringLiteral(" %1").arg(message.level);
    return row(
        {kind, code(message), cell(message.meaning), cell(message.effect), cell(message.remedy)});
}

QString heading(const MessageTopic &topic)
{
    const QString title = QStringLiteral("\n## %1\n\n").arg(QString::fromUtf8(topic.title));
    return topic.introduction
        ? title + QString::fromUtf8(topic.introduction) + QStringLiteral("\n\n")
        : title;
}

QString explainedTopic(const MessageTopic &topic)
{
    QString text = heading(topic)
        + QStringLiteral("| | Message | What it means | What it leads to | What to do |\n"
                         "|---|---|---|---|---|\n");
    for (const PluginMessage &message : topic.messages) {
        if (message.isComplaint())
            text += explained(message);
    }
    return text;
}

QString listedTopic(const MessageTopic &topic)
{
    QString text = heading(topic);
    for (const PluginMessage &message : topic.messages) {
        if (message.isComplaint())
            text += QStringLiteral("- **%1** ").arg(kindOf(message)) + code(message)
                + QLatin1Char('\n');
    }
    return text;
}

QString furtherMessages()
{
    QString text = QString::fromUtf8(furtherIntroduction);
    for (int level = 0; level <= 3; ++level) {
        for (const MessageTopic &topic : messageTopics()) {
            for (const PluginMessage &message : topic.messages) {
                if (!message.isComplaint() && message.level == level)
                    text += row({QString::number(level), kindOf(message), code(message),
                                 QStringLiteral("`%1`").arg(message.saidBy())});
            }
        }
    }
    return text;
}

} // namespace

QString messagesDocument()
{
    QString text = QString::fromUtf8(introduction);
    for (const MessageTopic &topic : messageTopics())
        text += topic.ofPlugin ? explainedTopic(topic) : listedTopic(topic);
    return text + furtherMessages();
}
