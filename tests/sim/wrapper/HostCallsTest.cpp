// The host calls that this plug-in does not make: one table for each class.
#include <FMWrapper/FMXTypes.h>

#include <FMWrapper/FMXBinaryData.h>
#include <FMWrapper/FMXCalcEngine.h>
#include <FMWrapper/FMXData.h>
#include <FMWrapper/FMXDateTime.h>
#include <FMWrapper/FMXFixPt.h>
#include <FMWrapper/FMXText.h>
#include <FMWrapper/FMXTextStyle.h>

#include <sstream>
#include <utility>

#include "support/ScriptedHost.h"

namespace {

using namespace fmx;

template <class Object>
using Owned = std::unique_ptr<Object>;

_fmxcpt x;

// What calls answered, joined by spaces, or "raised". In braces they run from left to right.
class Say {
 public:
  template <class... Answers>
  explicit Say(const Answers&... answers) {
    std::ostringstream out;
    ((out << (out.tellp() > 0 ? " " : "") << answers), ...);
    said_ = std::exchange(x, {}).m_code == _fmxcpt::kNoErr ? out.str() : "raised";
  }
  operator std::string() const { return said_; }  // NOLINT: a row holds the text

 private:
  std::string said_;
};

class HostCalls : public testing::Test {
 protected:
  // Calls run in the order of the rows. Those without an answer stand before a comma.
  struct Row {
    std::string said;
    std::string expected;
  };
  static void Check(std::initializer_list<Row> rows) {
    for (const Row* row = rows.begin(); row != rows.end(); ++row) {
      EXPECT_EQ(row->said, row->expected) << "row " << row - rows.begin() + 1;
    }
  }

  static TextUniquePtr NewText(const std::string& text) {
    TextUniquePtr result;
    result->AssignWithLength(text.data(), static_cast<uint32>(text.size()), Text::kEncoding_UTF8);
    return result;
  }
  std::string Bytes(const Text& text, uint32 capacity, int32 encoding) {
    std::string bytes(capacity, '\0');
    bytes.resize(FM_Text_GetBytesEx(&text, bytes.data(), capacity, 0, Text::kSize_End, encoding, x));
    return bytes;
  }
  std::string String(const Text& text) { return Bytes(text, 4 * text.GetSize(), Text::kEncoding_UTF8); }
  Owned<DateTime> Moment(const char* text) {
    return Owned<DateTime>(FM_DateTime_Constructor3(*NewText(text), *locale_, x));
  }
  static QuadCharUniquePtr Type(const char (&name)[5]) { return {name[0], name[1], name[2], name[3]}; }

