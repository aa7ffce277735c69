// The host calls that only other people's plug-ins make: one table for each class.
#include <FMWrapper/FMXTypes.h>

#include <FMWrapper/FMXBinaryData.h>
#include <FMWrapper/FMXCalcEngine.h>
#include <FMWrapper/FMXData.h>
#include <FMWrapper/FMXDateTime.h>
#include <FMWrapper/FMXFixPt.h>
#include <FMWrapper/FMXText.h>
#include <FMWrapper/FMXTextStyle.h>

#include <functional>
#include <sstream>

#include "support/ScriptedHost.h"

namespace {

using namespace fmx;

template <class Object>
using Owned = std::unique_ptr<Object>;

class HostCalls : public testing::Test {
 protected:
  struct Row {
    const char* what;
    std::function<void(std::ostream& out)> calls;  // writes what they answer
    std::string expected;
  };

  // After each row no exception is reported, unless the row expects "raised".
  void Check(std::initializer_list<Row> rows) {
    for (const auto& row : rows) {
      x_ = {};
      std::ostringstream out;
      row.calls(out);
      EXPECT_EQ(x_.m_code == _fmxcpt::kNoErr ? out.str() : "raised", row.expected) << row.what;
    }
  }

  static TextUniquePtr NewText(const std::string& text) {
    TextUniquePtr result;
    result->AssignWithLength(text.data(), static_cast<uint32>(text.size()), Text::kEncoding_UTF8);
    return result;
  }
  static std::string String(const Text& text) {
    std::string bytes(4 * text.GetSize() + 1, '\0');
    bytes.resize(
        text.GetBytesEx(bytes.data(), static_cast<uint32>(bytes.size()), 0, Text::kSize_End, Text::kEncoding_UTF8));
    return bytes;
  }
  FixPtUniquePtr Number(double value) {
    FixPtUniquePtr number;
    number->AssignDouble(value);
    return number;
  }
  Owned<DateTime> Moment(const char* text) {
    return Owned<DateTime>(FM_DateTime_Constructor3(*NewText(text), *locale_, x_));
  }
  QuadCharUniquePtr Type(const char (&name)[5]) { return {name[0], name[1], name[2], name[3]}; }

