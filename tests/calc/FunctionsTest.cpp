// The engine's own functions, one table for each topic.
#include <gtest/gtest.h>

#include "tests/calc/TestEnvironment.h"

namespace {

TEST(CalcFunctions, OfText) {
  ExpectAll({
      {R"(Left ( "abc" ; 2 ) & Left ( "abc" ; 9 ) & Left ( "abc" ; -1 ))", "ababc"},
      {R"(Right ( "abc" ; 2 ) & Right ( "abc" ; 9 ) & Right ( "abc" ; 0 ))", "bcabc"},
      {R"(Middle ( "abcdef" ; 3 ; 2 ) & "," & Middle ( "abc" ; -5 ; 2 ) & "," & Middle ( "abc" ; 2 ; 99 ))",
       "cd,ab,bc"},
      {R"(Length ( "abc" ) & Length ( 12.50 ) & Replace ( "abcdef" ; 2 ; 3 ; "X" ))", "34aXef"},
      {R"("[" & Trim ( "  a b  " ) & "]" & Trim ( "   " ))", "[a b]"},
      {R"(Upper ( "straße ié" ) & Lower ( "ÀBI" ) & Proper ( "mISSI élan" ))", "STRASSE IÉàbiMissi Élan"},
      {"Exact ( \"a\" ; \"A\" ) & Exact ( \"a\" ; \"a\" ) & Exact ( \"é\" ; \"e\u0301\" )", "010"},
      {R"(Filter ( "(408)555-1212" ; "0123456789" ) & Filter ( "aAb" ; "A" ))", "4085551212A"},
      {R"(Char ( 65 ) & Char ( 0 ) & Char ( 9800097 ) & Code ( "ab" ) & Code ( "" ))", "Aab9800097"},
      {R"(Char ( -1 ))", "error 1200"},
      {R"(LeftWords ( "Plaid Canvas, Suitcase" ; 2 ) & RightWords ( "one two" ; 1 ))", "Plaid Canvastwo"},
      {R"(MiddleWords ( "one two three" ; 2 ; 1 ) & WordCount ( "a=b 1.5, don't stop!" ))", "two5"},
      {R"(Base64Encode ( "ab" ) & Base64EncodeRFC ( 4648 ; "abc" ))", "YWI=\r\nYWJj"},
      {R"(Base64Decode ( Base64Encode ( "Größe 漢" ) ) & HexEncode ( "aÿ" ))", "Größe 漢61C3BF"},
      {R"(GetAsURLEncoded ( "San Fränk~/" ))", "San%20Fr%C3%A4nk~%2F"},
  });
}

TEST(CalcFunctions, ThatSearch) {
  ExpectAll({
      {R"(Position ( "Mississippi" ; "ISS" ; 1 ; 1 ) & Position ( "Mississippi" ; "iss" ; 3 ; 1 ))", "25"},
      {R"(Position ( "Mississippi" ; "iss" ; 1 ; 2 ) & Position ( "Mississippi" ; "x" ; 1 ; 1 ))", "50"},
      {R"(Position ( "abcabc" ; "bc" ; 6 ; -1 ) & Position ( "abcabc" ; "bc" ; 4 ; -1 ))", "52"},
      {R"(Position ( "abc" ; "a" ; -3 ; 1 ) & Position ( "abc" ; "" ; 1 ; 1 ) & Position ( "abc" ; "a" ; 9 ; 1 ))",
       "100"},
      {R"(PatternCount ( "Mississippi" ; "issi" ) & PatternCount ( "aAa" ; "a" ) & PatternCount ( "abc" ; "" ))",
       "130"},
      {R"(Substitute ( "abA" ; "a" ; "xy" ) & Substitute ( "abc" ; "" ; "x" ) & Substitute ( "aaa" ; "aa" ; "b" ))",
       "xybAabcba"},
      {R"(Substitute ( "abc" ; [ "a" ; "b" ] ; [ "b" ; "c" ] ))", "ccc"},
  });
}

TEST(CalcFunctions, OfLists) {
  ExpectAll({
      {R"(ValueCount ( "a¶b" ) & ValueCount ( "a¶b¶" ) & ValueCount ( "¶¶b" ) & ValueCount ( "" ))", "2230"},
      {"ValueCount ( \"a\r\nb\" ) & ValueCount ( \"a\nb\u2028c\u2029d\" )", "34"},
      {R"(GetValue ( "a¶b¶c" ; 2 ) & GetValue ( "a¶b" ; 3 ) & GetValue ( "a" ; 0 ))", "b"},
      {R"(LeftValues ( "a¶b¶c" ; 2 ) & RightValues ( "a¶b¶c" ; 2 ) & MiddleValues ( "a¶b¶c" ; 2 ; 1 ))",
       "a\rb\rb\rc\rb\r"},
      {R"(FilterValues ( "c¶A¶b¶a" ; "a¶c" ))", "c\rA\ra\r"},
      {R"(List ( "a" ; "" ; 2 ; "b¶c" ))", "a\r2\rb\rc"},
      {R"(UniqueValues ( "b¶a¶B¶a¶" ) & UniqueValues ( "1¶1.0¶2" ; 2 ))", "b\ra\r1\r2\r"},
      {R"(SortValues ( "b¶C¶a" ) & SortValues ( "10¶9¶x" ; 2 ) & SortValues ( "10¶9" ))", "a\rb\rC\rx\r9\r10\r10\r9\r"},
  });
}

TEST(CalcFunctions, OfNumbers) {
  ExpectAll({
      {R"x(GetAsNumber ( "12abc34" ) & "," & GetAsNumber ( "2 - 2" ) & "," & GetAsNumber ( "(22)" ))x", "1234,22,-22"},
      {R"(GetAsNumber ( "$1,254.50" ) & "," & GetAsNumber ( "none" ) & "," & "3 apples" * 2)", "1254.5,,6"},
      {R"(Round ( 2.5 ; 0 ) & "," & Round ( -2.345 ; 2 ) & "," & Round ( 155 ; -1 ) & "," & Round ( 49 ; -2 ))",
       "3,-2.35,160,0"},
      {"Truncate ( -29.343 ; 2 ) & Int ( -1.9 ) & Floor ( -1.1 ) & Ceiling ( -2.9 ) & Abs ( -3 ) & Sign ( -3 )",
       "-29.34-1-2-23-1"},
      {"Mod ( -1 ; 3 ) & Mod ( 7 ; -3 ) & Mod ( 5.5 ; 2 ) & Div ( -5 ; 2 ) & Div ( 2.5 ; 2 )", "2-21.5-31"},
      {"SetPrecision ( 1/3 ; 30 ) & 1/3", ".333333333333333333333333333333.3333333333333333"},
      {"Factorial ( 5 ) & Factorial ( 5 ; 2 ) & Factorial ( 25 )", "1202015511210043330985984000000"},
      {"Pi & Sqrt ( 2 ) & Ln ( 2 ) & Log ( 1000 ) & Lg ( 8 ) & Round ( Degrees ( Pi ) ; 12 )",
       "3.14159265358979321.414213562373095.693147180559945333180"},
      {R"(Sum ( 1 ; 2.5 ; "" ; "x3" ) & "," & Count ( 1 ; "" ; "a" ; 0 ) & "," & Average ( 1 ; "" ; 2 ))", "6.5,3,1.5"},
      {R"(Min ( 3 ; "" ; 2 ) & Max ( 10 ; 9 ) & Max ( "10" ; "9" ) & Max ( "" ))", "2109"},
  });
  ExpectEach("error 1200", {"Sqrt ( -1 )", "Exp ( 5000 )", "Factorial ( 1e9 )"});
}

TEST(CalcFunctions, OfDatesAndTimes) {
  ExpectAll({
      {"Year ( \"2/29/2024\" ) & DayOfYear ( \"12/31/2024\" ) & WeekOfYear ( \"1/7/2024\" )", "20243662"},
      {"Date ( 13 ; 1 ; 2023 ) & Date ( 3 ; 0 ; 2024 ) & Date ( 0 ; 1 ; 2024 )", "1/1/20242/29/202412/1/2023"},
      {"DayName ( Date ( 1 ; 31 ; 2024 ) ) & DayOfWeek ( Date ( 1 ; 31 ; 2024 ) ) & MonthName ( 1 )",
       "Wednesday4January"},
      {"Time ( 1 ; 2 ; 70 ) & \",\" & ( Time ( 1 ; 0 ; 0 ) + 0 ) & \",\" & Time ( 0 ; -1 ; .5 )",
       "1:03:10,3600,-0:00:59.5"},
      {"Timestamp ( Date ( 1 ; 31 ; 2024 ) ; Time ( 13 ; 2 ; 3 ) ) & \",\" & Timestamp ( 1 ; 0 )",
       "1/31/2024 1:02:03 PM,1/1/1 12:00:00 AM"},
      {"Hour ( \"13:02:03.5\" ) & Minute ( \"1:02 PM\" ) & Seconds ( \"13:02:03.5\" ) & Hour ( \"12:30 AM\" )",
       "1323.50"},
      {R"(GetAsDate ( "2/29/2024" ) + 1 & "," & GetAsDate ( "366" ))", "738946,1/1/2"},
      {R"(GetAsTime ( "2:05 pm" ) & "," & GetAsTime ( 61 ) & "," & GetAsTime ( "" ))", "14:05:00,0:01:01,"},
      {R"(GetAsTimestamp ( 86400 ) & "," & GetAsDate ( GetAsTimestamp ( "1/2/2024 3:04:05 PM" ) ))",
       "1/2/1 12:00:00 AM,1/2/2024"},
  });
  ExpectEach("error 1200", {"Date ( 12 ; 32 ; 4000 )", "Date ( 1 ; 0 ; 1 )", "Date ( 1e20 ; 1 ; 1 )",
                            "GetAsDate ( \"2/30/2024\" )", "GetAsDate ( 1460971 )", "GetAsTime ( \"13:00 pm\" )"});
}

}  // namespace
