// Reading lines: from a terminal with editing, history and completion, or from a pipe or file.
#pragma once

#include "fmsim/Session.h"

/// Runs the prompt until the user ends it. Idle messages keep flowing while it waits for input. Ctrl-C ends what is
/// being typed or carried out.
void RunPrompt(Session& session);

/// Carries out the lines of standard input until its end. Idle messages flow while it waits for more. Any signal that
/// is caught ends it.
void RunLines(Session& session);
