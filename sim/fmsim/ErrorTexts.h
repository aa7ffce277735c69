// FileMaker's error numbers in words.
#pragma once

#include <string>

/// "error 1204: a number, text, field name or \"(\" is expected here"; only "error 9999" for an unknown number.
std::string ErrorText(int error);
