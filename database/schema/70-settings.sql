-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- Settings variables by name.

CREATE TABLE vars (
    name  VARCHAR(190) NOT NULL,
    value MEDIUMTEXT   DEFAULT NULL,                    -- can hold a list of all persons
    PRIMARY KEY (name)
) ENGINE = InnoDB DEFAULT CHARSET = utf8mb4 COLLATE = utf8mb4_unicode_ci;
