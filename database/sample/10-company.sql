-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- A small company without its people: branches, groups, terminals, administrators, funds, settings.

SET NAMES utf8mb4;

INSERT INTO mastergroups
    (mgid, name)
VALUES
    (1,    'Kancelárie'),
    (2,    'Prevádzky'),
    (3,    'Predajne');

INSERT INTO groups
    (gid, parent, calendarID, name)
VALUES
    (11,  1,      1,          'Kancelárie – pružný čas'),
    (21,  2,      1,          'Prevádzky – denná zmena'),
    (22,  2,      2,          'Prevádzky – dve zmeny'),
    (23,  2,      3,          'Prevádzky – nepretržitá'),
    (31,  3,      1,          'Predajne – denná zmena');

-- The last branch has neither a number nor groups: no line of the HR export can name it.
INSERT INTO branches
    (bid, number, mgid, name,                  address,                     note,
     wh1b, wh1e, wh2b, wh2e, wh3b, wh3e, wh4b, wh4e, wh5b, wh5e, wh6b, wh6e, wh7b, wh7e)
VALUES
    (1,   100,    1,    'Riaditeľstvo',        'Námestie 1, Žilina',        '',
     480,  960,  480,  960,  480,  960,  480,  960,  480,  900,  NULL, NULL, NULL, NULL),
    (2,   200,    2,    'Výroba Žilina',       'Továrenská 12, Žilina',     'haly A a B',
     360,  1320, 360,  1320, 360,  1320, 360,  1320, 360,  1320, 360,  840,  NULL, NULL),
    (3,   210,    2,    'Výroba Brno',         'Tovární 7, Brno',           '',
     0,    1440, 0,    1440, 0,    1440, 0,    1440, 0,    1440, 0,    1440, 0,    1440),
    (4,   300,    2,    'Sklad Martin',        'Skladová 3, Martin',        '',
     360,  840,  360,  840,  360,  840,  360,  840,  360,  840,  NULL, NULL, NULL, NULL),
    (5,   400,    3,    'Predajňa Ostrava',    'Hlavní třída 25, Ostrava',  '',
     540,  1080, 540,  1080, 540,  1080, 540,  1080, 540,  1080, 540,  720,  NULL, NULL),
    (6,   NULL,   NULL, 'Externí pracovníci',  '',                          'mimo HR',
     NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL);

INSERT INTO sections
    (secid, name)
VALUES
    (1,     'Vedenie'),
    (2,     'Lisovňa'),
    (3,     'Montáž'),
    (4,     'Expedícia');

INSERT INTO sec_branch
    (bid, secid)
VALUES
    (1,   1),
    (2,   2),
    (2,   3),
    (3,   3),
    (4,   4);

INSERT INTO bas
    (bid, attrid, secid)
VALUES
    (2,   1,      2),
    (2,   2,      2),
    (2,   1,      3),
    (4,   1,      4);

-- One terminal is off, one is being set up (status 2), one takes no persons (bit 2), one takes two
-- kinds only, one belongs to no branch.
INSERT INTO term
    (tid, bid,  status, flags, name)
VALUES
    (1,   1,    1,      323,   'Vrátnica'),
    (2,   2,    1,      323,   'Hala A'),
    (3,   2,    1,      66,    'Hala B'),
    (4,   3,    1,      323,   'Brno – vchod'),
    (5,   3,    0,      323,   'Brno – jedáleň'),
    (6,   4,    1,      65,    'Sklad – závora'),
    (7,   5,    2,      67,    'Predajňa'),
    (8,   NULL, 1,      2,     'Náhradný terminál');

INSERT INTO inters
    (iid, name)
VALUES
    (1,   'Práca'),
    (2,   'Obed'),
    (3,   'Dovolenka'),
    (4,   'Lekár');

INSERT INTO inters_term
    (tid, iid)
VALUES
    (1,   1),
    (1,   2),
    (1,   4),
    (2,   1),
    (2,   2),
    (4,   1),
    (5,   2),
    (6,   1);

-- Personal numbers are those of people in the other file; the last administrator is no employee.
INSERT INTO admins
    (aid, personalNumber, login,      name)
VALUES
    (1,   1001,           'krizik',   'Ľubomír Krížik'),
    (2,   1002,           'stastna',  'Žofia Šťastná'),
    (3,   1003,           'dvoracek', 'Jiří Dvořáček'),
    (4,   1008,           'novackova', 'Kateřina Nováčková'),
    (5,   NULL,           'spravca',  'Správca systému');

INSERT INTO bradm
    (bid, aid)
VALUES
    (1,   1),
    (2,   2),
    (3,   3),
    (4,   2),
    (5,   4);

-- Leave is counted in days; its twin in hours must not be taken for it.
INSERT INTO funds
    (fid, iid, unit, name)
VALUES
    (1,   1,   1,    'Nadčasy'),
    (2,   3,   2,    'Dovolenka'),
    (3,   3,   1,    'Dovolenka v hodinách');

INSERT INTO vars
    (name,                        value)
VALUES
    ('OQS.THRWorker.forceSync',   '0'),
    ('exportPam.1.active',        '1'),
    ('exportPam.1.selPeople',     ''),
    ('colorGroups',               '1:3c78d8,2:6aa84f');
