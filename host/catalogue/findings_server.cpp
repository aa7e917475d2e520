// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can be wrong with a database server, for a pass. A statement stands at the end of its
// remedy.
#include "host/catalogue/findingtopics.h"

FindingTopic serverKindFindings()
{
    return {
        "The database server",
        "What keeps a server from running the plugin's statements, or makes them do something "
        "else. An administrator of the server runs the statements of the remedies. `SET GLOBAL` "
        "holds for new connections and until the server starts again; the line below `[mysqld]` "
        "of its own settings makes it last.",
        {
            {"E-SRV-GROUPS", FINDING_TEXT("server that reserves the name groups"),
             FINDING_TEXT("the server, version %1, takes the name of the table 'groups' for a word "
                          "of its own: %2"),
             FINDING_TEXT("the statements for calendars and plans fail; MySQL from 8.0.2 on cannot "
                          "serve the plugin"),
             FINDING_TEXT("move the database to a MariaDB server"),
             "8.0.36\nYou have an error in your SQL syntax"},
            {"E-SRV-READONLY", FINDING_TEXT("server that does not write"),
             FINDING_TEXT("the server only reads: %1 is on"),
             FINDING_TEXT("each statement that writes fails, and exports are read, with deleteFile "
                          "removed; read_only spares a login with SUPER or READ ONLY ADMIN"),
             FINDING_TEXT("name the server that writes, or: SET GLOBAL %1 = 0"), "read_only"},
            {"E-SRV-AUTOCOMMIT", FINDING_TEXT("no automatic commit"),
             FINDING_TEXT("sessions begin with autocommit = 0"),
             FINDING_TEXT(
                 "when the connection closes, all that the pass has written since the last "
                 "supervisor's mark is undone"),
             FINDING_TEXT("write autocommit=1 below [mysqld]; SET GLOBAL autocommit = 1"), nullptr},
        }};
}

FindingTopic serverModeFindings()
{
    return {
        "Modes and letters of the server",
        "How a session reads the statements that it gets.",
        {
            {"E-SRV-GROUPBY", FINDING_TEXT("SQL mode ONLY_FULL_GROUP_BY"),
             FINDING_TEXT("sessions have the SQL mode ONLY_FULL_GROUP_BY"),
             FINDING_TEXT("no months of a group plan are derived; each attempt ends with error "
                          "1055"),
             FINDING_TEXT("write sql_mode=%1 below [mysqld]; SET GLOBAL sql_mode = '%1'"),
             "STRICT_TRANS_TABLES"},
            {"E-SRV-EMPTYNULL", FINDING_TEXT("SQL mode EMPTY_STRING_IS_NULL"),
             FINDING_TEXT("sessions have the SQL mode EMPTY_STRING_IS_NULL"),
             FINDING_TEXT(
                 "people without a title or a phone are refused where these columns refuse "
                 "NULL, and get NULL elsewhere"),
             FINDING_TEXT("write sql_mode=%1 below [mysqld]; SET GLOBAL sql_mode = '%1'"),
             "STRICT_TRANS_TABLES"},
            {"W-SRV-LENIENT", FINDING_TEXT("no strict SQL mode"),
             FINDING_TEXT("sessions have no strict SQL mode"),
             FINDING_TEXT("a text that is too long for its column is cut, and a letter that the "
                          "column lacks becomes '?', without a word"),
             FINDING_TEXT("write sql_mode=%1 below [mysqld]; SET GLOBAL sql_mode = '%1'"),
             "STRICT_TRANS_TABLES"},
            {"N-SRV-BACKSLASH", FINDING_TEXT("SQL mode NO_BACKSLASH_ESCAPES"),
             FINDING_TEXT("sessions have the SQL mode NO_BACKSLASH_ESCAPES"),
             FINDING_TEXT("a backslash in a name stays what it is"),
             FINDING_TEXT("give 'talvenhr check' this database, so that it knows"), nullptr},
            {"N-SRV-MODES", FINDING_TEXT("SQL modes of the session alone"),
             FINDING_TEXT("this session has other SQL modes than the server gives: '%1' and not "
                          "'%2'"),
             FINDING_TEXT("another program that loads the plugin may have others still"),
             FINDING_TEXT("look at init_connect and the options of the connection"),
             "ANSI_QUOTES\nSTRICT_TRANS_TABLES"},
            {"E-SRV-CHARSET", FINDING_TEXT("connection without UTF-8"),
             FINDING_TEXT("the connection speaks %1 with the server (%2)"),
             FINDING_TEXT("letters arrive damaged, or not at all"),
             FINDING_TEXT("give the connection UTF-8; the driver QMYSQL does so by itself"),
             "latin1\ncharacter_set_client"},
            {"E-SRV-LETTERS", FINDING_TEXT("column that lacks letters"),
             FINDING_TEXT("columns of '%1' (%2) are in %3, which lacks Czech or Slovak letters"),
             FINDING_TEXT("people with such letters are refused, or lose them where no strict SQL "
                          "mode holds"),
             FINDING_TEXT("ALTER TABLE `%1` CONVERT TO CHARACTER SET utf8mb4 COLLATE "
                          "utf8mb4_unicode_ci"),
             "people\nname, surname\nlatin1"},
        }};
}

