-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- The company before the first pass, on Monday, 18 March 2024. No date depends on today's.

SET NAMES utf8mb4;

INSERT INTO mastergroups
    (mgid, name)
VALUES
    (1,    'Kancelárie'),
    (2,    'Prevádzky'),
    (3,    'Sklady');

-- No group carries calendar 7.
INSERT INTO groups
    (gid, parent, calendarID, name)
VALUES
    (11,  1,      1,          'Kancelárie – pružný čas'),
    (21,  2,      1,          'Prevádzky – denná zmena'),
    (22,  2,      2,          'Prevádzky – dve zmeny'),
    (31,  3,      1,          'Sklady – denná zmena');

-- The last one carries no number. Branch 300 is made before the fourth pass, as bid 3.
INSERT INTO branches
    (bid, number, mgid, name)
VALUES
    (1,   100,    1,    'Riaditeľstvo'),
    (2,   200,    2,    'Výroba'),
    (9,   NULL,   NULL, 'Externí pracovníci');

INSERT INTO sections
    (secid, name)
VALUES
    (1,     'Lisovňa');

INSERT INTO sec_branch
    (bid, secid)
VALUES
    (2,   1);

INSERT INTO bas
    (bid, attrid, secid)
VALUES
    (2,   1,      1);

-- 3 takes no persons (bit 2), 4 is out of service.
INSERT INTO term
    (tid, bid,  status, flags, name)
VALUES
    (1,   1,    1,      323,   'Vrátnica'),
    (2,   2,    1,      323,   'Hala A'),
    (3,   2,    1,      65,    'Hala B – závora'),
    (4,   2,    0,      323,   'Hala C'),
    (5,   NULL, 1,      2,     'Náhradný terminál');

INSERT INTO admins
    (aid, personalNumber, login,     name)
VALUES
    (1,   1001,           'krizik',  'Ľubomír Krížik'),
    (2,   1002,           'stastna', 'Žofia Šťastná'),
    (3,   NULL,           'spravca', 'Správca systému');

INSERT INTO bradm
    (bid, aid)
VALUES
    (1,   1),
    (2,   2),
    (2,   3);

INSERT INTO funds
    (fid, iid, unit, name)
VALUES
    (1,   1,   1,    'Nadčasy'),
    (2,   3,   2,    'Dovolenka'),
    (3,   3,   1,    'Dovolenka v hodinách');

INSERT INTO vars
    (name,                      value)
VALUES
    ('OQS.THRWorker.forceSync', '0'),
    ('exportPam.1.active',      '1'),
    ('exportPam.1.selPeople',   '10011,10021,10141');

-- 9 is inactive, 13 is not in the export. README.md tells the story of each.
INSERT INTO people
    (uid, pid,   pamId,    title,  name,      surname,    title2, phone,
     type, status, did, bid, calendarID, begin,                        end,
     lastCalc, calc)
