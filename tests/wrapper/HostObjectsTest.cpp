// Host objects as plug-ins use them, and what the ledger notices of their misuse.
#include <FMWrapper/FMXCalcEngine.h>
#include <FMWrapper/FMXFixPt.h>
#include <gtest/gtest.h>

#include <tuple>

#include "sim/calc/Unicode.h"
#include "sim/wrapper/Host.h"

namespace {

using Lines = std::vector<std::string>;

fmx::TextUniquePtr TextOf(const char* utf8) {
  fmx::TextUniquePtr text;
  text->Assign(utf8, fmx::Text::kEncoding_UTF8);
  return text;
}

std::string Contents(const fmx::Text& text) { return calc::ToUtf8(fmhost::TextOf(text)); }

TEST(HostText, MeasuresInUtf16UnitsAndConvertsWholeCharactersOnly) {
  const auto text = TextOf("aß€🎻z");
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

TEST(HostText, EditsAndSearches) {
  fmx::_fmxcpt x;
  const auto text = TextOf("Script Step");
  const auto step = TextOf("STEP");
  EXPECT_EQ(fmx::FM_Text_Find(text.get(), *step, 0, x), fmx::Text::kSize_Invalid);
  EXPECT_EQ(fmx::FM_Text_FindIgnoringCase(text.get(), *step, 0, x), 7u);
  EXPECT_EQ(fmx::FM_Text_FindIgnoringCase(text.get(), *step, 8, x), fmx::Text::kSize_Invalid);
  EXPECT_EQ(fmx::FM_Text_FindPrevIgnoringCase(text.get(), *TextOf("s"), 6, x), 0u);
  fmx::FM_Text_InsertText(text.get(), *step, 7, x);
  EXPECT_EQ(Contents(*text), "Script STEPStep");
  fmx::FM_Text_InsertText(text.get(), *text, 99, x);  // into itself
  fmx::FM_Text_DeleteText(text.get(), 15, 11, x);
  EXPECT_EQ(Contents(*text),
            "Script STEPStep"
            "Step");
  text->SetText(*text, 7, 4);
  text->AppendText(*text);
  EXPECT_EQ(Contents(*text), "STEPSTEP");
  fmx::FM_Text_Lowercase(text.get(), x);
  EXPECT_TRUE(fmx::FM_Text_operatorEQ(text.get(), *TextOf("stepstep"), x));
  EXPECT_TRUE(fmx::FM_Text_operatorLT(step.get(), *text, x));
  fmx::FM_Text_AssignWide(text.get(), L"🎻", x);
  EXPECT_EQ(text->GetSize(), 2u);
  x.Check();
}

TEST(HostData, ConvertsBetweenNativeTypes) {
  fmx::_fmxcpt x;
  const fmx::LocaleUniquePtr locale(fmx::Locale::kSystem);
  const fmx::DataUniquePtr data;
  data->SetAsText(*TextOf("12abc.50"), *locale);
  EXPECT_EQ(data->GetAsNumber().AsFloat(), 12.5);
  EXPECT_TRUE(data->GetAsBoolean());
  fmx::FM_Data_ConvertData(data.get(), fmx::Data::kDTNumber, x);
  EXPECT_EQ(data->GetNativeType(), fmx::Data::kDTNumber);
  EXPECT_EQ(Contents(data->GetAsText()), "12.5");
  fmx::FM_Data_ConvertData(data.get(), fmx::Data::kDTBoolean, x);
  EXPECT_EQ(Contents(data->GetAsText()), "1");
  fmx::FixPtUniquePtr number(-7);
  number->AssignInt64(123456789012345678);
  data->SetAsNumber(*number);
  EXPECT_EQ(Contents(data->GetAsText()), "123456789012345678");
  fmx::FM_Data_Clear(data.get(), fmx::Data::kDTText, x);
  EXPECT_TRUE(data->IsEmpty());
}

TEST(HostDataVect, OwnsCopiesOfItsValues) {
  const fmx::DataVectUniquePtr list;
  {
    const fmx::DataUniquePtr data;
    fmhost::SetValue(*data, calc::Value::OfNumber(42));
    list->PushBack(*data);
  }
  ASSERT_EQ(list->Size(), 1u);
  EXPECT_EQ(Contents(list->AtAsText(0)), "42");
  EXPECT_EQ(list->At(0).GetNativeType(), fmx::Data::kDTNumber);
  EXPECT_THROW(list->At(1), std::exception);
}

TEST(HostQuadChar, ComparesAndConvertsAsMacType) {
  fmx::_fmxcpt x;
  const fmx::QuadCharUniquePtr vrnx('V', 'r', 'n', 'x');
  const fmx::QuadCharUniquePtr other;
  EXPECT_EQ(fmx::FM_QuadChar_GetMacType(vrnx.get(), x), 0x56726E78u);
  fmx::FM_QuadChar_SetMacType(other.get(), 0x56726E78, x);
  EXPECT_TRUE(*vrnx == *other);
  fmx::FM_QuadChar_SetMacType(other.get(), 0x56726E79, x);
  EXPECT_TRUE(*vrnx < *other);
  EXPECT_EQ((*other)[3], 'y');
  EXPECT_THROW((*other)[4], std::exception);
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
  EXPECT_EQ(fmhost::Violations(), (Lines{"Twice.fmx: FM_Text_Delete: not a live Text (deleted twice?)",
                                         "Twice.fmx: FM_Text_GetSize: not a live Text",
                                         "Twice.fmx: FM_Text_Delete: a Text that belongs to another object",
                                         "Twice.fmx: FM_Text_GetSize: not a live Text"}));
  fmhost::ForgetViolations();
}

TEST(InjectedExceptions, HitOneCallAndGoAway) {
  fmhost::InjectException("FM_Text_Assign", fmx::_fmxcpt::kBadAlloc, 1);
  EXPECT_NO_THROW(TextOf("first"));
  EXPECT_THROW(TextOf("second"), std::bad_alloc);
  EXPECT_NO_THROW(TextOf("third"));
}

}  // namespace
