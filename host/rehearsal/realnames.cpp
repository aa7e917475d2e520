// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The files that people know, in place of a rehearsal's copies of them.
#include "host/rehearsal/realnames.h"

#include "host/rehearsal/rehearsal.h"
#include "host/rehearsal/rehearsalsite.h"

#include <QFileInfo>

RealNames::RealNames(const RehearsalSite &site, const RehearsalWishes &wishes) :
    folder(site.path()),
    settings(site.settingsFile()),
    data(site.exportFile()),
    realSettings(wishes.settingsFile),
    realExport(wishes.exportName.isEmpty() ? wishes.exportFile : wishes.exportName)
{ }

QString RealNames::in(QString text) const
{
    // Without a folder there is no name to replace.
    if (folder.isEmpty())
        return text;
    return text.replace(data, realExport)
        .replace(settings, realSettings)
        .replace(folder, QFileInfo(realSettings).path());
}

void RealNames::putInto(Changes *changes) const
{
    putInto(&changes->messages);
    for (ChangedPerson &person : changes->people) {
        putInto(&person.messages);
        for (NotDone &notDone : person.notDone)
            notDone.text = in(notDone.text);
    }
}

void RealNames::putInto(TraceSteps *steps) const
{
    for (TraceStep &step : *steps)
        step.text = in(step.text);
}

void RealNames::putInto(QVector<PassMessage> *messages) const
{
    for (PassMessage &message : *messages)
        message.text = in(message.text);
}
