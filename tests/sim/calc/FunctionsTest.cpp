// The engine's own functions, one table for each topic.
#include <gtest/gtest.h>

#include "sim/calc/TestEnvironment.h"

namespace {

TEST(CalcFunctions, OfText) {
  ExpectAll({
      {R"(Left ( "abc" ; 2 ) & Left ( "abc" ; 9 ) & Left ( "abc" ; -1 ))", "ababc"},
      {R"(Right ( "abc" ; 2 ) & Right ( "abc" ; 9 ) & Right ( "abc" ; 0 ))", "bcabc"},
      {R"(Middle ( "abcdef" ; 3 ; 2 ) & "," & Middle ( "abc" ; -5 ; 2 ) & "," & Middle ( "abc" ; 2 ; 99 ))",
       "cd,ab,bc"},
      {R"(Length ( "abc" ) & Length ( 12.50 ) & Replace ( "abcdef" ; 2 ; 3 ; "X" ))", "34aXef"},
      {R"(Upper ( "straße ié" ) & Lower ( "ÀBI" ) & Proper ( "mISSI élan" ))", "STRASSE IÉàbiMissi Élan"},
      {"Exact ( \"a\" ; \"A\" ) & Exact ( \"a\" ; \"a\" ) & Exact ( \"é\" ; \"e\u0301\" )", "010"},
      {R"(Filter ( "(408)555-1212" ; "0123456789" ) & Filter ( "aAb" ; "A" ))", "4085551212A"},
      {R"(Char ( 65 ) & Char ( 0 ) & Char ( 9800097 ) & Code ( "ab" ) & Code ( "" ))", "Aab9800097"},
      {R"(Base64Encode ( "ab" ) & Base64EncodeRFC ( 4648 ; "abc" ))", "YWI=\r\nYWJj"},
      {R"(Base64Decode ( Base64Encode ( "Größe 漢" ) ) & HexEncode ( "aÿ" ))", "Größe 漢61C3BF"},
  });
}

TEST(CalcFunctions, ThatSearch) {
  ExpectAll({
      {R"(Position ( "Mississippi" ; "ISS" ; 1 ; 1 ) & Position ( "Mississippi" ; "iss" ; 3 ; 1 ))", "25"},
      {R"(Position ( "abc" ; "a" ; -3 ; 1 ) & Position ( "abc" ; "" ; 1 ; 1 ) & Position ( "abc" ; "a" ; 9 ; 1 ))",
       "100"},
      {R"(PatternCount ( "Mississippi" ; "issi" ) & PatternCount ( "aAa" ; "a" ) & PatternCount ( "abc" ; "" ))",
       "130"},
      {R"(Substitute ( "abA" ; "a" ; "xy" ) & Substitute ( "abc" ; "" ; "x" ) & Substitute ( "aaa" ; "aa" ; "b" ))",
       "xybAabcba"},
  });
}

TEST(CalcFunctions, OfLists) {
  ExpectAll({
      {R"(ValueCount ( "a¶b" ) & ValueCount ( "a¶b¶" ) & ValueCount ( "¶¶b" ) & ValueCount ( "" ))", "2230"},
      {R"(GetValue ( "a¶b¶c" ; 2 ) & GetValue ( "a¶b" ; 3 ) & GetValue ( "a" ; 0 ))", "b"},
      {R"(LeftValues ( "a¶b¶c" ; 2 ) & RightValues ( "a¶b¶c" ; 2 ) & MiddleValues ( "a¶b¶c" ; 2 ; 1 ))",
       "a\rb\rb\rc\rb\r"},
      {R"(List ( "a" ; "" ; 2 ; "b¶c" ))", "a\r2\rb\rc"},
  });
}

TEST(CalcFunctions, OfJson) {
  TestEnvironment environment;
  environment.locals[{u"j", 1}] =
      calc::Value::OfText(u"{\"b\":[1,\"two\",{\"c.d\":true}],\"a\":{\"n\":null,\"x\":0.5},\"e\":\"\\u00e9\"}");
  ExpectAll(
      {
          {R"(JSONGetElement ( $j ; "b[1]" ) & JSONGetElement ( $j ; "b[2]['c.d']" ) & JSONGetElement ( $j ; "e" ))",
           "two1é"},
          {R"(JSONGetElement ( $j ; "a" ) & JSONGetElement ( $j ; "a.x" ) & JSONGetElement ( $j ; "a.n" ))",
           R"({"n":null,"x":0.5}.5)"},
          {R"(JSONGetElement ( $j ; "no.such[3]" ) & JSONGetElement ( "[7,8]" ; 1 ) & JSONGetElement ( $j ; "b[9" ))",
           "8"},
          {R"(JSONListKeys ( $j ; "" ) & "," & JSONListKeys ( $j ; "b" ) & "," & JSONListValues ( $j ; "b" ))",
           "a\rb\re,0\r1\r2,1\rtwo\r{\"c.d\":true}"},
          {R"(JSONGetElementType ( $j ; "b" ) & JSONGetElementType ( $j ; "a.n" ) & JSONGetElementType ( $j ; "e" ))",
           "461"},
          {R"(JSONDeleteElement ( $j ; "b" ) & JSONDeleteElement ( "[1,2]" ; 0 ) & JSONDeleteElement ( "[1]" ; "x.y" ))",
           R"({"a":{"n":null,"x":0.5},"e":"é"}[2][1])"},
          {R"(JSONSetElement ( "" ; [ "a.b[1]" ; 1.5 ; JSONNumber ] ; [ "z" ; "1" ; JSONBoolean ] ))",
           R"({"a":{"b":[null,1.5]},"z":true})"},
          {R"(JSONSetElement ( "[]" ; 0 ; "[1]" ; JSONArray ) & JSONSetElement ( "" ; "k" ; "a\"b" ; JSONString ))",
           R"([[1]]{"k":"a\"b"})"},
          {R"(JSONSetElement ( "{}" ; "[99999999]" ; 1 ; JSONNumber ))", "? * Invalid path."},
          {R"(JSONFormatElements ( "{\"a\":[1,{}],\"b\":2}" ))",
           "{\r\t\"a\" : \r\t[\r\t\t1,\r\t\t{}\r\t],\r\t\"b\" : 2\r}"},
          {R"(JSONGetElement ( "{ oops" ; "a" ))",
           "? * Line 1, Column 3\r  Syntax error: value, object or array expected."},
      },
      environment);
}

