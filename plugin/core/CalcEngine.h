// FileMaker's calculation engine. Its header needs QuadChar to be declared first.
#pragma once

#include <FMWrapper/FMXTypes.h>

#include <FMWrapper/FMXCalcEngine.h>
