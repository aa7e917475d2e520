-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- Days and months of a moment, in local time, which is the time zone of the session.

-- Both are declared deterministic although they look at the session's time zone: it does not
-- change within a statement, and only then can an index serve a comparison with their result.
-- Both give NULL outside the range of TIMESTAMP (1970 to 2038).

-- Local midnight of the day of ts, seconds since the epoch. It goes through the date, not through
-- 86400 seconds, so that days of 23 and 25 hours come out right.
CREATE FUNCTION midnightFromTs(ts BIGINT) RETURNS BIGINT
    DETERMINISTIC NO SQL SQL SECURITY INVOKER
    RETURN UNIX_TIMESTAMP(DATE(FROM_UNIXTIME(ts)));

-- Local month of ts as yyyyMM, such as 202310.
CREATE FUNCTION monthFromTimestamp(ts BIGINT) RETURNS INT UNSIGNED
    DETERMINISTIC NO SQL SQL SECURITY INVOKER
    RETURN EXTRACT(YEAR_MONTH FROM FROM_UNIXTIME(ts));
