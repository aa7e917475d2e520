-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- The database user of the plugin and the rights that its statements need, in the current database.

-- The user has no password: the private server listens on no network, and its socket lies in a
-- folder that only its owner can enter. On a server that others reach, set one afterwards:
--     ALTER USER 'talvenhr'@'localhost' IDENTIFIED BY '...';
CREATE USER IF NOT EXISTS 'talvenhr'@'localhost';

-- Rights are given by column where the plugin must keep off the others. An upsert takes UPDATE on
-- every column that it inserts, whichever of them it changes, and SELECT for its VALUES(); UPDATE
-- and DELETE take SELECT for their WHERE.

-- Persons are read, added and corrected, never deleted; their uid and default group stay.
GRANT SELECT, INSERT, UPDATE (pid, pamId, title, name, surname, title2, phone, begin, end, rsBegin,
                              rsEnd, rsText, type, status, did, bid, calendarID, lastCalc, calc,
                              created, edited, editor)
    ON people TO 'talvenhr'@'localhost';
-- Enrolment of a new person in PaM.
GRANT SELECT, INSERT, UPDATE ON people_pam TO 'talvenhr'@'localhost';

-- Branches are looked up by number, and saved by their record.
GRANT SELECT, INSERT, UPDATE (number, name, address, note, wh1b, wh1e, wh2b, wh2e, wh3b, wh3e, wh4b,
                              wh4e, wh5b, wh5e, wh6b, wh6e, wh7b, wh7e, mgid)
    ON branches TO 'talvenhr'@'localhost';
-- The group of a branch that carries a calendar.
GRANT SELECT ON mastergroups TO 'talvenhr'@'localhost';
GRANT SELECT ON groups TO 'talvenhr'@'localhost';
-- Members of a branch: people, sections, and triples with an attribute.
GRANT SELECT, INSERT, UPDATE, DELETE ON brape TO 'talvenhr'@'localhost';
GRANT SELECT ON sections TO 'talvenhr'@'localhost';
GRANT SELECT, INSERT, UPDATE, DELETE ON sec_branch TO 'talvenhr'@'localhost';
GRANT SELECT, INSERT, UPDATE, DELETE ON bas TO 'talvenhr'@'localhost';

-- Administrators are looked up by personal number; the rest of their row is none of the plugin's
-- business.
GRANT SELECT (aid, personalNumber) ON admins TO 'talvenhr'@'localhost';
-- Administrators of a branch, their people, and the mark of the supervisor.
GRANT SELECT, INSERT, UPDATE, DELETE ON bradm TO 'talvenhr'@'localhost';
GRANT SELECT, INSERT, UPDATE, DELETE ON admins_people TO 'talvenhr'@'localhost';

-- Terminals are listed, marked as having something to fetch, and moved between branches.
GRANT SELECT, UPDATE (bid, syn) ON term TO 'talvenhr'@'localhost';
-- People on terminals.
GRANT SELECT, INSERT, UPDATE, DELETE ON people_term TO 'talvenhr'@'localhost';
-- Terminals that hold an interval or a time zone.
GRANT SELECT ON inters TO 'talvenhr'@'localhost';
GRANT SELECT ON inters_term TO 'talvenhr'@'localhost';
GRANT SELECT ON pzt TO 'talvenhr'@'localhost';
-- The queue is only written here; the terminals' side reads and clears it.
GRANT INSERT ON term_sync TO 'talvenhr'@'localhost';
-- Marking the terminals of a time zone collects them in a temporary table.
GRANT CREATE TEMPORARY TABLES ON * TO 'talvenhr'@'localhost';

-- Attendance is asked whether it is at rest, and opened for another calculation.
GRANT SELECT, UPDATE (ok) ON atten TO 'talvenhr'@'localhost';
-- Groups as planned, and the months derived from them.
GRANT SELECT, INSERT, UPDATE, DELETE ON groups_plan TO 'talvenhr'@'localhost';
GRANT SELECT, INSERT, UPDATE ON groups_month TO 'talvenhr'@'localhost';

-- The leave fund, its balance, and today's correction.
GRANT SELECT ON funds TO 'talvenhr'@'localhost';
GRANT SELECT, INSERT, UPDATE ON funds_move TO 'talvenhr'@'localhost';

-- Settings variables are read, set and deleted.
GRANT SELECT, INSERT, UPDATE, DELETE ON vars TO 'talvenhr'@'localhost';

GRANT EXECUTE ON FUNCTION midnightFromTs TO 'talvenhr'@'localhost';
GRANT EXECUTE ON FUNCTION monthFromTimestamp TO 'talvenhr'@'localhost';
GRANT EXECUTE ON FUNCTION getCurrentGid TO 'talvenhr'@'localhost';
GRANT EXECUTE ON PROCEDURE updateTermsSync TO 'talvenhr'@'localhost';
