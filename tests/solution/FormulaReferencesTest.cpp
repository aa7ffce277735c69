#include "formula/FormulaReferences.h"

#include "solution/SampleDesign.h"

namespace solution {
namespace {

// "field ID@Orders, customFunction Net": the kind, the name as written, of a related field the occurrence.
std::string Found(std::string_view formula, const FormulaScope& scope) {
  std::string text;
  for (const FormulaReference& reference : FindReferences(Sample(), formula, scope)) {
    text += text.empty() ? "" : ", ";
    text += std::string(NamesOf(reference.kind).word) + ' ' + std::string(reference.text);
    if (!reference.occurrence.empty()) text += '@' + std::string(reference.occurrence);
    if (reference.target == nullptr) text += '?';
  }
  return text;
}

struct Row {
  const char* formula;
  const char* found;
};

TEST(FormulaReferences, FindsNamesInEveryLanguage) {
  const FormulaScope orders{Sample().Find(Kind::kTable, "Orders"), {"rate"}};
  constexpr Row kRows[] = {
      {"", ""},
      {"Quantity * Price", "field Quantity, field Price"},
      {"Line Total", "field Line Total"},
      {"QUANTITY", "field QUANTITY"},
      {"ID&Quantity", "field ID, field Quantity"},
      {"Orders::Line Total", "tableOccurrence Orders, field Line Total@Orders"},
      {"orders CUSTOMER::Name", "tableOccurrence orders CUSTOMER, field Name@orders CUSTOMER"},
      {"Orders::Status[2]", "tableOccurrence Orders, field Status@Orders"},
      // Operators are words of the language, too.
      {"Quantity and Price", "field Quantity, field Price"},
      {"Quantity und nicht Price", "field Quantity, field Price"},
      {"Orders::ID ODER NICHT Customers::Name",
       "tableOccurrence Orders, field ID@Orders, tableOccurrence Customers, field Name@Customers"},
      {"Orders::ID et Net ( 1 )", "tableOccurrence Orders, field ID@Orders, customFunction Net"},
      {"Falls ( IstLeer ( Status ) ; 1 )", "field Status"},
      // Quoted names
      {"${a + b} + 1", "field a + b"},
      {"Orders::${a + b}", "tableOccurrence Orders, field a + b@Orders"},
      {"${orders CUSTOMER}::${and}", "tableOccurrence orders CUSTOMER, field and@orders CUSTOMER"},
      {"${Customers::and}", "tableOccurrence Customers, field and@Customers"},
      // Custom functions
      {"VAT.Rate", "customFunction VAT.Rate"},
      {"1 + vat.rate / Net(Price;0)", "customFunction vat.rate, customFunction Net, field Price"},
      // Texts, comments and variables hide names.
      {"\"Price \\\" Price\" & Status", "field Status"},
      {"Price // Status\rStatus", "field Price, field Status"},
      {"/* Price /* ID */ Price */ Status", "field Status"},
      {"$Price + $$Price", ""},
      {"Get ( Status ) & Hole ( Status )", ""},
      {"rate * Price", "field Price"},
      {"\u00B6&Price\u2260ID", "field Price, field ID"},
      // Let and While declare names, which are known after their own value and until the call ends.
      {"Let ( Price = Price + 1 ; Price ) + Price", "field Price, field Price"},
      {"SetzeVar ( [ Price = ID ; ID = 2 ] ; Price + ID ) + ID", "field ID, field ID"},
      {"Definir ( [ $x = Price ; Price[2] = 1 ] ; Price )", "field Price"},
      {"Let ( a = Let ( Price = 1 ; Price ) ; Price )", "field Price"},
      {"While ( [ Price = 1 ] ; Price < ID ; [ Price = Price + 1 ; ID = 3 ] ; ID )", "field ID"},
      {"If ( Price = 1 ; Price )", "field Price, field Price"},
      {"Substitute ( Status ; [ Price ; 1 ] ; [ ID = 1 ; 2 ] )", "field Status, field Price, field ID"},
      // What is in another file or was deleted
      {"Stock::On Hand and ID", "tableOccurrence Stock, field On Hand@Stock?, field ID"},
      {"Orders::Gone", "tableOccurrence Orders, field Gone@Orders?"},
      {"<Field Missing> + ID", "field <Field Missing>?, field ID"},
      {"/*<Function Missing> ( 2 ) + 4*/", "customFunction <Function Missing>?"},
      {"<Tabelle nicht vorhanden>", "tableOccurrence <Tabelle nicht vorhanden>?"},
      {"ID < Price and Price > 1", "field ID, field Price, field Price"},
      {"/* see <Price> */", ""},
      // Not a formula
      {"Let ( [ Price = ", ""},
      {"Orders::", "tableOccurrence Orders"},
      {"\"open", ""},
      {")]}: ${", ""},
  };
  for (const Row& row : kRows) EXPECT_EQ(Found(row.formula, orders), row.found) << row.formula;
}

TEST(FormulaReferences, TakesBareNamesForFieldsOnlyWithinATable) {
  EXPECT_EQ(Found("Price + Orders::ID", {}), "tableOccurrence Orders, field ID@Orders");
}

}  // namespace
}  // namespace solution
