-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- What others did between the first pass (06:00) and the second (07:00).

-- The terminals have fetched what was queued.
DELETE FROM term_sync;
UPDATE term SET syn = 0;

-- At 06:30 attendance was calculated. The sixth person's mark has not moved yet, and today's day was
-- just opened for her.
UPDATE atten SET ok = 1 WHERE ok < 0;
UPDATE people
   SET lastCalc = UNIX_TIMESTAMP('2024-03-17'), calc = UNIX_TIMESTAMP('2024-03-18 06:30:00')
 WHERE status = 1 AND uid <> 6;
INSERT INTO atten
    (uid, `date`,                       `lock`, man, ok)
VALUES
    (6,   UNIX_TIMESTAMP('2024-03-18'), 0,      0,   -2);
