// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The messages that the plugin and its library log, and no others.
#include "host/catalogue/messages.h"

#include "host/catalogue/messagetexts.h"
#include "host/catalogue/textform.h"

#include <QHash>

#include <algorithm>
#include <functional>
#include <iterator>

namespace {

struct Entry
{
    const PluginMessage *message;
    TextForm form;
};

/// Up to the first blank or bracket: the name of the operation, as a rule.
int wordLength(const QString &text)
{
    const auto end = std::find_if(text.begin(), text.end(), [](QChar character) {
        return character == QLatin1Char(' ') || character == QLatin1Char('(');
    });
    return static_cast<int>(std::distance(text.begin(), end));
}

/// The entries by the word that they begin with.
const QHash<QString, std::vector<Entry>> &entriesByWord()
{
    static const QHash<QString, std::vector<Entry>> all = [] {
        QHash<QString, std::vector<Entry>> entries;
        for (const MessageTopic &topic : messageTopics()) {
            for (const PluginMessage &message : topic.messages) {
                const QString text = QString::fromUtf8(message.text);
                entries[text.left(wordLength(text))].push_back(
                    {&message, TextForm::ofMessage(message.text)});
            }
        }
        return entries;
    }();
    return all;
}

} // namespace

MessageRow::MessageRow(QtMsgType type, int level, const char *text) :
    message {type, level, text, nullptr, {}, MessageEvent::Nothing, nullptr, nullptr, nullptr}
{ }

MessageRow MessageRow::by(const char *operation) const
{
    MessageRow row = *this;
    row.message.operation = operation;
    return row;
}

MessageRow MessageRow::names(Naming naming, int place) const
{
    MessageRow row = *this;
    row.message.named = {naming, place};
    return row;
}

MessageRow MessageRow::tells(MessageEvent event) const
{
    MessageRow row = *this;
    row.message.event = event;
    return row;
}

MessageRow MessageRow::means(const char *meaning) const
{
    MessageRow row = *this;
    row.message.meaning = meaning;
    return row;
}

MessageRow MessageRow::leadsTo(const char *effect) const
{
    MessageRow row = *this;
    row.message.effect = effect;
    return row;
}

MessageRow MessageRow::todo(const char *remedy) const
{
    MessageRow row = *this;
    row.message.remedy = remedy;
    return row;
}

QString PluginMessage::saidBy() const
{
    const QString whole = QString::fromUtf8(operation ? operation : text);
    return operation ? whole : whole.left(wordLength(whole));
}

const std::vector<MessageTopic> &messageTopics()
{
    static const std::vector<MessageTopic> topics {
        startMessages(),   passMessages(),          exportMessages(),   peopleMessages(),
        pamMessages(),     recalculationMessages(), fundMessages(),     supervisorMessages(),
        branchMessages(),  memberMessages(),        terminalMessages(), variableMessages(),
        libraryMessages(),
    };
    return topics;
}

const PluginMessage *findMessage(QtMsgType type, const QString &text)
{
    // Looked up without a copy: the key ends with the call.
    const auto entries = entriesByWord().constFind(
        QString::fromRawData(text.constData(), wordLength(text)));
    if (entries == entriesByWord().constEnd())
        return nullptr;
    for (const Entry &entry : *entries) {
        if (entry.message->type == type && entry.form.fits(text))
            return entry.message;
    }
    return nullptr;
}

const MessageTopic &topicOf(const PluginMessage &message)
{
    // The messages of a topic stand side by side.
    const std::less_equal<> upTo;
    return *std::find_if(messageTopics().begin(), messageTopics().end(),
                         [&](const MessageTopic &topic) {
                             return upTo(&topic.messages.front(), &message)
                                 && upTo(&message, &topic.messages.back());
                         });
}

QStringList valuesIn(const PluginMessage &message, const QString &text)
{
    return TextForm::ofMessage(message.text).match(text).value_or(QStringList());
}

NamedPeople peopleIn(const PluginMessage &message, const QString &text)
{
    return peopleIn(message.named, valuesIn(message, text));
}
