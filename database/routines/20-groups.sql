-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- The group of a person in a month.

-- The latest plan that has begun by the month (yyyyMM), otherwise the default group, which may be
-- NULL. It runs with the rights of its definer, so that a caller needs EXECUTE alone.
CREATE FUNCTION getCurrentGid(personId INT UNSIGNED, inMonth INT UNSIGNED, defaultGid INT UNSIGNED)
    RETURNS INT UNSIGNED
    READS SQL DATA SQL SECURITY DEFINER
    RETURN COALESCE((SELECT gid FROM groups_plan WHERE uid = personId AND since <= inMonth
                     ORDER BY since DESC LIMIT 1),
                    defaultGid);