  ScriptedHost host_;
  _fmxcpt x_;
  const LocaleUniquePtr locale_{Locale::kType_System};
};

TEST_F(HostCalls, CalculateWithNumbers) {
  const auto seven = Number(7), two = Number(2), zero = Number(0), result = Number(0);
  FixPtUniquePtr exact(1, 3);
  const Owned<FixPt> copy(FM_FixPt_Constructor2(1, *exact, x_));
  Check({
      {"sum",
       [&](auto& out) {
         FM_FixPt_Add(seven.get(), *two, *result, x_);
         out << result->AsFloat();
       },
       "9"},
      {"difference",
       [&](auto& out) {
         FM_FixPt_Subtract(two.get(), *seven, *result, x_);
         out << result->AsFloat();
       },
       "-5"},
      {"product",
       [&](auto& out) {
         FM_FixPt_Multiply(seven.get(), *two, *result, x_);
         out << result->AsFloat();
       },
       "14"},
      {"quotient", [&](auto& out) { out << FM_FixPt_Divide(seven.get(), *two, *result, x_) << result->AsFloat(); },
       "03.5"},
      {"three places", [&](auto& out) { out << FM_FixPt_Divide(copy.get(), *seven, *result, x_) << result->AsFloat(); },
       "00.143"},
      {"by zero", [&](auto& out) { out << FM_FixPt_Divide(seven.get(), *zero, *result, x_); }, "15"},
      {"order",
       [&](auto& out) {
         out << FM_FixPt_operatorLT(two.get(), *seven, x_) << FM_FixPt_operatorGE(two.get(), *seven, x_);
       },
       "10"},
      {"steps",
       [&](auto& out) {
         FM_FixPt_AssignFixPt(result.get(), *seven, x_);
         FM_FixPt_Increment(result.get(), 5, x_);
         FM_FixPt_Decrement64(result.get(), 2, x_);
         FM_FixPt_Negate(result.get(), x_);
         out << result->AsLong64();
       },
       "-10"},
      {"beyond 32 bits",
       [&](auto& out) {
         result->AssignInt64(1L << 40);
         out << FM_FixPt_AsLong(result.get(), x_);
       },
       "2147483647"},
      {"precision",
       [&](auto& out) {
         FM_FixPt_SetPrecision(exact.get(), 20, x_);
         out << FM_FixPt_GetPrecision(exact.get(), x_);
       },
       "20"},
  });
}

TEST_F(HostCalls, ReadAndWriteText) {
  const auto text = NewText("Grüße, Größe");
  const auto other = NewText("größe");
  char buffer[20] = {};
  const auto bytes = [&](uint32 capacity, int32 encoding) {
    return std::string(buffer, FM_Text_GetBytesEx(text.get(), buffer, capacity, 0, Text::kSize_End, encoding, x_));
  };
  Check({
      {"what fits", [&](auto& out) { out << bytes(3, Text::kEncoding_UTF8); }, "Gr"},
      {"Latin-1", [&](auto& out) { out << bytes(20, Text::kEncoding_ISO_8859_1); },
       "Gr\xFC\xDF"
       "e, Gr\xF6\xDF"
       "e"},
      {"Mac Roman", [&](auto& out) { out << bytes(4, Text::kEncoding_ASCII_Mac); }, "Gr\x9F\xA7"},
      {"Shift-JIS",
       [&](auto& out) {
         FM_Text_AssignWithLength(text.get(), "\x83\x65", 2, Text::kEncoding_ShiftJIS_Win, x_);
         out << String(*text) << bytes(1, Text::kEncoding_ShiftJIS_Win).size();
       },
       "テ0"},
      {"an encoding that is not known", [&](auto&) { bytes(20, 99); }, "raised"},
      {"find",
       [&](auto& out) {
         text->SetText(*NewText("Größe größe"));
         out << FM_Text_Find(text.get(), *other, 0, x_) << FM_Text_FindIgnoringCase(text.get(), *other, 0, x_)
             << FM_Text_FindPrev(text.get(), *other, 5, x_) << FM_Text_FindPrevIgnoringCase(text.get(), *other, 5, x_);
       },
       "6042949672950"},
      {"edit",
       [&](auto& out) {
         FM_Text_InsertText(text.get(), *NewText("| "), 6, x_);
         FM_Text_DeleteText(text.get(), 0, 1, x_);
         FM_Text_Uppercase(text.get(), x_);
         out << String(*text);
       },
       "RÖSSE | GRÖSSE"},
      {"order",
       [&](auto& out) {
         out << FM_Text_operatorLT(NewText("a").get(), *NewText("b"), x_)
             << FM_Text_operatorEQ(NewText("a").get(), *NewText("A"), x_);
       },
       "10"},
  });
}

TEST_F(HostCalls, StyleText) {
  const auto text = NewText("abcdef");
  const Owned<CharacterStyle> bold(FM_CharacterStyle_Constructor1(x_)), found(FM_CharacterStyle_Constructor1(x_));
  const Owned<CharacterStyle::Color> red(FM_Color_Constructor2(255, 0, 1, 128, x_)), color(FM_Color_Constructor1(x_));
  const auto faces = [&](std::ostream& out) {
    for (uint32 at = 0; at < text->GetSize(); ++at) {
      FM_Text_GetStyle(text.get(), *found, at, x_);
      out << FM_CharacterStyle_IsFaceEnabled(found.get(), CharacterStyle::kFace_Bold, x_);
    }
  };
  FM_CharacterStyle_EnableFace(bold.get(), CharacterStyle::kFace_Bold, x_);
  Check({
      {"a default colour is opaque black",
       [&](auto& out) {
         out << FM_Color_operatorEQ(color.get(), *FM_Color_Black(x_), x_)
             << FM_Color_operatorEQ(color.get(), *FM_Color_White(x_), x_);
       },
       "10"},
      {"16 bits",
       [&](auto& out) {
         out << FM_Color_GetRedUpsample(red.get(), x_) << ' ' << FM_Color_GetAlphaUpsample(red.get(), x_) << ' '
             << int{FM_Color_GetBlue(red.get(), x_)};
       },
       "65535 32896 1"},
      {"no style",
       [&](auto& out) {
         out << FM_CharacterStyle_IsAllDisabled(found.get(), x_);
         faces(out);
       },
       "1000000"},
      {"a part",
       [&](auto& out) {
         FM_Text_SetStyle(text.get(), *bold, 1, 2, x_);
         faces(out);
       },
       "011000"},
      {"moved with its text",
       [&](auto& out) {
         FM_Text_InsertText(text.get(), *NewText("--"), 2, x_);
         FM_Text_DeleteText(text.get(), 0, 1, x_);
         faces(out);
       },
       "1001000"},
      {"kept by a value",
       [&](auto& out) {
         const DataUniquePtr data;
         data->SetAsText(*text, *locale_);
         FM_Text_GetStyle(&data->GetAsText(), *found, 0, x_);
         out << FM_CharacterStyle_operatorEQ(found.get(), *bold, x_);
       },
       "1"},
      {"removed",
       [&](auto& out) {
         FM_Text_RemoveStyle(text.get(), *bold, x_);
         faces(out);
       },
       "0000000"},
      {"an assignment resets styles",
       [&](auto& out) {
         FM_Text_SetStyle(text.get(), *bold, 0, Text::kSize_End, x_);
         text->Assign("xy", Text::kEncoding_UTF8);
         faces(out);
       },
       "00"},
      {"beyond the end", [&](auto&) { FM_Text_GetStyle(text.get(), *found, 2, x_); }, "raised"},
      {"a new attribute is enabled",
       [&](auto& out) {
         FM_CharacterStyle_SetColor(found.get(), *red, x_);
         FM_CharacterStyle_SetSize(found.get(), 24, x_);
         FM_CharacterStyle_DisableSize(found.get(), x_);
         out << FM_CharacterStyle_IsColorEnabled(found.get(), x_) << FM_CharacterStyle_IsSizeEnabled(found.get(), x_)
             << FM_Color_operatorEQ(FM_CharacterStyle_GetColor(found.get(), x_), *red, x_);
       },
       "101"},
  });
}

TEST_F(HostCalls, TakeDatesAndTimesApart) {
  const auto leap = Moment("2/29/2024 13:02:03.25");
  const auto number = Number(0);
  Check({
      {"date",
       [&](auto& out) {
         out << FM_DateTime_GetYear(leap.get(), x_) << '-' << FM_DateTime_GetMonth(leap.get(), x_) << '-'
             << FM_DateTime_GetDay(leap.get(), x_);
       },
       "2024-2-29"},
      {"time",
       [&](auto& out) {
         out << FM_DateTime_GetHour(leap.get(), x_) << ':' << FM_DateTime_GetMinute(leap.get(), x_) << ':'
             << FM_DateTime_GetSec(leap.get(), x_) << '+' << FM_DateTime_GetUSec(leap.get(), x_);
       },
       "13:2:3+250000"},
      {"the seconds of a time are those of its minute",
       [&](auto& out) {
         FM_DateTime_GetSeconds(leap.get(), *number, x_);
         out << number->AsFloat();
       },
       "3.25"},
      {"week",
       [&](auto& out) {
         out << FM_DateTime_DayOfYear(leap.get(), x_) << ' ' << FM_DateTime_DayOfWeek(leap.get(), x_) << ' '
             << FM_DateTime_WeekOfYear(leap.get(), x_) << ' ' << FM_DateTime_IsLeapYear(leap.get(), x_);
       },
       "60 5 9 1"},
      {"the first day",
       [&](auto& out) {
         FM_DateTime_SetDaysSinceEpoch(leap.get(), 1, x_);
         out << FM_DateTime_operatorEQ(leap.get(), *Moment("13:02:03.25"), x_);
         FM_DateTime_GetSecondsSinceEpoch(leap.get(), *number, x_);
         out << ' ' << number->AsFloat();
       },
       "1 46923.2"},
      {"day 0", [&](auto&) { FM_DateTime_SetDaysSinceEpoch(leap.get(), 0, x_); }, "raised"},
      {"parts out of their ranges",
       [&](auto& out) {
         out << FM_DateTime_SetNormalizedDate1(leap.get(), 14, 0, 2023, x_) << ' '
             << FM_DateTime_GetMonth(leap.get(), x_) << '/' << FM_DateTime_GetDay(leap.get(), x_);
       },
       "0 1/31"},
      {"outside the calendar", [&](auto& out) { out << FM_DateTime_SetNormalizedDate1(leap.get(), 1, 1, 0, x_); },
       "1200"},
      {"long times",
       [&](auto& out) {
         FM_DateTime_SetNormalizedTime1(leap.get(), 100, 61, 1, 500000, x_);
         FM_DateTime_GetSecsSinceMidnight(leap.get(), *number, x_);
         out << number->AsFloat() * 2;
       },
       "727323"},
      {"now",
       [&](auto& out) {
         FM_DateTime_Now(leap.get(), x_);
         out << (FM_DateTime_GetYear(leap.get(), x_) >= 2024);
       },
       "1"},
  });
}

TEST_F(HostCalls, FillContainers) {
  const auto jpeg = Type("JPEG"), found = Type("    ");
  char picture[] = "picture", buffer[10] = {};
  uint32 context = 0;
  short width = 0, height = 0;
  const Owned<BinaryData> file(FM_BinaryData_Constructor4(*NewText("a.txt"), &context, x_));
  const auto name = NewText("");
  Check({
      {"no size yet", [&](auto& out) { out << FM_BinaryData_GetSIZEData(file.get(), width, height, x_); }, "10"},
      {"in pieces",
       [&](auto& out) {
         out << FM_BinaryData_AddAppend(file.get(), context, 3, picture, x_)
             << FM_BinaryData_AddAppend(file.get(), context, 4, picture + 3, x_)
             << FM_BinaryData_AddFinish(file.get(), context, x_)
             << FM_BinaryData_AddAppend(file.get(), context, 1, picture, x_);
         out << ' ' << FM_BinaryData_GetIndex(file.get(), *Type("FILE"), x_)
             << FM_BinaryData_GetData(file.get(), 1, 3, 4, buffer, x_) << buffer;
       },
       "00010 10ture"},
      {"name",
       [&](auto& out) {
         FM_BinaryData_GetFNAMData(file.get(), *name, x_);
         out << String(*name);
       },
       "file:a.txt"},
      {"size",
       [&](auto& out) {
         FM_BinaryData_AddSIZEData(file.get(), 300, -2, x_);
         out << FM_BinaryData_GetSIZEData(file.get(), width, height, x_) << ' ' << width << ' ' << height;
         out << FM_BinaryData_GetData(file.get(), 2, 0, 4, buffer, x_)
             << (std::string(buffer, 4) == "\x01\x2C\xFF\xFE");
       },
       "0 300 -201"},
      {"streams",
       [&](auto& out) {
         out << FM_BinaryData_Add(file.get(), *jpeg, 7, picture, x_) << FM_BinaryData_GetCount(file.get(), x_) << ' '
             << FM_BinaryData_GetTotalSize(file.get(), x_);
         FM_BinaryData_GetType(file.get(), 3, *found, x_);
         out << (*found == *jpeg) << FM_BinaryData_Remove(file.get(), *jpeg, x_)
             << FM_BinaryData_Remove(file.get(), *jpeg, x_);
       },
       "04 28110"},
      {"more than there is", [&](auto& out) { out << FM_BinaryData_GetData(file.get(), 1, 4, 4, buffer, x_); }, "10"},
      {"no such stream", [&](auto&) { FM_BinaryData_GetSize(file.get(), 9, x_); }, "raised"},
      {"through a value and the host",
       [&](auto& out) {
         const DataUniquePtr data, back;
         FM_Data_SetBinaryData(data.get(), *file, false, x_);
         fmhost::SetValue(*back, fmhost::ValueOf(*data));
         out << FM_BinaryData_operatorEQ(file.get(), *FM_Data_GetBinaryData(back.get(), x_), x_)
             << String(back->GetAsText()) << back->GetNativeType();
       },
       "1a.txt6"},
  });
}

TEST_F(HostCalls, ConvertValues) {
  const DataUniquePtr data;
  const auto set = [&](const char* text, Data::DataType type) { data->SetAsText(*NewText(text), *locale_, type); };
  const auto name = NewText("");
  const ExprEnvUniquePtr env;
  CharacterStyle::FontScript script = 0;
  Check({
      {"text to number",
       [&](auto& out) {
         set("12 pounds", Data::kDTNumber);
         out << data->GetNativeType() << ' ' << String(data->GetAsText());
       },
       "2 12"},
      {"text to date",
       [&](auto& out) {
         set("1/31/2024", Data::kDTDate);
         out << FM_DateTime_GetDay(FM_Data_GetAsDate(data.get(), x_), x_);
       },
       "31"},
      {"date to number",
       [&](auto& out) {
         FM_Data_ConvertData(data.get(), Data::kDTNumber, x_);
         out << String(data->GetAsText());
       },
       "738916"},
      {"not a time",
       [&](auto& out) {
         set("soon", Data::kDTTime);
         out << FM_Data_IsValid(data.get(), x_) << String(data->GetAsText());
       },
       "0?"},
      {"timestamp",
       [&](auto& out) {
         FM_Data_SetAsTimeStamp(data.get(), *Moment("1/2/1901 0:00:05"), Data::kDTTimeStamp, x_);
         out << data->GetAsNumber().AsLong64() << ' ' << FM_DateTime_GetDay(FM_Data_GetAsTimeStamp(data.get(), x_), x_)
             << FM_DateTime_GetSec(FM_Data_GetAsTime(data.get(), x_), x_);
       },
       "59958230405 25"},
      {"fonts",
       [&](auto& out) {
         const auto font = FM_Data_GetFontID(data.get(), *NewText("Times"), CharacterStyle::kGreek, *env, x_);
         out << (font == FM_Data_GetFontID(data.get(), *NewText("Times"), CharacterStyle::kGreek, *env, x_))
             << FM_Data_GetFontInfo(data.get(), font, *name, script, *env, x_) << String(*name) << script
             << FM_Data_GetPostscriptFontInfo(data.get(), font, *name, *env, x_);
       },
       "11Times10"},
  });
}

TEST_F(HostCalls, KeepLists) {
  const DataVectUniquePtr list;
  const DataUniquePtr data;
  data->SetAsText(*NewText("3:04"), *locale_);
  list->PushBack(*data);
  Check({
      {"forms",
       [&](auto& out) {
         out << String(list->AtAsText(0)) << ' ' << FM_DateTime_GetHour(FM_DataVect_AtAsTime(list.get(), 0, x_), x_)
             << FM_DataVect_AtAsBoolean(list.get(), 0, x_);
       },
       "3:04 31"},
      {"beyond the end", [&](auto&) { FM_DataVect_AtAsDate(list.get(), 1, x_); }, "raised"},
      {"the caller owns what is popped",
       [&](auto& out) {
         const Owned<Data> popped(FM_DataVect_PopBack(list.get(), x_));
         out << String(popped->GetAsText()) << list->Size();
       },
       "3:040"},
      {"nothing to pop", [&](auto& out) { out << (FM_DataVect_PopBack(list.get(), x_) == nullptr); }, "1"},
  });
}

TEST_F(HostCalls, AskTheCalculationEngine) {
  host_.answers = {{"Get ( FileName )", "Sales"}};
  const ExprEnvUniquePtr env;
  const DataUniquePtr data;
  Check({
      {"a Get function",
       [&](auto& out) {
         out << FM_ExprEnv_EvaluateGetFunction(env.get(), 1005, *data, x_) << String(data->GetAsText());
       },
       "0Sales"},
      {"the last Get function", [&](auto&) { FM_ExprEnv_EvaluateGetFunction(env.get(), 1134, *data, x_); }, ""},
      {"a number without a function",
       [&](auto& out) { out << FM_ExprEnv_EvaluateGetFunction(env.get(), 1087, *data, x_); }, "1215"},
  });
  EXPECT_EQ(host_.asked.back(), "Get ( LastErrorLocation )");
}

}  // namespace