FindingTopic serverTimeFindings()
{
    return {
        "Time of server and machine",
        "The plugin takes today from its machine, and some statements take it from the server.",
        {
            {"E-SRV-ZONE", FINDING_TEXT("another time zone"),
             FINDING_TEXT("today begins at %1 for the server (time zone %2) and at %3 for this "
                          "machine (%4)"),
             FINDING_TEXT("corrections of leave replace each other, and the first of a month "
                          "counts to another one"),
             FINDING_TEXT("%5"),
             "2026-03-31 00:00 UTC\n+00:00\n2026-03-30 22:00 UTC\nEurope/Bratislava\n"
             "write default-time-zone=SYSTEM below [mysqld]; SET GLOBAL time_zone = 'SYSTEM'"},
            {"W-SRV-SEASON", FINDING_TEXT("another time zone for a part of the year"),
             FINDING_TEXT("server (time zone %1) and machine (%2) agree today, and not on %3"),
             FINDING_TEXT("for a part of the year corrections of leave replace each other, and "
                          "the first of a month counts to another one"),
             FINDING_TEXT("%4"),
             "+01:00\nEurope/Bratislava\n2026-07-15\n"
             "write default-time-zone=SYSTEM below [mysqld]; SET GLOBAL time_zone = \'SYSTEM\'"},
            {"W-SRV-ZONENAMES", FINDING_TEXT("no time zones by name"),
             FINDING_TEXT("the server does not know the time zone %1 by its name"),
             FINDING_TEXT("the only zone with changing clocks that it can use is that of its "
                          "machine"),
             FINDING_TEXT("on the server's machine, run: mysql_tzinfo_to_sql /usr/share/zoneinfo "
                          "| mariadb mysql"),
             "Europe/Bratislava"},
            {"E-SRV-CLOCK", FINDING_TEXT("clocks far apart"),
             FINDING_TEXT("the server's clock is %1 s %2 this machine's"),
             FINDING_TEXT("leave is corrected on the wrong day around midnight, or while "
                          "attendance is still being calculated"),
             FINDING_TEXT("on both machines, run: timedatectl set-ntp true"), "3600\nbehind"},
            {"W-SRV-CLOCK", FINDING_TEXT("clocks apart"),
             FINDING_TEXT("the server's clock is %1 s %2 this machine's"),
             FINDING_TEXT("around midnight the two take different days for today"),
             FINDING_TEXT("on both machines, run: timedatectl set-ntp true"), "12\nahead of"},
        }};
}

