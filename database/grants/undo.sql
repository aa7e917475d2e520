-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- The database user of `talvenhr undo` and the rights that it needs, in the current database.

-- The user has no password: the private server listens on no network, and its socket lies in a
-- folder that only its owner can enter. On a server that others reach, set one afterwards:
--     ALTER USER 'talvenhr_undo'@'localhost' IDENTIFIED BY '...';
CREATE USER IF NOT EXISTS 'talvenhr_undo'@'localhost';

-- The look: a copy of what a pass touches, with its triggers and routines. All tables are read, for
-- any of them may refer to a person.
GRANT SELECT, TRIGGER, SHOW VIEW ON * TO 'talvenhr_undo'@'localhost';
GRANT SELECT ON mysql.proc TO 'talvenhr_undo'@'localhost';

-- What a pass has written gets the value of before. People who were added go, or become inactive.
GRANT UPDATE (pamId, title, name, surname, title2, phone, begin, end, rsBegin, rsEnd, rsText, type,
              status, did, bid, calendarID, edited, editor), DELETE
    ON people TO 'talvenhr_undo'@'localhost';
-- Rows that have come go; those that stood before get back what they held.
GRANT UPDATE (id), DELETE ON people_pam TO 'talvenhr_undo'@'localhost';
GRANT UPDATE (since), DELETE ON brape TO 'talvenhr_undo'@'localhost';
GRANT DELETE ON people_term TO 'talvenhr_undo'@'localhost';
GRANT UPDATE (request), DELETE ON admins_people TO 'talvenhr_undo'@'localhost';
GRANT UPDATE (gid), DELETE ON groups_plan TO 'talvenhr_undo'@'localhost';
GRANT UPDATE (gid), DELETE ON groups_month TO 'talvenhr_undo'@'localhost';
-- Corrections of leave: today's gets another value, an older one a move of today. An upsert takes
-- UPDATE on every column that it inserts.
GRANT INSERT, UPDATE ON funds_move TO 'talvenhr_undo'@'localhost';
-- Lists of PaM.
GRANT UPDATE (value), DELETE ON vars TO 'talvenhr_undo'@'localhost';
-- Notices to terminals.
GRANT INSERT ON term_sync TO 'talvenhr_undo'@'localhost';
GRANT UPDATE (syn) ON term TO 'talvenhr_undo'@'localhost';

GRANT EXECUTE ON FUNCTION midnightFromTs TO 'talvenhr_undo'@'localhost';
GRANT EXECUTE ON FUNCTION monthFromTimestamp TO 'talvenhr_undo'@'localhost';
GRANT EXECUTE ON PROCEDURE updateTermsSync TO 'talvenhr_undo'@'localhost';
