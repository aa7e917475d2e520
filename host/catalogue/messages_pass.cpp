// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Messages: from the start to the export of a pass.
#include "host/catalogue/messagetexts.h"

MessageTopic startMessages()
{
    return {
        "Start",
        nullptr,
        true,
        {
            debug(0, "EnviroSettings::value() - key: '%s', environment key: %s")
                .tells(MessageEvent::SettingsKeyRead),
            warning("TalvenHR: INI file not found on: \"%s\"")
                .by("TalvenHR::TalvenHR")
                .means(
                    "No `TalvenHR.ini` lies in the [data directory](administration.md#settings).")
                .leadsTo("All keys come from the environment or are defaults. The plugin stays "
                         "disabled unless `ENABLED` is set.")
                .todo("Put the file where the message says."),
            debug(1, "TalvenHR::init()"),
            warning("TalvenHR is DISABLED")
                .by("TalvenHR::init")
                .tells(MessageEvent::PluginDisabled)
                .means("`enabled` is not true.")
                .leadsTo("The plugin does nothing until a restart.")
                .todo("Set `enabled=true` and restart, if it is to run."),
            debug(1, "Start TalvenHR..").by("TalvenHR::start"),
            debug(1, "Stop TalvenHR..").by("TalvenHR::stop"),
            debug(1, "Pause TalvenHR..").by("TalvenHR::pause"),
            debug(1, "Resume TalvenHR..").by("TalvenHR::resume"),
            debug(1, "THRWorker::setOrvDb(%s)"),
            debug(1, "THRWorker::setMes() count: %i)"),
            debug(1, "THRWorker::start()"),
            debug(1, "THRWorker::init()").by("THRWorker::init, THRWorker::stop"),
            warning("TalvenHR not start properly - init failed!")
                .by("TalvenHR::start")
                .means("Cannot appear in this release."),
            error("THRWorker NOT initialized properly - START was terminated!")
                .by("THRWorker::start")
                .means("Cannot appear in this release."),
            error("Directory '%s' is not created!")
                .by("ensureDir")
                .means("The data directory is missing and cannot be made.")
                .leadsTo("`TalvenHR.ini` is not found.")
                .todo("Check the rights of the folder above it."),
            error("Directory '%s' is not writable!")
                .by("ensureDir")
                .means("The server's user may not write into the data directory.")
                .todo("Give the user the right, or name another directory."),
        }};
}

MessageTopic passMessages()
{
    return {
        "Tick and pass",
        nullptr,
        true,
        {
            debug(2, "THRWorker::checkSync(): #%u").tells(MessageEvent::TickBegins),
            debug(2, "THRWorker::dbCheckOpen()")
                .by("THRWorker::dbCheckOpen, THRWorker::dbClose")
                .tells(MessageEvent::ConnectionTurns),
            debug(1, "THRWorker: BEGIN synchronization #%u (force: %s)")
                .by("THRWorker::runPass")
                .tells(MessageEvent::PassBegins),
            debug(2, "THRWorker::runCommand(): '%s'"),
            debug(2, "THRWorker::doSync() - stack count: %i").tells(MessageEvent::RecordsCounted),
            debug(1, "THRWorker: END synchronization #%u (waiting records: %i)")
                .by("THRWorker::runPass")
                .tells(MessageEvent::PassEnds),
            error("THRWorker::dbCheckOpen() - SQL ERROR: %s")
                .means("There is no connection to the database; the text says why.")
                .leadsTo("The tick is lost: `database not open!` follows.")
                .todo("Look at what the text says."),
            warning("THRWorker::checkSync() - database not open!")
                .tells(MessageEvent::DatabaseNotOpen)
                .means("The tick found no connection.")
                .leadsTo("The tick is lost. The next one tries again, but a pass comes only on the "
                         "next multiple of `syncInterval`, or forced.")
                .todo("Force a pass after a failed start."),
            warning("THRWorker::checkSync() - synchronization is in progress, this iteration was "
                    "skipped!")
                .means("Ticks come on two threads, for the server has started the plugin "
                       "repeatedly; see [oddities](oddities.md).")
                .leadsTo("The tick does nothing.")
                .todo("Restart."),
            error("THRWorker: load people from ORVDB failed - synchronization terminated!")
                .by("THRWorker::runPass")
                .means("The people could not be read; the error before it says why.")
                .leadsTo("The records are dropped. With `deleteFile` the export is gone.")
                .todo("Leave a new export."),
            warning("THRWorker::runCommand() - NO command, aborted!")
                .tells(MessageEvent::CommandFailed)
                .means("`syncCommandRun` is set, and `syncCommand` is empty or holds a comma "
                       "without quotes.")
                .leadsTo("No command runs. The pass goes on with the file as it is.")
                .todo("Set `syncCommand`, or `syncCommandRun=0`."),
            warning("THRWorker::runCommand() - command: '%s' exit with code: %i")
                .tells(MessageEvent::CommandFailed)
                .means("The export command failed; -2: it could not be started, -1: it crashed.")
                .leadsTo("The pass goes on with the file as it is.")
                .todo("Run the command by hand, as the server's user."),
            error("THRWorker: isql process %s")
                .by("THRWorker::isqlProcessErrorOccurred")
                .means("Cannot appear in this release."),
        }};
}