FindingTopic serverLimitFindings()
{
    return {
        "Limits of the server",
        "How large a statement may be, and how long anything may take.",
        {
            {"E-SRV-PACKET", FINDING_TEXT("statements too large"),
             FINDING_TEXT("max_allowed_packet is %1 bytes; with all %2 people, %5 would take %3"),
             FINDING_TEXT("the statement with the list fails and the connection ends: nothing that "
                          "the pass had yet to write is written"),
             FINDING_TEXT("write max_allowed_packet=%4 below [mysqld]; SET GLOBAL "
                          "max_allowed_packet = %4"),
             "1048576\n180000\n3240000\n8388608\na branch's list for its administrators"},
            {"E-SRV-ROWS", FINDING_TEXT("answers cut short"),
             FINDING_TEXT("sessions get at most %1 rows of an answer (sql_select_limit)"),
             FINDING_TEXT("a pass sees only some of the people, and takes the others for new"),
             FINDING_TEXT("SET GLOBAL sql_select_limit = DEFAULT"), "1000"},
            {"W-SRV-TIME", FINDING_TEXT("statements cut short"),
             FINDING_TEXT("the server ends a statement after %1 s (max_statement_time)"),
             FINDING_TEXT("a large statement of a pass fails, and much of that is not tried again"),
             FINDING_TEXT("write max_statement_time=0 below [mysqld]; SET GLOBAL "
                          "max_statement_time = 0"),
             "10.000000"},
            {"W-SRV-LOCKSHORT", FINDING_TEXT("short wait for a locked row"),
             FINDING_TEXT("innodb_lock_wait_timeout is %1 s"),
             FINDING_TEXT("a statement that meets a row in use fails nearly at once, and much of "
                          "that is not tried again"),
             FINDING_TEXT("write innodb_lock_wait_timeout=50 below [mysqld]; SET GLOBAL "
                          "innodb_lock_wait_timeout = 50"),
             "1"},
            {"W-SRV-LOCKLONG", FINDING_TEXT("long wait for a locked row"),
             FINDING_TEXT("innodb_lock_wait_timeout is %1 s"),
             FINDING_TEXT("a pass stands still for so long at each row that somebody holds"),
             FINDING_TEXT("write innodb_lock_wait_timeout=50 below [mysqld]; SET GLOBAL "
                          "innodb_lock_wait_timeout = 50"),
             "3600"},
            {"W-SRV-IDLE", FINDING_TEXT("connections end early"),
             FINDING_TEXT("the server ends a connection that rests for %1 s (wait_timeout)"),
             FINDING_TEXT(
                 "the connection rests while the export command runs; if that takes "
                 "longer, the export is read, with deleteFile removed, and nothing is written"),
             FINDING_TEXT("write wait_timeout=28800 below [mysqld]; SET GLOBAL wait_timeout = "
                          "28800"),
             "60"},
            {"W-SRV-BINLOG", FINDING_TEXT("replication by statements"),
             FINDING_TEXT("the server's binary log keeps statements (binlog_format is STATEMENT)"),
             FINDING_TEXT("some statements of a pass are unsafe for that: upserts on tables with "
                          "two unique keys, and rows taken from others under new numbers; a "
                          "replica may come to differ"),
             FINDING_TEXT("write binlog_format=MIXED below [mysqld]; SET GLOBAL binlog_format = "
                          "'MIXED'"),
             nullptr},
            {"E-SRV-SPACE", FINDING_TEXT("no room on the disk"),
             FINDING_TEXT("%1 MiB are free where the server keeps its data, in '%2'"),
             FINDING_TEXT("on a full disk no statement writes, and exports are read, with "
                          "deleteFile removed"),
             FINDING_TEXT("make room there"), "12\n/var/lib/mysql/"},
        }};
}

FindingTopic connectionFindings()
{
    return {"Options of the connection",
            "What the connection is told, by `--connect-options` and by the attendance server.",
            {
                {"W-CON-FOUNDROWS", FINDING_TEXT("matched rows counted as changed"),
                 FINDING_TEXT("the options of the connection hold CLIENT_FOUND_ROWS"),
                 FINDING_TEXT("rows that stay as they are count as changed: a correction of leave "
                              "that is there already counts as written, and the person's "
                              "attendance is opened for another calculation"),
                 FINDING_TEXT("take CLIENT_FOUND_ROWS out of the options"), nullptr},
                {"W-CON-RECONNECT", FINDING_TEXT("automatic reconnection"),
                 FINDING_TEXT("the options of the connection hold MYSQL_OPT_RECONNECT"),
                 FINDING_TEXT("a pass whose connection breaks goes on without the statement that "
                              "met the break, and much of that is not tried again"),
                 FINDING_TEXT("take MYSQL_OPT_RECONNECT out of the options"), nullptr},
                {"W-RUN-LOCK", FINDING_TEXT("another run at work"),
                 FINDING_TEXT("a 'talvenhr run' is at work on the database (%1)"),
                 FINDING_TEXT("an attendance server with the plugin would undo its work, and the "
                              "other way round"),
                 FINDING_TEXT("let only one of them run passes"),
                 "connection 12 of the server, talvenhr from localhost"},
            }};
}

