// The engine's own functions, one table for each topic.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/calc/TestEnvironment.h"

namespace {

TEST(CalcText, ByPosition) {
  ExpectAll({
      {R"(Left ( "abc" ; 2 ) & Left ( "abc" ; 9 ) & Left ( "abc" ; 0 ) & Left ( "abc" ; -1 ))", "ababc"},
      {R"(Right ( "abc" ; 2 ) & Right ( "abc" ; 9 ) & Right ( "abc" ; 0 ))", "bcabc"},
      {R"(Middle ( "abcdef" ; 3 ; 2 ) & "," & Middle ( "abc" ; 0 ; 2 ) & "," & Middle ( "abc" ; -5 ; 2 ))", "cd,ab,ab"},
      {R"(Middle ( "abc" ; 4 ; 2 ) & Middle ( "abc" ; 2 ; 99 ))", "bc"},
      {R"(Length ( "abc" ) & Length ( "" ) & Length ( 12.50 ))", "304"},
      {R"(Replace ( "abcdef" ; 2 ; 3 ; "X" ) & Replace ( "abc" ; 2 ; 0 ; "X" ))", "aXefaXbc"},
      {R"("[" & Trim ( "  a b  " ) & "]" & Trim ( "   " ))", "[a b]"},
      {"Trim ( \" \ta¶ \" )", "\ta\r"},
  });
}

TEST(CalcText, ByCharacter) {
  ExpectAll({
      {R"(Upper ( "straße ié" ) & Lower ( "ÀBI" ))", "STRASSE IÉàbi"},
      {R"(Proper ( "mISSISSIPPI river élan" ))", "Mississippi River Élan"},
      {R"(Exact ( "a" ; "A" ) & Exact ( "a" ; "a" ))", "01"},
      {"Exact ( \"é\" ; \"e\u0301\" )", "0"},
      {R"(Filter ( "(408)555-1212" ; "0123456789" ) & Filter ( "aAb" ; "A" ) & Filter ( "abc" ; "" ))", "4085551212A"},
      {R"(Char ( 65 ) & Char ( 0 ) & Char ( 9800097 ) & Char ( 8364 ))", "Aab€"},
      {R"(Char ( -1 ))", "error 1200"},
      {R"(Code ( "ab" ) & "," & Code ( "A" ) & "," & Code ( "" ))", "9800097,65,"},
      {R"(Exact ( Char ( Code ( "a😀" ) ) ; "a😀" ))", "1"},
      {R"(Quote ( "say \"x\" \\" & ¶ ))", R"("say \"x\" \\¶")"},
      {R"(Exact ( Evaluate ( Quote ( "a\"¶\\b\¶" ) ) ; "a\"¶\\b\¶" ))", "1"},
  });
}

TEST(CalcText, Searching) {
  ExpectAll({
      {R"(Position ( "Mississippi" ; "ISS" ; 1 ; 1 ) & Position ( "Mississippi" ; "iss" ; 3 ; 1 ))", "25"},
      {R"(Position ( "Mississippi" ; "iss" ; 1 ; 2 ) & Position ( "Mississippi" ; "x" ; 1 ; 1 ))", "50"},
      {R"(Position ( "abcabc" ; "a" ; -3 ; 1 ) & Position ( "abc" ; "a" ; 1 ; 0 ) & Position ( "abc" ; "" ; 1 ; 1 ))",
       "100"},
      {R"(Position ( "abcabc" ; "bc" ; 6 ; -1 ) & Position ( "abcabc" ; "bc" ; 4 ; -1 ))", "52"},
      {R"(Position ( "abcabc" ; "bc" ; 6 ; -2 ) & Position ( "abcabc" ; "bc" ; 6 ; -3 ))", "20"},
      {R"(Position ( "abc" ; "a" ; 9 ; 1 ) & Position ( "abc" ; "a" ; 9 ; -1 ))", "01"},
      {R"(PatternCount ( "Mississippi" ; "issi" ) & PatternCount ( "aAa" ; "a" ) & PatternCount ( "abc" ; "" ))",
       "130"},
      {R"(PatternCount ( "aabaabaaab" ; "aaab" ))", "1"},
      {R"(Substitute ( "abA" ; "a" ; "xy" ) & Substitute ( "abc" ; "" ; "x" ))", "xybAabc"},
      {R"(Substitute ( "abc" ; [ "a" ; "b" ] ; [ "b" ; "c" ] ))", "ccc"},
      {R"(Substitute ( "aaa" ; "aa" ; "b" ))", "ba"},
      {"PatternCount ( Char ( 13 ) & \"One¶Two\" & Char ( 13 ) ; Char ( 13 ) & \"Two\" & Char ( 13 ) )", "1"},
  });
}

