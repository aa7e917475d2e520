-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- Administrators, their branches and their people.

CREATE TABLE admins (
    aid            INT UNSIGNED NOT NULL AUTO_INCREMENT,
    personalNumber INT UNSIGNED DEFAULT NULL,           -- joins a supervisor to the HR export
    login          VARCHAR(64)  NOT NULL DEFAULT '',
    name           VARCHAR(128) NOT NULL DEFAULT '',
    PRIMARY KEY (aid),
    KEY (personalNumber)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE bradm (
    bid INT UNSIGNED NOT NULL,
    aid INT UNSIGNED NOT NULL,
    PRIMARY KEY (bid, aid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;

CREATE TABLE admins_people (
    aid     INT UNSIGNED     NOT NULL,
    uid     INT UNSIGNED     NOT NULL,
    request TINYINT UNSIGNED NOT NULL DEFAULT 0,        -- 1 the person's supervisor
    PRIMARY KEY (aid, uid),
    KEY (uid)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;
