-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- What others did between the second pass (07:00) and the third (08:00).

-- Somebody wants a pass at once, of everything.
UPDATE vars SET value = '1' WHERE name = 'OQS.THRWorker.forceSync';

-- The terminals have fetched what was queued.
DELETE FROM term_sync;
UPDATE term SET syn = 0;

-- At 07:30 attendance was calculated; the sixth person's calculation began at 07:50.
UPDATE atten SET ok = 1 WHERE ok < 0;
UPDATE people
   SET lastCalc = UNIX_TIMESTAMP('2024-03-17'), calc = UNIX_TIMESTAMP('2024-03-18 07:30:00')
 WHERE status = 1 AND uid <> 6;
UPDATE people SET calc = UNIX_TIMESTAMP('2024-03-18 07:50:00') WHERE uid = 6;
