// The system's own, and what only macOS has.
#pragma once

#include_next <fcntl.h>

#define F_SETNOSIGPIPE 73
