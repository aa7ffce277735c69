// Which names count as open files, and in which order.
#include "schema/OpenFiles.h"

#include "support/Rows.h"
#include "support/ScriptedHost.h"

namespace {

TEST(WindowNameToFileName, CutsTheTitleStepByStep) { ExpectRows(DATA "/window-titles.txt", WindowNameToFileName); }

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
