// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A story for machines, "talvenhr.explain/1"; docs/explain.md describes it.
#pragma once

#include "host/explain/story.h"
#include "host/report/jsonreport.h"

/// Writes facts and story as one object in one line with a line end.
void writeStory(const ExplainFacts &facts, const Story &story, const ByteSink &sink);
