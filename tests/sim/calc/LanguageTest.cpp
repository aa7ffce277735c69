// The grammar, the operators, the control functions and the error numbers.
#include <gtest/gtest.h>

#include "sim/calc/TestEnvironment.h"

namespace {

TEST(CalcTokens, AreReadAsFileMakerReadsThem) {
  ExpectAll({
      {"1 /* a /* nested */ \" */ + // to the end \" ) \r 2", "3"},
      {R"("/* no comment */" & "// nor this" & "say \"x\"" & "\\" & "a\nb")",
       R"(/* no comment */// nor thissay "x"\a\nb)"},
      {"\"a¶b\\¶\" & ¶ & \"b\"", "a\rb¶\rb"},
      {"1\u00A0+\u00A0Orders::Line Total", "13.5"},
      {".5 + 1.50 & \",\" & 007 & \",\" & 1e3 + 1E-1 + 1e+1", "2,7,1010.1"},
      {"get(filename) & GET ( FileName ) & (TRUE + false)", "OrdersOrders1"},
      {"Orders::Line Total + 1 & Orders::Line Total[1 + 1] & Orders :: Line Total", "13.5712.5"},
      {"${a-b} & ${Orders}::${Line Total}", "minus12.5"},
  });
  ExpectEach("error 102", {"NoSuchName", "Orders::Line Total[3]"});
}

TEST(CalcOperators, BindAssociateAndCompareAsMeasured) {
  ExpectEach("0", {"3 > 2 > 1", "If ( \"text0\" ; 1 ; 0 )", "GetAsBoolean ( \"\" )", "not (1/0)", "1 or 0 xor 1",
                   "\"é\" = \"e\"", "\"10\" > \"9\"", "0 = \"\""});
  ExpectEach(
      "1", {"not 2 ^ 0", "If ( \"abc2\" ; 1 ; 0 )", "If ( 1/0 ; 1 ; 0 )", "Case ( 1/0 ; 1 ; 0 )", "1/0 and 1", "0 ^ 0",
            "8 / 4 / 2", "1 & 2 = \"12\"", "1 < 2 < 3", "not 1 = 0", "1 or 1 and 0",
            "1 <> 2 and 1 ≠ 2 and 1 <= 1 and 1 ≤ 1 and 2 >= 1 and 2 ≥ 1", "\"abc\" = \"ABC\"", "\"é\" = \"e\u0301\"",
            "\"é\" < \"f\" and \"a\" < \"B\"", "10 > 9", "1.0 = 1", "Date ( 1 ; 1 ; 1 ) = 1", "1/0 = \"?\""});
  ExpectEach("3", {"10 - 4 - 3", "- - + 3"});
  ExpectEach("64", {"2 ^ 3 ^ 2", "4 + 5 * 12", "-8 ^ 2"});
}

TEST(CalcErrors, HaveFileMakersNumbers) {
  ExpectEach("error 15", {"1/0", "1 + 1/0 & \"x\"", "Left ( 1/0 ; 2 )", "not 1/0", "Mod ( 1 ; 0 )"});
  ExpectEach("error 1201", {"Left ( \"a\" )", "Left ( \"a\" ; )", "Let ( x = 1 )", "If ( 1 )",
                            "Substitute ( \"a\" ; [ \"b\" ] )", "Substitute ( \"a\" ; \"b\" )"});
  ExpectEach("error 1202", {"Abs ( 1 ; 2 )", "Get ( FileName ; 1 )", "Let ( x = 1 ; x ; x )", "If ( 1 ; 2 ; 3 ; 4 )"});
  ExpectEach("error 1204", {"List ( 1 ;; )", "List ( ; )", "Abs()", "1 +", "Abs", "{"});
  ExpectEach("error 1205", {"1 /* open", "/* /* */"});
  ExpectEach("error 1206", {"\"open"});
  ExpectEach("error 1207", {"Abs(-1", "(1", "1)"});
  ExpectEach("error 1208", {"Nope(1)"});
  ExpectEach("error 1209", {"A::", "$", "Let ( [ 1 ] ; 2 )"});
  ExpectEach("error 1211", {"Abs([1;2])", "[1]"});
  ExpectEach("error 1212", {"¶¶", "1 2", "\"a\"\"b\"", "5.", "1.2.3", "1_000", "1 ; 2"});
  ExpectEach("error 1215", {"Get(Nope)", "Get ( If ( 0 ; FileName ) )"});
}

TEST(CalcControl, EvaluateTellsItsErrorOnlyUntilItIsKept) {
  ExpectEach("2", {"Evaluate ( \"1 + 1\" )", "Evaluate ( \"2\" ; Name )", "Let ( $x = 1 ; Evaluate ( \"$x + 1\" ) )",
                   "Evaluate ( \"1 + 1\" ; [ Name ; Orders::Line Total ] )"});
  ExpectEach("error 102", {"Let ( x = 1 ; Evaluate ( \"x\" ) )", "GetField ( \"1 + 1\" )"});
  ExpectAll({
      {"Evaluate ( Quote ( \"a\\\"¶\\\\b\\¶\" ) )", "a\"\r\\b¶"},
      {"( Evaluate ( \"1 +\" ) = \"?\" ) & EvaluationError ( 7 )", "10"},
      {"EvaluationError ( Evaluate ( \"1 +\" ) ) & \",\" & EvaluationError ( Evaluate ( \"1/0\" ) )", "1204,15"},
      {"Let ( e = Evaluate ( \"1/0\" ) ; EvaluationError ( e ) & \",\" & IsEmpty ( e ) )", "0,1"},
      {"IsValidExpression ( \"1 + 1\" ) & IsValidExpression ( \"1 +\" )", "10"},
      {"GetFieldName ( Orders::Line Total[2] ) & EvaluationError ( GetFieldName ( 1 ) )", "Orders::Line Total1214"},
      {"GetField ( \"Orders::Line Total[2]\" ) & GetField ( \"Name\" )", "7Ann"},
  });
}

TEST(CalcControl, OnlyTheBranchTakenRuns) {
  ExpectEach("", {"If ( 0 ; 1 )", "Case ( 0 ; 1 ; 0 ; 2 )", "Choose ( 2 ; \"a\" ; \"b\" ) & Choose ( -1 ; \"a\" )"});
  ExpectEach("2", {"Case ( 0 ; 1 ; 1 ; 2 ; 1 ; 3 )", "If ( 1 ; 2 ; Let ( $$ran = 1 ; 3 ) ) & $$ran",
                   "Case ( 1 ; 2 ; Let ( $$ran = 1 ; 3 ) ; 4 ) & $$ran", "Case ( 0 ; 1 ; 2 )",
                   "Choose ( 0 ; 2 ; Let ( $$ran = 1 ; 3 ) ) & $$ran", "Choose ( 1 ; 1 ; 2 )"});
  ExpectEach("01", {"(0 and Let ( $$ran = 1 ; 3 )) & $$ran"});
}

TEST(CalcControl, LetNamesHideOuterOnesAndEndWithTheCall) {
  ExpectAll({
      {"Let ( [ x = 1 ; y = x + 1 ; x = x + 10 ] ; x & \",\" & y )", "11,2"},
      {"Let ( X = 1 ; Let ( x = x + 1 ; x ) & x )", "21"},
      {"Let ( Name = \"Bob\" ; Name ) & Name", "BobAnn"},
      {"Let ( x = 1 ; x ) & x", "error 102"},
      {"Let ( [] ; 3 )", "3"},
      {"Let ( [ $a[2] = 5 ; $$b = 6 ] ; $a[2] & $a & $$b ) & $A[1 + 1] & $$undefined[7]", "565"},
  });
}

TEST(CalcControl, WhileGoesRoundUntilItsConditionFails) {
  ExpectEach("1234", {"While ( [ i = 0 ; s = \"\" ] ; i < 4 ; [ i = i + 1 ; s = s & i ] ; s )"});
  ExpectEach("error 1200", {"While ( i = 0 ; i < 50001 ; i = i + 1 ; i )"});
}

TEST(CalcFunctions, OfTheFileSeeTheirParametersOnly) {
  TestEnvironment environment;
  environment.customFunctions = {
      {u"Twice", {u"n"}, u"n * 2"},
      {u"Limit", {}, u"42"},
      {u"Sum To", {u"n"}, u"If ( n < 1 ; 0 ; n + Sum To ( n - 1 ) )"},
      {u"Shadow", {u"Name"}, u"Name & outer"},
  };
  ExpectAll(
      {
          {"twice ( 4 ) + Limit + Limit() + Evaluate ( \"Twice ( 3 )\" )", "98"},
          {"Sum To ( 100 )", "5050"},
          {"Let ( outer = 1 ; Shadow ( \"Bob\" ) )", "error 102"},
      },
      environment);
}

}  // namespace
