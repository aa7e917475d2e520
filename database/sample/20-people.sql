-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- The company's people: memberships, attendance of the last two months, moves of leave.

SET NAMES utf8mb4;

-- Local midnights that the rows below count from.
SET @today     = CURDATE();
SET @thisMonth = @today - INTERVAL DAYOFMONTH(@today) - 1 DAY;
SET @lastMonth = @thisMonth - INTERVAL 1 MONTH;
SET @year      = MAKEDATE(YEAR(@lastMonth), 1);

-- 8 and 9 are two employments of one person. 7 leaves in three months, 11 has left but is still
-- active, 12 has left and is inactive, 10 is on leave of a state, 13 is in no branch of the export.
INSERT INTO people
    (uid, pid,   pamId,    title,  name,        surname,      title2, phone,
     type, status, did,  bid, gid,  calendarID, begin,                        end,
     rsBegin, rsText, lastCalc, created)
VALUES
    (1,   10011, '1001.1', 'Ing.', 'Ľubomír',   'Krížik',     '',     '0900 001 001',
     1,    1,      1,    1,   11,   1,          UNIX_TIMESTAMP('2009-09-01'), NULL,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2009-08-20')),
    (2,   10021, '1002.1', '',     'Žofia',     'Šťastná',    '',     '0900 001 002',
     1,    1,      1,    2,   22,   2,          UNIX_TIMESTAMP('2012-02-01'), NULL,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2012-01-25')),
    (3,   10031, '1003.1', 'Ing.', 'Jiří',      'Dvořáček',   'PhD.', '0900 001 003',
     1,    1,      1,    3,   22,   2,          UNIX_TIMESTAMP('2015-03-01'), NULL,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2015-02-20')),
    (4,   10041, '1004.1', 'Mgr.', 'Ľudmila',   'Ďurišová',   '',     '0900 001 004',
     1,    1,      1,    1,   11,   1,          UNIX_TIMESTAMP('2016-10-01'), NULL,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2016-09-26')),
    (5,   10051, '1005.1', '',     'Štefan',    'Múčka',      '',     '',
     1,    1,      1,    2,   23,   3,          UNIX_TIMESTAMP('2018-04-01'), NULL,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2018-03-28')),
    (6,   10061, '1006.1', '',     'Zdeňka',    'Řeháková',   '',     '0900 001 006',
     1,    1,      1,    3,   23,   3,          UNIX_TIMESTAMP('2019-01-01'), NULL,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2018-12-18')),
    (7,   10071, '1007.1', '',     'Ján',       'Vŕba',       '',     '0900 001 007',
     1,    1,      1,    4,   22,   2,          UNIX_TIMESTAMP('2020-06-01'),
     UNIX_TIMESTAMP(@today + INTERVAL 3 MONTH) - 1,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2020-05-29')),
    (8,   10081, '1008.1', 'Bc.',  'Kateřina',  'Nováčková',  '',     '0900 001 008',
     1,    1,      1,    5,   31,   1,          UNIX_TIMESTAMP('2017-05-01'), NULL,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2017-04-24')),
    (9,   10082, '1008.2', 'Bc.',  'Kateřina',  'Nováčková',  '',     '0900 001 008',
     4,    1,      1,    1,   NULL, 0,          UNIX_TIMESTAMP('2022-01-01'), NULL,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2021-12-15')),
    (10,  10101, '1010.1', '',     'Mária',     'Kováčiková', '',     '',
     1,    1,      1,    5,   31,   1,          UNIX_TIMESTAMP('2021-03-28'), NULL,
     UNIX_TIMESTAMP(@thisMonth - INTERVAL 5 MONTH), 'materská dovolenka',
     UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2021-03-20')),
    (11,  10111, '1011.1', '',     'Ondřej',    'Čapek',      '',     '0900 001 011',
     1,    1,      1,    3,   22,   2,          UNIX_TIMESTAMP('2014-07-01'),
     UNIX_TIMESTAMP('2024-01-01') - 1,
     NULL, '', UNIX_TIMESTAMP('2023-12-31'), UNIX_TIMESTAMP('2014-06-23')),
    (12,  10121, '1012.1', '',     'Peter',     'Holý',       '',     '',
     1,    0,      1,    2,   22,   2,          UNIX_TIMESTAMP('2011-11-01'),
     UNIX_TIMESTAMP('2022-07-01') - 1,
     NULL, '', UNIX_TIMESTAMP('2022-06-30'), UNIX_TIMESTAMP('2011-10-27')),
    (13,  10131, '1013.1', '',     'Alžbeta',   'Hôrková',    '',     '0900 001 013',
     0,    1,      NULL, 6,   NULL, 0,          UNIX_TIMESTAMP('2023-10-29'), NULL,
     NULL, '', UNIX_TIMESTAMP(@today - INTERVAL 1 DAY), UNIX_TIMESTAMP('2023-10-20'));

INSERT INTO people_pam
    (uid, id)
VALUES
    (1,   1),
    (2,   1),
    (3,   1),
    (4,   1),
    (5,   1),
    (6,   1),
    (7,   1),
    (8,   1),
    (9,   2),
    (10,  1);

UPDATE vars
   SET value = '10011,10021,10031,10041,10051,10061,10071,10081,10082,10101'
 WHERE name = 'exportPam.1.selPeople';

INSERT INTO brape
    (bid, uid, since)
VALUES
    (1,   1,   UNIX_TIMESTAMP('2009-09-01')),
    (2,   2,   UNIX_TIMESTAMP('2012-02-01')),
    (3,   3,   UNIX_TIMESTAMP('2015-03-01')),
    (1,   4,   UNIX_TIMESTAMP('2016-10-01')),
    (2,   5,   UNIX_TIMESTAMP('2018-04-01')),
    (3,   6,   UNIX_TIMESTAMP('2019-01-01')),
    (4,   7,   UNIX_TIMESTAMP('2020-06-01')),
    (2,   7,   UNIX_TIMESTAMP('2023-02-01')),
    (5,   8,   UNIX_TIMESTAMP('2017-05-01')),
    (1,   9,   UNIX_TIMESTAMP('2022-01-01')),
    (5,   10,  UNIX_TIMESTAMP('2021-03-28')),
    (3,   11,  UNIX_TIMESTAMP('2014-07-01')),
    (6,   13,  UNIX_TIMESTAMP('2023-10-29'));

INSERT INTO people_term
    (tid, uid)
VALUES
    (1,   1),
    (1,   4),
    (1,   9),
    (2,   2),
    (2,   5),
    (2,   7),
    (3,   2),
    (3,   5),
    (3,   7),
    (4,   3),
    (4,   6),
    (4,   11),
    (5,   3),
    (5,   6),
    (6,   7),
    (7,   8),
    (7,   10);

INSERT INTO pzt
    (zid, tid, uid)
VALUES
    (1,   1,   1),
    (1,   1,   4),
    (1,   3,   5),
    (2,   6,   7),
    (2,   7,   8);

-- request 1 marks the supervisor; the director's own is the first administrator.
INSERT INTO admins_people
    (aid, uid, request)
VALUES
    (1,   1,   0),
    (1,   2,   1),
    (1,   3,   1),
    (1,   4,   1),
    (1,   8,   1),
    (1,   9,   1),
    (2,   2,   0),
    (2,   5,   1),
    (2,   7,   1),
    (3,   3,   0),
    (3,   6,   1),
    (3,   11,  1),
    (4,   8,   0),
    (4,   10,  1);

INSERT INTO groups_plan
    (uid, since,  gid)
VALUES
    (1,   200909, 11),
    (2,   201202, 22),
    (3,   201503, 22),
    (4,   201610, 11),
    (5,   201804, 22),
    (5,   202301, 23),
    (6,   201901, 23),
    (7,   202006, 22),
    (8,   201705, 31),
    (10,  202103, 31);

-- Every weekday of the last two months up to yesterday. Days before the last month are closed, the
-- Fridays of the first person were entered by hand, the last week of the fifth is not calculated.
INSERT INTO atten (uid, `date`, `lock`, man, ok)
WITH RECURSIVE days (day) AS (
    SELECT @today - INTERVAL 2 MONTH
    UNION ALL
    SELECT day + INTERVAL 1 DAY FROM days WHERE day < @today - INTERVAL 1 DAY
)
SELECT uid,
       UNIX_TIMESTAMP(day),
       day < @lastMonth,
       uid = 1 AND WEEKDAY(day) = 4,
       IF(uid = 5 AND day >= @today - INTERVAL 7 DAY, -1, 1)
  FROM people JOIN days
 WHERE status = 1 AND (end IS NULL OR end > UNIX_TIMESTAMP(day)) AND rsBegin IS NULL
   AND WEEKDAY(day) < 5;

INSERT INTO groups_month (uid, month, gid)
SELECT a.uid, monthFromTimestamp(a.`date`) month,
       getCurrentGid(a.uid, monthFromTimestamp(a.`date`), p.gid) gid
  FROM atten a JOIN people p USING (uid)
 GROUP BY a.uid, month
HAVING gid IS NOT NULL;

-- Leave, in hundredths of a day: type 1 entitlement at the start of the year, 2 days taken, 3
-- earlier corrections. The last move lies in the current month and counts towards no balance yet.
INSERT INTO funds_move (uid, fid, type, day, month, value)
WITH moves (uid, type, onDay, amount) AS (
    VALUES
    (1,   1,    @year,                         2500),
    (1,   2,    @lastMonth + INTERVAL 7 DAY,   -500),
    (2,   1,    @year,                         2500),
    (2,   3,    @lastMonth + INTERVAL 14 DAY,  -50),
    (3,   1,    @year,                         2500),
    (3,   2,    @lastMonth + INTERVAL 9 DAY,   -200),
    (3,   3,    @lastMonth + INTERVAL 20 DAY,  150),
    (4,   1,    @year,                         2000),
    (5,   1,    @year,                         2000),
    (6,   1,    @year,                         2500),
    (7,   1,    @year,                         2000),
    (7,   2,    @lastMonth + INTERVAL 2 DAY,   -100),
    (8,   1,    @year,                         2500),
    (10,  1,    @year,                         2000),
    (4,   2,    @thisMonth,                    -100)
)
SELECT uid, 2, type, UNIX_TIMESTAMP(onDay), EXTRACT(YEAR_MONTH FROM onDay), amount
  FROM moves;
