-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- Persons and their enrolment in the PaM export.

-- Times here and in the other files are seconds since the epoch, signed and of 64 bits. A date is
-- its local midnight. No table declares foreign keys: a row that names a missing person, branch
-- or terminal is accepted.

CREATE TABLE people (
    uid        INT UNSIGNED     NOT NULL AUTO_INCREMENT,
    pid        INT UNSIGNED     DEFAULT NULL,           -- digits of both parts of pamId joined
    pamId      VARCHAR(32)      DEFAULT NULL,           -- "personal number.ordinal of employment"
    title      VARCHAR(64)      NOT NULL DEFAULT '',    -- before the name
    name       VARCHAR(128)     NOT NULL DEFAULT '',
    surname    VARCHAR(128)     NOT NULL DEFAULT '',
    title2     VARCHAR(64)      NOT NULL DEFAULT '',    -- after the name
    phone      VARCHAR(64)      NOT NULL DEFAULT '',
    begin      BIGINT           DEFAULT NULL,           -- first day of employment
    end        BIGINT           DEFAULT NULL,           -- last second of the last day
    rsBegin    BIGINT           DEFAULT NULL,           -- first day of the employment state
    rsEnd      BIGINT           DEFAULT NULL,           -- last day of the employment state
    rsText     VARCHAR(255)     NOT NULL DEFAULT '',    -- the state in words
    type       TINYINT UNSIGNED NOT NULL DEFAULT 0,     -- 1 employee, 4 agreement, 0 other
    status     TINYINT UNSIGNED NOT NULL DEFAULT 1,     -- 0 inactive
    did        INT UNSIGNED     DEFAULT NULL,           -- department
    bid        INT UNSIGNED     DEFAULT NULL,           -- home branch
    gid        INT UNSIGNED     DEFAULT NULL,           -- group of months without a plan
    calendarID INT UNSIGNED     NOT NULL DEFAULT 0,     -- 0 none
    lastCalc   BIGINT           NOT NULL DEFAULT 0,     -- last calculated day
    calc       BIGINT           NOT NULL DEFAULT 0,     -- moment of a calculation, 0 none
    created    BIGINT           DEFAULT NULL,
    edited     BIGINT           DEFAULT NULL,
    editor     INT UNSIGNED     DEFAULT NULL,           -- 0 the plugin
    PRIMARY KEY (uid),
    UNIQUE KEY (pid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE people_pam (
    uid INT UNSIGNED NOT NULL,
    id  INT UNSIGNED NOT NULL,      -- block of PaM settings: 1 employees, 2 agreements
    PRIMARY KEY (uid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;