  ScriptedHost host_;
  const LocaleUniquePtr locale_{Locale::kType_System};
};

TEST_F(HostCalls, CalculateWithNumbers) {
  const FixPtUniquePtr seven(7), two(2), zero(0), exact(1, 3), r(0);
  const Owned<FixPt> one(FM_FixPt_Constructor2(1, *exact, x));
  Check({
      {(FM_FixPt_Add(seven.get(), *two, *r, x), Say{r->AsFloat()}), "9"},
      {(FM_FixPt_Subtract(two.get(), *seven, *r, x), Say{r->AsFloat()}), "-5"},
      {(FM_FixPt_Multiply(seven.get(), *two, *r, x), Say{r->AsFloat()}), "14"},
      {Say{FM_FixPt_Divide(seven.get(), *two, *r, x), r->AsFloat()}, "0 3.5"},
      {Say{FM_FixPt_Divide(one.get(), *seven, *r, x), r->AsFloat()}, "0 0.143"},
      {Say{FM_FixPt_Divide(seven.get(), *zero, *r, x)}, "15"},
      {Say{FM_FixPt_operatorLT(two.get(), *seven, x), FM_FixPt_operatorGE(two.get(), *seven, x)}, "1 0"},
      {(FM_FixPt_AssignFixPt(r.get(), *seven, x), FM_FixPt_Increment(r.get(), 5, x), Say{r->AsLong64()}), "12"},
      {(FM_FixPt_Decrement64(r.get(), 2, x), FM_FixPt_Negate(r.get(), x), Say{r->AsLong64()}), "-10"},
      {(r->AssignInt64(1L << 40), Say{FM_FixPt_AsLong(r.get(), x)}), "2147483647"},
      {(FM_FixPt_SetPrecision(r.get(), 20, x), Say{FM_FixPt_GetPrecision(r.get(), x)}), "20"},
  });
}

TEST_F(HostCalls, ReadAndWriteText) {
  const auto text = NewText("Grüße"), other = NewText("größe"), a = NewText("a"), b = NewText("b");
  Text* t = text.get();
  Check({
      {Say{Bytes(*text, 3, Text::kEncoding_UTF8)}, "Gr"},
      {Say{Bytes(*text, 9, Text::kEncoding_ISO_8859_1)},
       "Gr\xFC\xDF"
       "e"},
      {Say{Bytes(*text, 4, Text::kEncoding_ASCII_Mac)}, "Gr\x9F\xA7"},
      {Say{Bytes(*text, 9, 99)}, "raised"},
      {(FM_Text_Assign(t, "\x83\x65", Text::kEncoding_ShiftJIS_Win, x), Say{String(*text)}), "テ"},
      {Say{Bytes(*text, 1, Text::kEncoding_ShiftJIS_Win).size()}, "0"},
      {(text->SetText(*NewText("Größe größe")), Say{FM_Text_Find(t, *other, 0, x)}), "6"},
      {Say{FM_Text_FindIgnoringCase(t, *other, 0, x), FM_Text_FindPrevIgnoringCase(t, *other, 5, x)}, "0 0"},
      {Say{FM_Text_FindPrev(t, *other, 5, x)}, "4294967295"},
      {(FM_Text_InsertText(t, *b, 6, x), FM_Text_DeleteText(t, 0, 1, x), Say{String(*text)}), "röße bgröße"},
      {(FM_Text_Uppercase(t, x), Say{String(*text)}), "RÖSSE BGRÖSSE"},
      {Say{FM_Text_operatorLT(a.get(), *b, x), FM_Text_operatorEQ(a.get(), *b, x)}, "1 0"},
  });
}

TEST_F(HostCalls, StyleText) {
  const auto text = NewText("abcdef");
  const Owned<CharacterStyle> bold(FM_CharacterStyle_Constructor1(x)), found(FM_CharacterStyle_Constructor1(x));
  const Owned<CharacterStyle::Color> red(FM_Color_Constructor2(255, 0, 1, 128, x)), color(FM_Color_Constructor1(x));
  const DataUniquePtr data;
  Text* t = text.get();
  CharacterStyle* style = found.get();
  const auto boldUnits = [&](const Text& of) {
    std::string units;
    for (uint32 at = 0; at < of.GetSize(); ++at) {
      FM_Text_GetStyle(&of, *found, at, x);
      units += FM_CharacterStyle_IsFaceEnabled(style, CharacterStyle::kFace_Bold, x) ? 'b' : '.';
    }
    return units;
  };
  FM_CharacterStyle_EnableFace(bold.get(), CharacterStyle::kFace_Bold, x);
  Check({
      {Say{FM_Color_operatorEQ(color.get(), *FM_Color_Black(x), x)}, "1"},
      {Say{FM_Color_operatorEQ(color.get(), *FM_Color_White(x), x)}, "0"},
      {Say{FM_Color_GetRedUpsample(red.get(), x), FM_Color_GetAlphaUpsample(red.get(), x)}, "65535 32896"},
      {Say{FM_CharacterStyle_IsAllDisabled(style, x), boldUnits(*text)}, "1 ......"},
      {(FM_Text_SetStyle(t, *bold, 1, 2, x), Say{boldUnits(*text)}), ".bb..."},
      {(FM_Text_InsertText(t, *NewText("--"), 2, x), FM_Text_DeleteText(t, 0, 1, x), Say{boldUnits(*text)}), "b..b..."},
      {Say{data->SetAsText(*text, *locale_), boldUnits(data->GetAsText())}, "0 b..b..."},
      {(FM_Text_RemoveStyle(t, *bold, x), Say{boldUnits(*text)}), "......."},
      {(FM_Text_SetStyle(t, *bold, 0, 9, x), text->Assign("xy", Text::kEncoding_UTF8), Say{boldUnits(*text)}), ".."},
      {(FM_Text_GetStyle(t, *found, 2, x), Say{}), "raised"},
      {(FM_CharacterStyle_SetSize(style, 24, x), Say{FM_CharacterStyle_IsSizeEnabled(style, x)}), "1"},
      {(FM_CharacterStyle_DisableSize(style, x), Say{FM_CharacterStyle_IsSizeEnabled(style, x)}), "0"},
      {(FM_CharacterStyle_SetColor(style, *red, x), Say{FM_CharacterStyle_IsColorEnabled(style, x)}), "1"},
      {Say{FM_Color_operatorEQ(FM_CharacterStyle_GetColor(style, x), *red, x)}, "1"},
  });
}

TEST_F(HostCalls, SplitDatesAndTimes) {
  const auto moment = Moment("2/29/2024 13:02:03.25");
  const FixPtUniquePtr n;
  DateTime* m = moment.get();
  Check({
      {Say{FM_DateTime_GetYear(m, x), FM_DateTime_GetMonth(m, x), FM_DateTime_GetDay(m, x)}, "2024 2 29"},
      {Say{FM_DateTime_GetHour(m, x), FM_DateTime_GetMinute(m, x), FM_DateTime_GetSec(m, x)}, "13 2 3"},
      {(FM_DateTime_GetSeconds(m, *n, x), Say{FM_DateTime_GetUSec(m, x), n->AsFloat()}), "250000 3.25"},
      {Say{FM_DateTime_DayOfYear(m, x), FM_DateTime_DayOfWeek(m, x), FM_DateTime_WeekOfYear(m, x)}, "60 5 9"},
      {(FM_DateTime_SetDaysSinceEpoch(m, 1, x), FM_DateTime_GetSecondsSinceEpoch(m, *n, x), Say{n->AsLong64()}),
       "46923"},
      {Say{FM_DateTime_operatorEQ(m, *Moment("13:02:03.25"), x), FM_DateTime_IsLeapYear(m, x)}, "1 0"},
      {(FM_DateTime_SetDaysSinceEpoch(m, 0, x), Say{}), "raised"},
      {Say{FM_DateTime_SetNormalizedDate1(m, 14, 0, 2023, x), FM_DateTime_GetMonth(m, x), FM_DateTime_GetDay(m, x)},
       "0 1 31"},
      {Say{FM_DateTime_SetNormalizedDate1(m, 1, 1, 0, x)}, "1200"},
      {(FM_DateTime_SetNormalizedTime1(m, 100, 61, 1, 500000, x), FM_DateTime_GetSecsSinceMidnight(m, *n, x),
        Say{n->AsFloat() * 2}),
       "727323"},
      {(FM_DateTime_Now(m, x), Say{FM_DateTime_GetYear(m, x) >= 2024}), "1"},
  });
}

TEST_F(HostCalls, FillContainers) {
  const auto jpeg = Type("JPEG"), found = Type("    ");
  char picture[] = "picture", buffer[10] = {};
  uint32 context = 0;
  short width = 0, height = 0;
  const Owned<BinaryData> file(FM_BinaryData_Constructor4(*NewText("a.txt"), &context, x));
  BinaryData* f = file.get();
  const auto name = NewText("");
  const DataUniquePtr data, back;
  Check({
      {Say{FM_BinaryData_GetSIZEData(f, width, height, x)}, "10"},
      {Say{FM_BinaryData_AddAppend(f, context, 3, picture, x)}, "0"},
      {Say{FM_BinaryData_AddAppend(f, context, 4, picture + 3, x)}, "0"},
      {Say{FM_BinaryData_AddFinish(f, context, x)}, "0"},
      {Say{FM_BinaryData_AddAppend(f, context, 1, picture, x)}, "10"},
      {Say{FM_BinaryData_GetIndex(f, *Type("FILE"), x), FM_BinaryData_GetIndex(f, *jpeg, x)}, "1 -1"},
      {Say{FM_BinaryData_GetData(f, 1, 3, 4, buffer, x), buffer}, "0 ture"},
      {Say{FM_BinaryData_GetData(f, 1, 4, 4, buffer, x)}, "10"},
      {Say{FM_BinaryData_GetSize(f, 9, x)}, "raised"},
      {Say{FM_BinaryData_GetFNAMData(f, *name, x), String(*name)}, "0 file:a.txt"},
      {Say{FM_BinaryData_AddSIZEData(f, 300, -2, x), FM_BinaryData_GetData(f, 2, 0, 4, buffer, x)}, "0 0"},
      {std::string(buffer, 4), "\x01\x2C\xFF\xFE"},
      {(FM_BinaryData_GetSIZEData(f, width, height, x), Say{width, height}), "300 -2"},
      {Say{FM_BinaryData_Add(f, *jpeg, 7, picture, x)}, "0"},
      {Say{FM_BinaryData_GetCount(f, x), FM_BinaryData_GetTotalSize(f, x)}, "4 28"},
      {(FM_BinaryData_GetType(f, 3, *found, x), Say{*found == *jpeg}), "1"},
      {Say{FM_BinaryData_Remove(f, *jpeg, x)}, "1"},
      {Say{FM_BinaryData_Remove(f, *jpeg, x)}, "0"},
      // A value carries it through the host.
      {(FM_Data_SetBinaryData(data.get(), *file, false, x), wrapper::SetValue(*back, wrapper::ValueOf(*data)),
        Say{back->GetNativeType(), String(back->GetAsText())}),
       "6 a.txt"},
      {Say{FM_BinaryData_operatorEQ(f, *FM_Data_GetBinaryData(back.get(), x), x)}, "1"},
  });
}

TEST_F(HostCalls, ConvertValues) {
  const DataUniquePtr data;
  Data* d = data.get();
  const auto name = NewText(""), times = NewText("Times");
  const ExprEnvUniquePtr env;
  CharacterStyle::FontScript script = 0;
  const auto set = [&](const char* text, Data::DataType type) {
    data->SetAsText(*NewText(text), *locale_, type);
    return String(data->GetAsText());
  };
  const auto font = FM_Data_GetFontID(d, *times, CharacterStyle::kGreek, *env, x);
  Check({
      {Say{set("12 pounds", Data::kDTNumber), data->GetNativeType()}, "12 2"},
      {Say{set("soon", Data::kDTTime), FM_Data_IsValid(d, x)}, "? 0"},
      {Say{set("1/31/2024", Data::kDTDate), FM_DateTime_GetDay(FM_Data_GetAsDate(d, x), x)}, "1/31/2024 31"},
      {(FM_Data_ConvertData(d, Data::kDTNumber, x), Say{String(data->GetAsText())}), "738916"},
      {(FM_Data_SetAsTimeStamp(d, *Moment("1/2/1901 0:00:05"), Data::kDTTimeStamp, x),
        Say{data->GetAsNumber().AsLong64()}),
       "59958230405"},
      {Say{FM_DateTime_GetDay(FM_Data_GetAsTimeStamp(d, x), x)}, "2"},
      {Say{FM_DateTime_GetSec(FM_Data_GetAsTime(d, x), x)}, "5"},
      {Say{FM_Data_GetFontID(d, *times, CharacterStyle::kGreek, *env, x) == font}, "1"},
      {Say{FM_Data_GetFontInfo(d, font, *name, script, *env, x), String(*name), script}, "1 Times 1"},
      {Say{FM_Data_GetPostscriptFontInfo(d, font, *name, *env, x)}, "0"},
  });
}

TEST_F(HostCalls, KeepLists) {
  const DataVectUniquePtr list;
  const DataUniquePtr data;
  data->SetAsText(*NewText("3:04"), *locale_);
  list->PushBack(*data);
  Owned<Data> popped;
  Check({
      {Say{String(list->AtAsText(0)), FM_DateTime_GetHour(FM_DataVect_AtAsTime(list.get(), 0, x), x)}, "3:04 3"},
      {(FM_DataVect_AtAsDate(list.get(), 1, x), Say{}), "raised"},
      {(popped.reset(FM_DataVect_PopBack(list.get(), x)), Say{String(popped->GetAsText()), list->Size()}), "3:04 0"},
      {Say{FM_DataVect_PopBack(list.get(), x) == nullptr}, "1"},
  });
}

TEST_F(HostCalls, AskForGetFunctionsByTheirNumbers) {
  const ExprEnvUniquePtr env;
  const DataUniquePtr data;
  host_.answers = {{"Get ( FileName )", "Sales"}, {"Get ( LastErrorLocation )", "there"}};
  const std::pair<short, const char*> cases[] = {
      {1005, "0 Sales"}, {1134, "0 there"}, {1087, "1215 "}, {1135, "1215 "}};
  for (const auto& [number, answer] : cases) {
    FM_Data_Clear(data.get(), Data::kDTText, x);
    EXPECT_EQ(std::string(Say{FM_ExprEnv_EvaluateGetFunction(env.get(), number, *data, x), String(data->GetAsText())}),
              answer);
  }
}

}  // namespace