TEST(CalcFunctions, OfNumbers) {
  ExpectAll({
      {R"x(GetAsNumber ( "12abc34" ) & "," & GetAsNumber ( "2 - 2" ) & "," & GetAsNumber ( "(22)" ))x", "1234,22,-22"},
      {R"(Round ( 2.5 ; 0 ) & "," & Round ( -2.345 ; 2 ) & "," & Round ( 155 ; -1 ) & "," & Round ( 49 ; -2 ))",
       "3,-2.35,160,0"},
      {"Truncate ( -29.343 ; 2 ) & Int ( -1.9 ) & Floor ( -1.1 ) & Ceiling ( -2.9 ) & Abs ( -3 ) & Sign ( -3 )",
       "-29.34-1-2-23-1"},
      {"Mod ( -1 ; 3 ) & Mod ( 7 ; -3 ) & Mod ( 5.5 ; 2 ) & Div ( -5 ; 2 ) & Div ( 2.5 ; 2 )", "2-21.5-31"},
      {R"(Sum ( 1 ; 2.5 ; "" ; "x3" ) & "," & Count ( 1 ; "" ; "a" ; 0 ) & "," & Average ( 1 ; "" ; 2 ))", "6.5,3,1.5"},
  });
}

TEST(CalcNumbers, AreDecimalWithSixteenDigitsAfterThePoint) {
  ExpectAll({
      {"0.250 & (-0.5) & 1e-20 & (0.1 + 0.2)", ".25-.5.00000000000000000001.3"},
      {"123456789012345678901234567890 + 987654321098765432109876543210", "1111111110111111111011111111100"},
      {"123456789012345678901234567890 * 987654321098765432109876543210",
       "121932631137021795226185032733622923332237463801111263526900"},
      {"2 / -3 & 3 ^ -1 & 1e20 / 3", "-.6666666666666667.333333333333333333333333333333333333.3333333333333333"},
      {"3 ^ 100 & \",\" & 0.5 ^ 1e30 & (-1) ^ (1e300 + 1)", "515377520732011331036461129765621272702107522001,0-1"},
  });
}

TEST(CalcFunctions, OfDatesAndTimes) {
  ExpectAll({
      {"Date ( 13 ; 1 ; 2023 ) & Date ( 3 ; 0 ; 2024 ) & Date ( 0 ; 1 ; 2024 )", "1/1/20242/29/202412/1/2023"},
      {"DayName ( Date ( 1 ; 31 ; 2024 ) ) & DayOfWeek ( Date ( 1 ; 31 ; 2024 ) ) & MonthName ( 1 )",
       "Wednesday4January"},
      {"Timestamp ( Date ( 1 ; 31 ; 2024 ) ; Time ( 13 ; 2 ; 3 ) ) & \",\" & Timestamp ( 1 ; 0 )",
       "1/31/2024 1:02:03 PM,1/1/1 12:00 AM"},
      {R"(GetAsDate ( "2/29/2024" ) + 1 & "," & GetAsDate ( "366" ))", "738946,1/1/2"},
  });
  ExpectEach("error 1200", {"Date ( 12 ; 32 ; 4000 )", "GetAsDate ( \"2/30/2024\" )"});
}

}  // namespace
