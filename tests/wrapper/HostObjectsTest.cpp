// Host objects as plug-ins use them, and what the ledger notices of their misuse.
#include <FMWrapper/FMXCalcEngine.h>
#include <gtest/gtest.h>

#include <tuple>

#include "sim/wrapper/Host.h"

namespace {

TEST(HostText, MeasuresInUtf16UnitsAndConvertsWholeCharactersOnly) {
  const fmx::TextUniquePtr text;
  text->Assign("aß€🎻z", fmx::Text::kEncoding_UTF8);
  EXPECT_EQ(text->GetSize(), 6u);
  const std::tuple<fmx::uint32, fmx::uint32, fmx::uint32, std::string> cases[] = {
      {32, 0, 6, "aß€🎻z"}, {32, 0, fmx::Text::kSize_End, "aß€🎻z"},
      {32, 1, 2, "ß€"},    {32, 5, 9, "z"},
      {32, 7, 1, ""},      {4, 0, 6, "aß"},
      {6, 0, 6, "aß"},     {7, 0, 6, "aß€"},
      {1, 0, 6, ""}};
  for (const auto& [capacity, position, units, expected] : cases) {
    std::string buffer(40, '~');
    text->GetBytes(buffer.data(), capacity, position, units, fmx::Text::kEncoding_UTF8);
    EXPECT_EQ(buffer.substr(0, expected.size() + 1), expected + '\0');
    EXPECT_EQ(buffer[capacity], '~');
    buffer.assign(40, '~');
    const auto count = text->GetBytesEx(buffer.data(), capacity - 1, position, units, fmx::Text::kEncoding_UTF8);
    EXPECT_EQ(buffer.substr(0, count + 1), expected + '~') << "GetBytesEx writes no terminator";
  }
}

TEST(Ledger, NamesMisuseAndSurvivesIt) {
  fmx::_fmxcpt x;
  {
    const fmhost::Scope plugin("Twice.fmx");
    fmx::Text* text = fmx::FM_Text_Constructor1(x);
    fmx::FM_Text_Delete(text, x);
    fmx::FM_Text_Delete(text, x);
    fmx::_fmxcpt afterDeath;
    EXPECT_EQ(fmx::FM_Text_GetSize(text, afterDeath), 0u);
    EXPECT_EQ(afterDeath.m_code, fmx::_fmxcpt::kOther);
    const fmx::DataUniquePtr data;
    fmx::FM_Text_Delete(const_cast<fmx::Text*>(&data->GetAsText()), x);
    EXPECT_EQ(data->GetAsText().GetSize(), 0u) << "the value's own text is still there";
    fmx::_fmxcpt wrongKind;
    fmx::FM_Text_GetSize(data.get(), wrongKind);
  }
  EXPECT_EQ(fmhost::Violations(),
            (std::vector<std::string>{"Twice.fmx: FM_Text_Delete: not a live Text (deleted twice?)",
                                      "Twice.fmx: FM_Text_GetSize: not a live Text",
                                      "Twice.fmx: FM_Text_Delete: a Text that belongs to another object",
                                      "Twice.fmx: FM_Text_GetSize: not a live Text"}));
  fmhost::ForgetViolations();
}

}  // namespace
