-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- What others did between the third pass (Monday, 08:00) and the fourth (Tuesday, 06:00).

SET NAMES utf8mb4;

-- The branch that an employee waits for, with a terminal and an administrator.
INSERT INTO branches
    (bid, number, mgid, name)
VALUES
    (3,   300,    3,    'Sklad');
INSERT INTO bradm
    (bid, aid)
VALUES
    (3,   3);
UPDATE term SET bid = 3 WHERE tid = 5;

-- The terminals have fetched what was queued.
DELETE FROM term_sync;
UPDATE term SET syn = 0;

-- In the night attendance was calculated.
UPDATE atten SET ok = 1 WHERE ok < 0;
UPDATE people
   SET lastCalc = UNIX_TIMESTAMP('2024-03-18'), calc = UNIX_TIMESTAMP('2024-03-19 02:00:00')
 WHERE status = 1;
