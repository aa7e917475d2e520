#!/usr/bin/env perl
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# literals.pl CALL FILE...: the text that each call to CALL (a pattern) in the files begins with, one a
# line, as far as its own first line goes.
use strict;
use warnings;

my $call = shift;
undef $/;
while (my $source = <>) {
    while ($source =~ /(?:$call)\((?:\)\s*<<)?\s*((?:"(?:[^"\\]|\\.)*"\s*)+)/g) {
        my $text = join '', $1 =~ /"((?:[^"\\]|\\.)*)"/g;
        $text =~ s/\\n.*//s;
        print "$text\n";
    }
}