FindingTopic clusterFindings()
{
    return {
        "A cluster of servers",
        "Asked where `wsrep_on` is on. The figures are those of the node that the connection "
        "reached.",
        {
            {"E-CLUSTER-NODE", FINDING_TEXT("node that is not ready"),
             FINDING_TEXT("this node of the cluster is not ready: %1"),
             FINDING_TEXT("it refuses every statement with error 1047 while connections open: a "
                          "pass reads the export, with deleteFile removes it, and writes nothing"),
             FINDING_TEXT("lead connections to nodes with wsrep_ready ON only, by a check that "
                          "asks them"),
             "wsrep_cluster_status is non-Primary"},
            {"W-CLUSTER-ALONE", FINDING_TEXT("cluster of one node"),
             FINDING_TEXT("the cluster has one node"),
             FINDING_TEXT("when it is lost, nothing serves"),
             FINDING_TEXT("add nodes or an arbitrator, for an odd number of 3 or more"), nullptr},
            {"W-CLUSTER-SIZE", FINDING_TEXT("cluster without a majority"),
             FINDING_TEXT("the cluster has %1 nodes"),
             FINDING_TEXT("when one half is lost, the other stops serving"),
             FINDING_TEXT("add a node or an arbitrator, for an odd number of 3 or more"), "2"},
            {"W-CLUSTER-RETRY", FINDING_TEXT("refused writes are hardly tried again"),
             FINDING_TEXT("wsrep_retry_autocommit is %1"),
             FINDING_TEXT("a statement that meets another node's write fails with error 1213, and "
                          "much of that is not tried again"),
             FINDING_TEXT("write wsrep_retry_autocommit=4 below [mysqld]; SET GLOBAL "
                          "wsrep_retry_autocommit = 4"),
             "1"},
            {"N-CLUSTER-WAIT", FINDING_TEXT("reads may be old"),
             FINDING_TEXT("wsrep_sync_wait is 0"),
             FINDING_TEXT("a node may not yet have what was just written on another one"),
             FINDING_TEXT("lead all connections to one node, or: SET GLOBAL wsrep_sync_wait = 1"),
             nullptr},
            {"W-CLUSTER-DIRTY", FINDING_TEXT("reads without a majority"),
             FINDING_TEXT("wsrep_dirty_reads is on"),
             FINDING_TEXT("a node that has lost the others serves old rows, from which a pass "
                          "works"),
             FINDING_TEXT("write wsrep_dirty_reads=OFF below [mysqld]; SET GLOBAL "
                          "wsrep_dirty_reads = OFF"),
             nullptr},
            {"E-CLUSTER-FORMAT", FINDING_TEXT("cluster without row format"),
             FINDING_TEXT("binlog_format is %1, and a cluster needs ROW"),
             FINDING_TEXT("nodes come to differ"),
             FINDING_TEXT("write binlog_format=ROW below [mysqld]; SET GLOBAL binlog_format = "
                          "'ROW'"),
             "MIXED"},
            {"E-CLUSTER-NUMBERS", FINDING_TEXT("numbers that nodes give twice"),
             FINDING_TEXT("innodb_autoinc_lock_mode is %1, and a cluster needs 2"),
             FINDING_TEXT("rows of several nodes wait for each other without end"),
             FINDING_TEXT("write innodb_autoinc_lock_mode=2 below [mysqld], and start the server "
                          "again"),
             "1"},
        }};
}
