-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- Attendance rows, and the groups of a person as planned and month by month.

CREATE TABLE atten (
    uid    INT UNSIGNED     NOT NULL,
    `date` BIGINT           NOT NULL,                   -- the day
    `lock` TINYINT UNSIGNED NOT NULL DEFAULT 0,         -- 1 closed
    man    TINYINT UNSIGNED NOT NULL DEFAULT 0,         -- 1 entered by hand
    ok     TINYINT          NOT NULL DEFAULT 0,         -- below 0 not yet calculated
    PRIMARY KEY (uid, `date`),
    KEY (uid, ok, `lock`)                               -- open rows, asked for every employee
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

-- One plan a person and first month, so that a new group for the same month replaces the old one.
CREATE TABLE groups_plan (
    uid   INT UNSIGNED NOT NULL,
    since INT UNSIGNED NOT NULL,                        -- first month, yyyyMM
    gid   INT UNSIGNED NOT NULL,
    PRIMARY KEY (uid, since)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE groups_month (
    uid   INT UNSIGNED NOT NULL,
    month INT UNSIGNED NOT NULL,                        -- yyyyMM
    gid   INT UNSIGNED NOT NULL,
    PRIMARY KEY (uid, month)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;
