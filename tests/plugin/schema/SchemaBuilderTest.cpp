// The schema document: which expressions are evaluated, in which order, and the exact JSON.
#include "schema/SchemaBuilder.h"

#include <gtest/gtest.h>

#include "support/ScriptedHost.h"

namespace {

using Strings = std::vector<std::string>;

const std::string kQuery =
    "ExecuteSQL(\"SELECT TableName, FieldName, FieldType, FieldClass FROM FileMaker_Fields WHERE TableName NOT LIKE "
    "''Sys%'' ORDER BY TableName, FieldName\"; \"||\"; Char(13))";

struct SchemaBuilder : testing::Test {
  SchemaBuilder() {
    host.answers = {
        {"Get(FileName)", "Sales"}, {"Get(AccountName)", "CORP\\Admin"}, {"Get(PrivilegeSetName)", "[Full Access]"}};
  }
  std::string Tables(const std::string& queryResult) {
    host.answers[kQuery] = queryResult;
    const std::string json = CallHandler(Do_GetSchema);
    const auto start = json.find("\"tables\":");
    return start == json.npos ? json : json.substr(start + 9, json.find(",\"scripts\"") - start - 9);
  }
  ScriptedHost host;
};

TEST_F(SchemaBuilder, TakesTablesFromTheQueryAndNamesFromDesignFunctions) {
  host.answers[kQuery] =
      "Orders||ID||varchar||Normal\rOrders||Total \"net\"||decimal||Calculated\rÄpfel||n||date||Summary";
  host.answers["ScriptNames(Get(FileName))"] = "Start\r-\rVarnix Live Push";
  host.answers["LayoutNames(Get(FileName))"] = "Orders\r\rList\r";
  host.answers["ValueListNames(Get(FileName))"] = "Back\\slash";
  host.answers["PrivilegeSetNames(Get(FileName))"] = "[Full Access]";
  host.answers["CustomFunctionNames(\"Sales\")"] = "Add\nSub";
  EXPECT_EQ(CallHandler(Do_GetSchema),
            "{\"file\":\"Sales\",\"account\":\"CORP\\\\Admin\",\"tables\":["
            "{\"name\":\"Orders\",\"fields\":[{\"name\":\"ID\",\"type\":\"varchar\",\"class\":\"Normal\"},"
            "{\"name\":\"Total \\\"net\\\"\",\"type\":\"decimal\",\"class\":\"Calculated\"}]},"
            "{\"name\":\"Äpfel\",\"fields\":[{\"name\":\"n\",\"type\":\"date\",\"class\":\"Summary\"}]}],"
            "\"scripts\":[\"Start\",\"-\",\"Varnix Live Push\"],\"layouts\":[\"Orders\",\"List\"],"
            "\"valueLists\":[\"Back\\\\slash\"],\"privilegeSets\":[\"[Full Access]\"],"
            "\"customFunctions\":[\"Add\",\"Sub\"]}");
  EXPECT_EQ(host.asked,
            (Strings{"Get(FileName)", "Get(AccountName)", "Get(PrivilegeSetName)", kQuery, "ScriptNames(Get(FileName))",
                     "LayoutNames(Get(FileName))", "ValueListNames(Get(FileName))", "PrivilegeSetNames(Get(FileName))",
                     "CustomFunctionNames(\"Sales\")"}));
}

TEST_F(SchemaBuilder, ReadsRowsByTheirFirstThreeSeparators) {
  const std::pair<std::string, std::string> cases[] = {
      {"T||F||varchar", R"([{"name":"T","fields":[{"name":"F","type":"varchar","class":""}]}])"},
      {"T||F\rT||G||x||y", R"([{"name":"T","fields":[{"name":"G","type":"x","class":"y"}]}])"},
      {"T||F||varchar||Normal||x", R"([{"name":"T","fields":[{"name":"F","type":"varchar","class":"Normal||x"}]}])"},
      {"||||||", R"([{"name":"","fields":[{"name":"","type":"","class":""}]}])"},
      {" T ||| F||t||c", R"([{"name":" T ","fields":[{"name":"| F","type":"t","class":"c"}]}])"},
      // A table keeps the place of its first row, and gets the fields of all its rows.
      {"B||1||t||c\rA||2||t||c\n\rB||3||t||c",
       R"([{"name":"B","fields":[{"name":"1","type":"t","class":"c"},{"name":"3","type":"t","class":"c"}]},)"
       R"({"name":"A","fields":[{"name":"2","type":"t","class":"c"}]}])"},
  };
  for (const auto& [rows, tables] : cases) EXPECT_EQ(Tables(rows), tables) << rows;
}

TEST_F(SchemaBuilder, FallsBackToDesignFunctionsOfTheCurrentFileWhenTheQueryGivesNoRows) {
  for (const char* unusable : {"?", "", "no separators\rA||B"}) {
    host.asked.clear();
    host.answers["TableNames(Get(FileName))"] = "A\rB x\r\rA";
    host.answers["FieldNames(Get(FileName); \"A\")"] = "f";
    const std::string table =
        R"({"name":"A","fields":[{"name":"f","type":"","class":""},{"name":"f","type":"","class":""}]})";
    EXPECT_EQ(Tables(unusable), "[" + table + R"(,{"name":"B x","fields":[]},)" + table + "]");
    EXPECT_EQ(Strings(host.asked.begin() + 4, host.asked.begin() + 8),
              (Strings{"TableNames(Get(FileName))", "FieldNames(Get(FileName); \"A\")",
                       "FieldNames(Get(FileName); \"B x\")", "FieldNames(Get(FileName); \"A\")"}));
  }
}

TEST_F(SchemaBuilder, AddressesAnotherFileByItsNameEvenIfOnlyTheCaseDiffers) {
  host.answers["TableNames(\"sales\")"] = "T";
  host.answers["FieldNames(\"sales\"; \"T\")"] = "f";
  host.answers["CustomFunctionNames(\"sales\")"] = "?";
  host.answers["CustomFunctionNames()"] = "Own";
  EXPECT_EQ(CallHandler(Do_GetSchema, {"sales"}),
            "{\"file\":\"sales\",\"account\":\"CORP\\\\Admin\",\"tables\":[{\"name\":\"T\",\"fields\":[{\"name\":\"f\","
            "\"type\":\"\",\"class\":\"\"}]}],\"scripts\":[],\"layouts\":[],\"valueLists\":[],\"privilegeSets\":[],"
            "\"customFunctions\":[\"Own\"]}");
  EXPECT_EQ(host.asked, (Strings{"Get(FileName)", "Get(AccountName)", "Get(PrivilegeSetName)", "TableNames(\"sales\")",
                                 "FieldNames(\"sales\"; \"T\")", "ScriptNames(\"sales\")", "LayoutNames(\"sales\")",
                                 "ValueListNames(\"sales\")", "PrivilegeSetNames(\"sales\")",
                                 "CustomFunctionNames(\"sales\")", "CustomFunctionNames()"}));
}

TEST_F(SchemaBuilder, DoesNotEvaluateANameThatWouldEndItsLiteralElsewhere) {
  const std::pair<const char*, bool> names[] = {{R"(T" ) & Beep & ( ")", false},
                                                {R"(T\")", false},
                                                {R"(T\)", false},
                                                {R"(T\\\)", false},
                                                {R"(T\\)", true},
                                                {R"(\T)", true}};
  for (const auto& [name, isEvaluated] : names) {
    const std::string quoted = std::string("\"") + name + '"';
    host.asked.clear();
    host.answers = {{"Get(FileName)", name}, {"TableNames(Get(FileName))", name}};
    EXPECT_NE(CallHandler(Do_GetSchema).find("\"fields\":[]}"), std::string::npos) << name;
    const Strings ofItsName = {"FieldNames(Get(FileName); " + quoted + ")", "CustomFunctionNames(" + quoted + ")"};
    Strings expected = {"Get(FileName)",
                        "Get(AccountName)",
                        "Get(PrivilegeSetName)",
                        kQuery,
                        "TableNames(Get(FileName))",
                        "ScriptNames(Get(FileName))",
                        "LayoutNames(Get(FileName))",
                        "ValueListNames(Get(FileName))",
                        "PrivilegeSetNames(Get(FileName))",
                        "CustomFunctionNames()"};
    if (isEvaluated) {
      expected.insert(expected.begin() + 5, ofItsName[0]);
      expected.insert(expected.end() - 1, ofItsName[1]);
    }
    EXPECT_EQ(host.asked, expected) << name;
    host.asked.clear();
    CallHandler(Do_GetSchema, {name + std::string("x\"")});
    EXPECT_EQ(host.asked, (Strings{"Get(FileName)", "Get(AccountName)", "Get(PrivilegeSetName)"})) << name;
  }
}

TEST_F(SchemaBuilder, IsAnEmptyObjectWithoutFurtherQuestionsWhenNoTableIsFound) {
  host.answers["TableNames(Get(FileName))"] = "T";
  EXPECT_EQ(CallHandler(Do_GetSchema, {"Sales"}), CallHandler(Do_GetSchema)) << "the current file, named exactly";
  EXPECT_EQ(CallHandler(Do_GetSchema, {"Nowhere"}), "{}");
  EXPECT_EQ(host.asked.back(), "TableNames(\"Nowhere\")");
  EXPECT_EQ(BuildSchema(nullptr, ""), "{}");
}

}  // namespace
