// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a run has done, in numbers.
#pragma once

/// The figures of the summary.
struct RunFigures
{
    int passes = 0; ///< that came to their end
    int records = 0;
    int added = 0;
    int updated = 0;
    int warnings = 0; ///< shown
    int errors = 0; ///< shown
    int lastPassErrors = 0; ///< of errors, those shown during the pass that ended last
    int waiting = 0; ///< records, at the end of the last pass
    int dropped = 0; ///< lines of exports, but for headers and blank ones
    int missingExports = 0; ///< passes that found no export
    int commandFailures = 0; ///< of the export command
};
