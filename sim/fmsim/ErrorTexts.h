// FileMaker's error numbers in words.
#pragma once

#include <string>

/// "error 1204: a number, text, field name or \"(\" is expected here"; unknown numbers stand alone.
std::string ErrorText(int error);
