// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Holds a plugin between two passes.
#pragma once

#include <atomic>

/// Lets the plugin's thread wait between two passes until somebody has prepared what the next one
/// is to meet: until a line comes on standard input.
///
/// Owned by the run; made and told of passes on its thread.
class PassHold
{
public:
    /// Says on standard output that the pass is over, and that the plugin waits.
    void tell(int pass) const;
    /// For the plugin's thread: returns with the line (true), at the end of the input, or when the
    /// plugin is to go.
    bool waitForLine();
    /// Nobody has to wait any more. From any thread.
    void release() { isReleased = true; }

private:
    std::atomic<bool> isReleased {false};
};
