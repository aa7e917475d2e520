-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- Branches, the groups that carry their calendars, their people and their sections.

CREATE TABLE branches (
    bid     INT UNSIGNED      NOT NULL AUTO_INCREMENT,
    number  INT UNSIGNED      DEFAULT NULL,             -- cost centre; need not be unique
    name    VARCHAR(128)      NOT NULL DEFAULT '',
    address VARCHAR(255)      NOT NULL DEFAULT '',
    note    VARCHAR(1024)     NOT NULL DEFAULT '',
    wh1b    SMALLINT UNSIGNED DEFAULT NULL,             -- working hours, Monday to Sunday, begin
    wh1e    SMALLINT UNSIGNED DEFAULT NULL,             -- and end, in minutes after midnight
    wh2b    SMALLINT UNSIGNED DEFAULT NULL,
    wh2e    SMALLINT UNSIGNED DEFAULT NULL,
    wh3b    SMALLINT UNSIGNED DEFAULT NULL,
    wh3e    SMALLINT UNSIGNED DEFAULT NULL,
    wh4b    SMALLINT UNSIGNED DEFAULT NULL,
    wh4e    SMALLINT UNSIGNED DEFAULT NULL,
    wh5b    SMALLINT UNSIGNED DEFAULT NULL,
    wh5e    SMALLINT UNSIGNED DEFAULT NULL,
    wh6b    SMALLINT UNSIGNED DEFAULT NULL,
    wh6e    SMALLINT UNSIGNED DEFAULT NULL,
    wh7b    SMALLINT UNSIGNED DEFAULT NULL,
    wh7e    SMALLINT UNSIGNED DEFAULT NULL,
    mgid    INT UNSIGNED      DEFAULT NULL,             -- master group
    PRIMARY KEY (bid),
    KEY (number)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE mastergroups (
    mgid INT UNSIGNED NOT NULL AUTO_INCREMENT,
    name VARCHAR(128) NOT NULL DEFAULT '',
    PRIMARY KEY (mgid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE groups (
    gid        INT UNSIGNED NOT NULL AUTO_INCREMENT,
    parent     INT UNSIGNED DEFAULT NULL,               -- mgid of the master group
    calendarID INT UNSIGNED NOT NULL DEFAULT 0,
    name       VARCHAR(128) NOT NULL DEFAULT '',
    PRIMARY KEY (gid),
    KEY (parent, calendarID)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE brape (
    bid   INT UNSIGNED NOT NULL,
    uid   INT UNSIGNED NOT NULL,
    since BIGINT       NOT NULL DEFAULT 0,              -- moment of joining
    PRIMARY KEY (bid, uid),
    KEY (uid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE sections (
    secid INT UNSIGNED NOT NULL AUTO_INCREMENT,
    name  VARCHAR(128) NOT NULL DEFAULT '',
    PRIMARY KEY (secid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE sec_branch (
    bid   INT UNSIGNED NOT NULL,
    secid INT UNSIGNED NOT NULL,
    PRIMARY KEY (bid, secid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE bas (
    bid    INT UNSIGNED NOT NULL,
    attrid INT UNSIGNED NOT NULL,
    secid  INT UNSIGNED NOT NULL,
    PRIMARY KEY (bid, attrid, secid),
    KEY (bid, secid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;