MessageTopic exportMessages()
{
    return {
        "Export file",
        nullptr,
        true,
        {
            debug(2, "THRWorker::loadAndParseData()").tells(MessageEvent::ExportReading),
            debug(3, "THRWorker::loadAndParseData() - fields: %s"),
            info(3, "THRWorker::loadAndParseData() - loading data from file: '%s'"),
            debug(3, "THRWorker::parseLine('%s')"),
            warning("THRWorker::loadAndParseData() - file '%s' NOT found!", 2)
                .tells(MessageEvent::ExportMissing)
                .means("There is no export. Normal with `deleteFile` until the HR system leaves a "
                       "new one.")
                .leadsTo("Nothing is done in this pass.")
                .todo("If there should be one, compare the path with where the HR system writes."),
            error("THRWorker::loadAndParseData() - file '%s' not opened!")
                .means("The server's user may not read the export.")
                .leadsTo("Nothing is done in this pass.")
                .todo("Give the user the right to read it."),
            warning("THRWorker::loadAndParseData() - file '%s' NOT removed!")
                .means("The folder of the export is not writable.")
                .leadsTo("The file will be read again.")
                .todo("Give the server's user the right to write there, or set "
                      "`deleteFile=false`."),
            warning("THRWorker::parseLine() - parts count (%i) <> fields count(%i) - line "
                    "skipped!",
                    3)
                .means("A line has not exactly 18 cells: it is cut off, or a text holds a `|`.")
                .leadsTo("The line is skipped.")
                .todo("Mend the line in the HR system."),
        }};
}

MessageTopic variableMessages()
{
    return {
        "Settings variables",
        nullptr,
        true,
        {
            error("OrvDbSettings::variableGet - SQL ERROR:")
                .means("A variable could not be read. A second record holds the error.")
                .leadsTo("The default is taken: the pass is not forced; the PaM list counts as "
                         "empty and is then **overwritten** with the one new person.")
                .todo("Restore `exportPam.N.selPeople` from a copy."),
            error("OrvDbSettings::variableGetMultiple - SQL ERROR:")
                .means("The PaM blocks could not be read. A second record holds the error.")
                .leadsTo("No PaM block is found.")
                .todo("Enrol the person by hand."),
            error("variableSet ERROR: \"%s\"")
                .by("OrvDbSettings::variableSet")
                .means("The variable was not written.")
                .leadsTo("A forced pass may repeat on the next tick, or a PaM list lacks a person.")
                .todo("Add the person to the list by hand."),
        }};
}
