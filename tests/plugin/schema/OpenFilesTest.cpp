// Which names count as open files, and in which order.
#include "schema/OpenFiles.h"

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

TEST(BuildActiveFileList, MergesTheFourSourcesInOrderWithoutRepetitions) {
  ScriptedHost host;
  const fmx::ExprEnvUniquePtr env;
  host.answers = {{"Get(FileName)", " \tSales \n"},
                  {"WindowNames", "sales\rInvoices - Main\r \r\vSales\rSales (2)\rGröße\rGRÖßE\rGröße\rin ner"},
                  {"DatabaseNames", "Contacts.fmp12\rInvoices\rShop (old)\r"}};
  EXPECT_EQ(BuildActiveFileList(env.get(), "My Shop"),
            "Sales\nMy Shop\nInvoices\nInvoices - Main\n\vSales\nSales (2)\nGröße\nGRÖßE\nin ner\nContacts\nShop");
  EXPECT_EQ(host.asked, (std::vector<std::string>{"Get(FileName)", "WindowNames", "DatabaseNames"}));
}

}  // namespace
