-- SPDX-FileCopyrightText: 2026 The TalvenHR authors
-- SPDX-License-Identifier: MIT
-- Marking of terminals.

-- Marks those terminals of a person that are in service and take the kind of thing (one bit of
-- term.flags) as having something of that kind to fetch. It runs with the rights of its definer,
-- so that a caller needs EXECUTE alone.
CREATE PROCEDURE updateTermsSync(IN personId INT UNSIGNED, IN kind INT UNSIGNED)
    MODIFIES SQL DATA SQL SECURITY DEFINER
    UPDATE people_term JOIN term USING (tid)
       SET term.syn = term.syn | kind
     WHERE people_term.uid = personId AND term.status = 1 AND term.flags & kind;
