#include "fmsim/ErrorTexts.h"

namespace {

struct Entry {
  int error;
  const char* text;
};

constexpr Entry kTexts[] = {
    {1, "cancelled"},
    {9, "the account does not have enough privileges"},
    {10, "the requested data is missing"},
    {14, "a value is out of range"},
    {15, "division by zero"},
    {100, "the file is missing"},
    {101, "the record is missing"},
    {102, "the field is missing"},
    {103, "the relationship is missing"},
    {104, "the script is missing"},
    {105, "the layout is missing"},
    {106, "the table is missing"},
    {113, "the function is missing"},
    {800, "the file cannot be created"},
    {825, "the file is protected and does not authorise this plug-in (extended privilege fmplugin)"},
    {1200, "the calculation failed"},
    {1201, "there are too few parameters"},
    {1202, "there are too many parameters"},
    {1203, "the calculation ends too early"},
    {1204, "a number, text, field name or \"(\" is expected here"},
    {1205, "a comment is not closed with \"*/\""},
    {1206, "a text is not closed with a quotation mark"},
    {1207, "a parenthesis is missing"},
    {1208, "an operator is missing, the function does not exist, or \"(\" is not expected here"},
    {1209, "a name is missing"},
    {1211, "a list is not allowed here"},
    {1212, "an operator is expected here"},
    {1213, "this variable is already defined"},
    {1214, "a field is required here"},
    {1215, "this is not a parameter of Get"},
    {1224, "the function does not exist"},
    {1225, "the function is not supported here"},
    {1825, "the script that the plug-in wants to start does not exist"},
};

}  // namespace

std::string ErrorText(int error) {
  std::string text = "error " + std::to_string(error);
  for (const auto& entry : kTexts) {
    if (entry.error == error) text += std::string(": ") + entry.text;
  }
  return text;
}
