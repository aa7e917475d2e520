// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The messages that the plugin and its library log, and no others.
#pragma once

#include "host/catalogue/namedpeople.h"

#include <QString>
#include <QtGlobal>

#include <vector>

/// What of a pass a message announces.
enum class MessageEvent {
    Nothing,
    SettingsKeyRead,
    PluginDisabled,
    TickBegins, ///< the value: its number, from 1
    DatabaseNotOpen, ///< a tick is lost
    ConnectionTurns, ///< it opens or closes, in the same words
    PassBegins,
    PassEnds, ///< the second value: how many records wait
    CommandFailed, ///< the export command
    ExportReading, ///< begins, if there is an export
    ExportMissing,
    RecordsCounted, ///< the value: how many records the pass has
    RecordBegins,
    PersonAdded, ///< is about to be
    PersonNotAdded, ///< follows PersonAdded where nobody was added
    PersonUpdated, ///< is about to be
    PersonNotUpdated ///< follows PersonUpdated where nothing was updated
};

/// A message as the plugin words it, and what is known of it. All texts are constants.
struct PluginMessage
{
    QtMsgType type;
    int level; ///< the lowest log level, 0 to 3, at which it comes
    const char *text; ///< with %s, %u and %i for what is filled in
    const char *operation; ///< who says it, where the text does not begin with the name
    NamingPlace named; ///< which of its values names people
    MessageEvent event;
    // Of warnings and errors of the plugin itself, for administrators; Markdown.
    const char *meaning; ///< what has happened
    const char *effect; ///< what follows from it; null if nothing does
    const char *remedy; ///< what to do; null if nothing is to be done

    /// Warnings and errors.
    bool isComplaint() const { return type == QtWarningMsg || type == QtCriticalMsg; }
    /// Class and operation, such as "THRWorker::doSync"; several with commas.
    QString saidBy() const;
};

/// Messages that belong together, in the order in which they are explained.
struct MessageTopic
{
    const char *title;
    const char *introduction; ///< Markdown; may be null
    bool ofPlugin; ///< else only other programs that use the library come to these
    std::vector<PluginMessage> messages;
};

const std::vector<MessageTopic> &messageTopics();

/// The message that the text is an instance of, null if the plugin has none such. Where several
/// operations share a text, they share the entry. Quick: made for every line of a log. For any
/// thread.
const PluginMessage *findMessage(QtMsgType type, const QString &text);

/// Where a message that findMessage() or messageTopics() gave belongs.
const MessageTopic &topicOf(const PluginMessage &message);

/// What is filled in at the places of the message; empty for the text of another one.
QStringList valuesIn(const PluginMessage &message, const QString &text);

/// Whom the text, an instance of the message, names.
NamedPeople peopleIn(const PluginMessage &message, const QString &text);
