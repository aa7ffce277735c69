// A small design with everything whose listing has a rule.
#pragma once

#include "sim/solution/Solution.h"

sim::Solution SampleSolution();