TEST(CalcText, Words) {
  ExpectAll({
      {R"(WordCount ( "a=b 1.5, don't stop!" ))", "5"},
      {R"(LeftWords ( "Plaid Canvas, Suitcase" ; 2 ) & "|" & RightWords ( "one two three" ; 2 ))",
       "Plaid Canvas|two three"},
      {R"(MiddleWords ( "one two three" ; 2 ; 1 ) & LeftWords ( "one" ; 0 ) & RightWords ( "one" ; 9 ))", "twoone"},
      {R"(WordCount ( "" ) & WordCount ( " .-" ))", "00"},
  });
}

TEST(CalcText, Encodings) {
  ExpectAll({
      {R"(Base64Encode ( "ab" ))", "YWI=\r\n"},
      {R"(Base64EncodeRFC ( 4648 ; "abc" ) & Base64EncodeRFC ( 4648 ; "" ))", "YWJj"},
      {R"(Length ( Base64Encode ( "0123456789012345678901234567890123456789012345678901234567" ) ))", "84"},
      {R"(Base64Decode ( Base64Encode ( "Größe 漢" ) ))", "Größe 漢"},
      {R"(GetAsURLEncoded ( "San Fränk~/" ))", "San%20Fr%C3%A4nk~%2F"},
      {R"(HexEncode ( "aÿ" ))", "61C3BF"},
  });
}

TEST(CalcLists, SeparateAtReturnsAndTheirKin) {
  ExpectAll({
      {R"(ValueCount ( "a¶b" ) & ValueCount ( "a¶b¶" ) & ValueCount ( "¶¶b" ) & ValueCount ( "" ))", "2230"},
      {"ValueCount ( \"a\r\nb\" ) & ValueCount ( \"a\nb\u2028c\u2029d\" )", "34"},
      {R"(GetValue ( "a¶b¶c" ; 2 ) & GetValue ( "a¶b" ; 3 ) & GetValue ( "a" ; 0 ))", "b"},
      {R"(LeftValues ( "a¶b¶c" ; 2 ))", "a\rb\r"},
      {R"(RightValues ( "a¶b¶c" ; 2 ) & RightValues ( "a" ; -1 ))", "b\rc\r"},
      {R"(MiddleValues ( "a¶b¶c" ; 2 ; 1 ) & MiddleValues ( "a¶b" ; 0 ; 1 ))", "b\ra\r"},
      {R"(FilterValues ( "c¶A¶b¶a" ; "a¶c" ))", "c\rA\ra\r"},
      {R"(List ( "a" ; "" ; 2 ; "b¶c" ))", "a\r2\rb\rc"},
      {R"(UniqueValues ( "b¶a¶B¶a¶" ) & UniqueValues ( "1¶1.0¶2" ; 2 ))", "b\ra\r1\r2\r"},
      {R"(SortValues ( "b¶C¶a" ) & SortValues ( "10¶9¶x" ; 2 ) & SortValues ( "10¶9" ))", "a\rb\rC\rx\r9\r10\r10\r9\r"},
      {R"(SortValues ( "a¶c¶b" ; -1 ) & SortValues ( "12/1/2020¶2/1/2021" ; -3 ))", "c\rb\ra\r2/1/2021\r12/1/2020\r"},
  });
}

TEST(CalcNumbers, FromText) {
  ExpectAll({
      {R"(GetAsNumber ( "12abc34" ))", "1234"},
      {R"x(GetAsNumber ( "2 - 2" ) & "," & GetAsNumber ( "(22)" ) & "," & GetAsNumber ( ".(22)" ))x", "22,-22,.22"},
      {R"(GetAsNumber ( "$1,254.50" ) & "," & GetAsNumber ( "-5" ) & "," & GetAsNumber ( "none" ))", "1254.5,-5,"},
      {R"("" + 1 & "," & "3 apples" * 2)", "1,6"},
  });
}

TEST(CalcNumbers, RoundingAndRest) {
  ExpectAll({
      {"Round ( 2.5 ; 0 ) & \",\" & Round ( -2.5 ; 0 ) & \",\" & Round ( 1254.545 ; 2 ) & \",\" & Round ( 155 ; -1 )",
       "3,-3,1254.55,160"},
      {"Truncate ( -29.343 ; 2 ) & Int ( -1.9 ) & Floor ( -1.1 ) & Ceiling ( 1.1 ) & Ceiling ( -1.9 )",
       "-29.34-1-22-1"},
      {"Mod ( -1 ; 3 ) & Mod ( 7 ; -3 ) & Mod ( 5.5 ; 2 ) & Div ( -5 ; 2 ) & Div ( 2.5 ; 2 )", "2-21.5-31"},
      {"Mod ( 1 ; 0 )", "error 15"},
      {"Abs ( -3 ) & Sign ( -3 ) & Sqrt ( 16 ) & Sqrt ( 2 )", "3-141.414213562373095"},
      {"Sqrt ( 12345678901 ) & \",\" & Sqrt ( 10 ^ 60 + 2 * 10 ^ 30 + 1 )",
       "111111.1106100555544258,1000000000000000000000000000001"},
      {"Exp ( 20 ) & \",\" & 1000003 ^ .5 & \",\" & Sin ( 10 ^ 30 )",
       "485165195.4097902779691068,1000.0014999988750017,-.09011690191213806"},
      {"Sqrt ( -1 )", "error 1200"},
      {"Random > 0 and Random < 1 and Random ≠ Random", "1"},
      {"SetPrecision ( 1/3 ; 30 ) & 1/3", ".333333333333333333333333333333.3333333333333333"},
      {"Factorial ( 5 ) & Factorial ( 5 ; 2 ) & Factorial ( 25 )", "1202015511210043330985984000000"},
      {"Pi & Ln ( 2 ) & Log ( 1000 ) & Lg ( 8 ) & Round ( Degrees ( Pi ) ; 12 )",
       "3.1415926535897932.693147180559945333180"},
      {"Exp ( 5000 )", "error 1200"},
      {"Factorial ( 1e9 )", "error 1200"},
  });
}

TEST(CalcNumbers, AggregatesLeaveEmptyValuesOut) {
  ExpectAll({
      {R"(Sum ( 1 ; 2.5 ; "" ; "x3" ) & "," & Count ( 1 ; "" ; "a" ; 0 ) & "," & Average ( 1 ; "" ; 2 ))", "6.5,3,1.5"},
      {R"(Min ( 3 ; "" ; 2 ) & Max ( 10 ; 9 ) & Max ( "10" ; "9" ) & Max ( "" ))", "2109"},
      {R"(Average ( "" ) & Count ( "" ) & Sum ( "" ))", "00"},
  });
}

TEST(CalcDates, RollOverAndStayInTheCalendar) {
  ExpectAll({
      {"Date ( 1 ; 1 ; 1 ) + 0 & \",\" & ( Date ( 12 ; 31 ; 4000 ) + 0 )", "1,1460970"},
      {"Date ( 13 ; 1 ; 2023 ) & \",\" & Date ( 3 ; 0 ; 2024 ) & \",\" & Date ( 0 ; 1 ; 2024 )",
       "1/1/2024,2/29/2024,12/1/2023"},
      {"Date ( 12 ; 32 ; 4000 )", "error 1200"},
      {"Date ( 1 ; 0 ; 1 )", "error 1200"},
      {"Date ( 1e20 ; 1 ; 1 )", "error 1200"},
      {"Year ( Date ( 2 ; 29 ; 2024 ) ) & Month ( \"2/29/2024\" ) & Day ( \"2/29/2024\" )", "2024229"},
      {"DayName ( Date ( 1 ; 31 ; 2024 ) ) & DayOfWeek ( Date ( 1 ; 31 ; 2024 ) ) & MonthName ( 1 )",
       "Wednesday4January"},
      {"DayOfYear ( \"12/31/2024\" ) & WeekOfYear ( \"1/1/2024\" ) & WeekOfYear ( \"1/7/2024\" )", "36612"},
      {"Time ( 1 ; 2 ; 70 ) & \",\" & ( Time ( 1 ; 0 ; 0 ) + 0 ) & \",\" & Time ( 25 ; 0 ; .5 ) & \",\" & Time ( 0 ; "
       "-1 ; 0 )",
       "1:03:10,3600,25:00:00.5,-0:01:00"},
      {"Timestamp ( Date ( 1 ; 2 ; 1 ) ; Time ( 0 ; 0 ; 5 ) ) + 0", "86405"},
      {"Timestamp ( Date ( 1 ; 31 ; 2024 ) ; Time ( 13 ; 2 ; 3 ) ) & \",\" & Timestamp ( 1 ; 0 )",
       "1/31/2024 1:02:03 PM,1/1/1 12:00:00 AM"},
      {"Hour ( \"13:02:03.5\" ) & Minute ( \"1:02 PM\" ) & Seconds ( \"13:02:03.5\" ) & Hour ( \"12:30 AM\" )",
       "1323.50"},
  });
}

TEST(CalcDates, FromText) {
  ExpectAll({
      {R"(GetAsDate ( "2/29/2024" ) + 1 & "," & GetAsDate ( 1 ) & "," & GetAsDate ( "366" ))", "738946,1/1/1,1/1/2"},
      {R"(GetAsDate ( "2/30/2024" ))", "error 1200"},
      {R"(GetAsDate ( "soon" ))", "error 1200"},
      {R"(GetAsDate ( 1460971 ))", "error 1200"},
      {R"(GetAsTime ( "2:05 pm" ) & "," & GetAsTime ( 61 ) & "," & GetAsTime ( "" ))", "14:05:00,0:01:01,"},
      {R"(GetAsTime ( "13:00 pm" ))", "error 1200"},
      {R"(GetAsTimestamp ( "1/2/2024 3:04:05 PM" ) & "," & GetAsTimestamp ( 86400 ))",
       "1/2/2024 3:04:05 PM,1/2/1 12:00:00 AM"},
      {R"(GetAsDate ( GetAsTimestamp ( "1/2/2024 3:04:05 PM" ) ))", "1/2/2024"},
  });
}

TEST(CalcFunctions, AreListedByName) {
  const auto names = calc::FunctionNames();
  EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
  EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
  for (const char16_t* name : {u"Abs", u"Case", u"Get", u"Let", u"SortValues", u"While", u"Year"}) {
    EXPECT_NE(std::find(names.begin(), names.end(), name), names.end());
  }
}

}  // namespace