VALUES
    (1,   10011, '1001.1', 'Ing.', 'Ľubomír', 'Krížik',   '',     '0900 001 001',
     1,    1,      4,   1,   1,          UNIX_TIMESTAMP('2009-09-01'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (2,   10021, '1002.1', '',     'Žofia',   'Malá',     '',     '0900 001 002',
     1,    1,      4,   2,   2,          UNIX_TIMESTAMP('2012-02-01'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (3,   10031, '1003.1', 'Ing.', 'Jiří',    'Dvořáček', 'PhD.', '0900 001 003',
     1,    1,      4,   2,   2,          UNIX_TIMESTAMP('2015-03-01'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (4,   10041, '1004.1', 'Mgr.', 'Ľudmila', 'Ďurišová', '',     '0900 001 004',
     1,    1,      4,   1,   1,          UNIX_TIMESTAMP('2016-10-01'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (5,   10051, '1005.1', '',     'Štefan',  'Múčka',    '',     '',
     1,    1,      4,   2,   2,          UNIX_TIMESTAMP('2018-04-01'),
     UNIX_TIMESTAMP('2024-03-31 23:59:59'),
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (6,   10061, '1006.1', '',     'Zdeňka',  'Řeháková', '',     '0900 001 006',
     1,    1,      4,   2,   2,          UNIX_TIMESTAMP('2019-01-01'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (7,   10071, '1007.1', '',     'Ján',     'Vŕba',     '',     '0900 001 007',
     1,    1,      4,   1,   1,          UNIX_TIMESTAMP('2020-06-01'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (8,   10131, '1013.1', '',     'Eva',     'Kolářová', '',     '0900 001 013',
     1,    1,      4,   1,   1,          UNIX_TIMESTAMP('2021-03-28'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (9,   10141, '1014.1', 'Bc.',  'Tomáš',   'Vlk',      '',     '',
     1,    0,      4,   1,   1,          UNIX_TIMESTAMP('2018-02-01'),
     UNIX_TIMESTAMP('2022-06-30 23:59:59'),
     UNIX_TIMESTAMP('2022-06-30'), 0),
    (10,  10151, '1015.1', '',     'Jana',    'Malíková', '',     '0900 001 015',
     1,    1,      4,   1,   7,          UNIX_TIMESTAMP('2022-01-01'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (11,  10171, '1017.1', '',     'Igor',    'Šimko',    '',     '0900 001 017',
     1,    1,      4,   1,   1,          UNIX_TIMESTAMP('2019-05-01'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (12,  10181, '1018.1', '',     'Karel',   'Bureš',    '',     '0900 001 018',
     4,    1,      4,   9,   0,          UNIX_TIMESTAMP('2023-01-01'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00')),
    (13,  10191, '1019.1', '',     'Vera',    'Hostová',  '',     '0900 001 019',
     0,    1,   NULL,   9,   0,          UNIX_TIMESTAMP('2023-10-29'), NULL,
     UNIX_TIMESTAMP('2024-03-17'), UNIX_TIMESTAMP('2024-03-18 03:00:00'));

UPDATE people SET created = UNIX_TIMESTAMP('2020-01-01');

-- The state that he once was in stays when he returns.
UPDATE people
   SET rsBegin = UNIX_TIMESTAMP('2019-02-01'), rsEnd = UNIX_TIMESTAMP('2019-08-31'),
       rsText = 'rodičovská dovolenka'
 WHERE uid = 9;

INSERT INTO people_pam
    (uid, id)
VALUES
    (1,   1),
    (2,   1),
    (9,   1);

INSERT INTO brape (bid, uid, since)
SELECT bid, uid, UNIX_TIMESTAMP('2020-01-01') FROM people;

-- 7, 9, 12 and 13 are on no terminal.
INSERT INTO people_term
    (tid, uid)
VALUES
    (1,   1),
    (1,   4),
    (1,   8),
    (1,   10),
    (1,   11),
    (2,   2),
    (2,   3),
    (2,   5),
    (2,   6),
    (3,   2),
    (4,   2);

-- request 1 marks the supervisor.
INSERT INTO admins_people
    (aid, uid, request)
VALUES
    (1,   2,   1),
    (1,   3,   1),
    (1,   4,   1),
    (1,   9,   0),
    (2,   2,   0);

INSERT INTO groups_plan
    (uid, since,  gid)
VALUES
    (1,   200909, 11),
    (2,   201202, 22),
    (3,   201503, 22),
    (4,   201610, 11),
    (5,   201804, 22),
    (6,   201901, 22),
    (7,   202006, 11),
    (8,   202103, 11),
    (9,   201802, 11),
    (11,  201905, 11);

INSERT INTO groups_month
    (uid, month,  gid)
VALUES
    (1,   202402, 11),
    (1,   202403, 11),
    (3,   202402, 22),
    (3,   202403, 22);

-- Of the first person's days one is closed, one is the first that can be opened, one was entered by
-- hand. The sixth person's day is not calculated.
INSERT INTO atten
    (uid, `date`,                       `lock`, man, ok)
VALUES
    (1,   UNIX_TIMESTAMP('2024-01-31'), 1,      0,   1),
    (1,   UNIX_TIMESTAMP('2024-02-01'), 0,      0,   1),
    (1,   UNIX_TIMESTAMP('2024-03-15'), 0,      1,   1),
    (3,   UNIX_TIMESTAMP('2024-02-15'), 0,      0,   1),
    (3,   UNIX_TIMESTAMP('2024-03-15'), 0,      0,   1),
    (5,   UNIX_TIMESTAMP('2024-01-31'), 0,      0,   1),
    (5,   UNIX_TIMESTAMP('2024-03-15'), 0,      0,   1),
    (6,   UNIX_TIMESTAMP('2024-03-14'), 0,      0,   -1),
    (9,   UNIX_TIMESTAMP('2022-06-15'), 1,      0,   1);

-- Leave, in hundredths of a day: type 1 entitlement, 2 taken, 3 correction. What was taken in March
-- counts towards no balance yet.
INSERT INTO funds_move
    (uid, fid, type, day,                          month,  value)
VALUES
    (1,   2,   1,    UNIX_TIMESTAMP('2024-01-01'), 202401, 2500),
    (1,   2,   2,    UNIX_TIMESTAMP('2024-02-08'), 202402, -500),
    (2,   2,   1,    UNIX_TIMESTAMP('2024-01-01'), 202401, 2500),
    (2,   2,   3,    UNIX_TIMESTAMP('2024-02-15'), 202402, -50),
    (3,   2,   1,    UNIX_TIMESTAMP('2024-01-01'), 202401, 2500),
    (3,   2,   2,    UNIX_TIMESTAMP('2024-02-09'), 202402, -200),
    (3,   2,   3,    UNIX_TIMESTAMP('2024-02-20'), 202402, 150),
    (3,   2,   2,    UNIX_TIMESTAMP('2024-03-05'), 202403, -100),
    (4,   2,   1,    UNIX_TIMESTAMP('2024-01-01'), 202401, 2000),
    (5,   2,   1,    UNIX_TIMESTAMP('2024-01-01'), 202401, 2000),
    (6,   2,   1,    UNIX_TIMESTAMP('2024-01-01'), 202401, 1000),
    (8,   2,   1,    UNIX_TIMESTAMP('2024-01-01'), 202401, 2000),
    (10,  2,   1,    UNIX_TIMESTAMP('2024-01-01'), 202401, 2000),
    (11,  2,   1,    UNIX_TIMESTAMP('2024-01-01'), 202401, 2000);
