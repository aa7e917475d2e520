-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- Attendance terminals, what each of them holds, and the queue of changes for them.

-- Kinds of things, one bit each, alike in term.flags, term.syn and term_sync.flags:
-- 1 intervals, 2 persons, 64 time zones, 256 colour groups.

CREATE TABLE term (
    tid    INT UNSIGNED     NOT NULL AUTO_INCREMENT,
    name   VARCHAR(128)     NOT NULL DEFAULT '',
    bid    INT UNSIGNED     DEFAULT NULL,               -- its one branch
    status TINYINT UNSIGNED NOT NULL DEFAULT 1,         -- 0 off, 1 in service, above 1 set up
    flags  INT UNSIGNED     NOT NULL DEFAULT 0,         -- kinds that it takes
    syn    INT UNSIGNED     NOT NULL DEFAULT 0,         -- kinds that it has waiting
    PRIMARY KEY (tid),
    KEY (bid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE people_term (
    tid INT UNSIGNED NOT NULL,
    uid INT UNSIGNED NOT NULL,
    PRIMARY KEY (tid, uid),
    KEY (uid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE inters (
    iid  INT UNSIGNED NOT NULL AUTO_INCREMENT,
    name VARCHAR(128) NOT NULL DEFAULT '',
    PRIMARY KEY (iid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE inters_term (
    tid INT UNSIGNED NOT NULL,
    iid INT UNSIGNED NOT NULL,
    PRIMARY KEY (tid, iid),
    KEY (iid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

-- A person in a time zone on a terminal.
CREATE TABLE pzt (
    zid INT UNSIGNED NOT NULL,
    tid INT UNSIGNED NOT NULL,
    uid INT UNSIGNED NOT NULL,
    PRIMARY KEY (zid, tid, uid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE term_sync (
    id       INT UNSIGNED NOT NULL AUTO_INCREMENT,
    tid      INT UNSIGNED NOT NULL,
    type     CHAR(1)      NOT NULL,                     -- I added, D deleted, U updated
    ref      VARCHAR(32)  NOT NULL,                     -- table or object that changed
    ref_col  VARCHAR(32)  NOT NULL,                     -- its key column
    ref_id   INT UNSIGNED NOT NULL,
    ref_col2 VARCHAR(32)  DEFAULT NULL,                 -- second key, of persons in time zones
    ref_id2  INT UNSIGNED DEFAULT NULL,
    created  BIGINT       NOT NULL,
    flags    INT UNSIGNED NOT NULL,                     -- kind
    PRIMARY KEY (id),
    KEY (tid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;
