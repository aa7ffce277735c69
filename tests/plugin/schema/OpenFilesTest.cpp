// Which names count as open files, and in which order.
#include "schema/OpenFiles.h"

#include "bridge/ContextFunctions.h"

#include <gtest/gtest.h>

#include "core/State.h"
#include "support/ScriptedHost.h"

namespace {

TEST(WindowNameToFileName, CutsTheTitleStepByStep) {
  const std::pair<const char*, const char*> cases[] = {
      {"A (2) - B.fmp12", "A"},
      {"A - B (1)", "A"},
      {"Sales.FMP12", "Sales"},
      {"x.fmp12.fmp12", "x.fmp12"},
      {".fmp12", ".fmp12"},
      {"A(2)-B", "A(2)-B"},
      {" (2)", ""},
      {"", ""},
  };
  for (const auto& [title, name] : cases) EXPECT_EQ(WindowNameToFileName(title), name) << title;
}

TEST(AddUniqueName, TrimsAndComparesWithoutAsciiCase) {
  std::vector<std::string> names;
  for (const char* candidate :
       {" \t\r\nSales \n", "sales", "", " \r", "\vSales", "Größe", "GRÖßE", "Größe", "in ner"}) {
    AddUniqueName(names, candidate);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Sales", "\vSales", "Größe", "GRÖßE", "in ner"}));
}

struct OpenFiles : testing::Test {
  ~OpenFiles() override { g_registeredFileName.clear(); }
  ScriptedHost host;
};

TEST_F(OpenFiles, MergesTheFourSourcesInOrder) {
  host.answers = {{"Get(FileName)", "Sales"},
                  {"WindowNames", "sales\rInvoices - Main\r\rSales (2)\rPlain"},
                  {"DatabaseNames", "Contacts.fmp12\rInvoices\rShop (old)\r"}};
  g_registeredFileName = "My Shop";
  EXPECT_EQ(CallHandler(Do_ListFiles), "Sales\nMy Shop\nInvoices\nInvoices - Main\nSales (2)\nPlain\nContacts\nShop");
  EXPECT_EQ(host.asked, (std::vector<std::string>{"Get(FileName)", "WindowNames", "DatabaseNames"}));
}

}  // namespace
