-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- Funds of time, such as leave, and their moves.

CREATE TABLE funds (
    fid  INT UNSIGNED     NOT NULL AUTO_INCREMENT,
    iid  INT UNSIGNED     DEFAULT NULL,                 -- interval that draws on it; 3 leave
    unit TINYINT UNSIGNED NOT NULL DEFAULT 1,           -- 1 hours, 2 days
    name VARCHAR(128)     NOT NULL DEFAULT '',
    PRIMARY KEY (fid),
    KEY (iid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

-- One move of a type a day, fund and person. The order of the key serves the sums, which name
-- person and fund and a range of days.
CREATE TABLE funds_move (
    uid   INT UNSIGNED     NOT NULL,
    fid   INT UNSIGNED     NOT NULL,
    day   BIGINT           NOT NULL,
    type  TINYINT UNSIGNED NOT NULL,                    -- 1 entitlement, 2 taken, 3 correction
    month INT UNSIGNED     NOT NULL,                    -- yyyyMM of the day
    value INT              NOT NULL,                    -- signed, hundredths of the unit
    PRIMARY KEY (uid, fid, day, type)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;
