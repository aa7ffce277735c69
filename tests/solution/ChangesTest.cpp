#include "changes/Changes.h"

#include "changes/LineDiff.h"
#include "changes/Order.h"
#include "solution/SampleDesign.h"

namespace solution {
namespace {

std::string Lines(const Comparison& comparison) {
  std::string lines;
  for (const Change& change : comparison.changes) {
    const Element& element = *(change.newer == nullptr ? change.older : change.newer);
    lines +=
        std::string(WordOf(change.change)) + ' ' + std::string(NamesOf(element.kind).word) + ' ' + DisplayName(element);
    const char* separator = ": ";
    for (const PropertyChange& property : change.properties) {
      lines += separator + property.name;
      separator = ", ";
    }
    lines += '\n';
  }
  return lines;
}

std::string ChangesTo(std::string text) { return Lines(Compare(Sample(), *ReadText(std::move(text)))); }

std::string All(std::string text, std::string_view from, std::string_view to) {
  for (auto at = text.find(from); at != text.npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

TEST(Changes, FindExactlyTheOnePropertyThatChanged) {
  constexpr struct {
    const char *from, *to, *change;
  } kRows[] = {
      {"<Minimum version=\"12.0\"", "<Minimum version=\"13.0\"", "edited file Orders.fmp12: Minimum/version"},
      {"FileAccessCatalog required=\"True\"", "FileAccessCatalog required=\"False\"",
       "edited file Orders.fmp12: required"},
      {">open sesame<", ">abracadabra<", "edited file Orders.fmp12: Login/INSECURE_PASSWORD"},
      {"about Orders", "About", "edited table Orders: comment"},
      {"<BaseTable id=\"129\" name=\"Orders\"", "<BaseTable id=\"129\" name=\"Sales\"", "renamed table Sales: name"},
      {"comment=\"the key\"", "comment=\"a key\"", "edited field Orders::ID: comment"},
      {"name=\"Status\" fieldtype", "name=\"State\" fieldtype", "renamed field Orders::State: name"},
      {"storeCalculationResults=\"False\"", "storeCalculationResults=\"True\"",
       "edited field Orders::Line Total: Storage/storeCalculationResults"},
      {"Price * q", "Price + q", "edited field Orders::Line Total: Calculation"},
      {"operation=\"Total\"", "operation=\"List\"", "edited field Orders::Sum of Totals: SummaryInfo/operation"},
      {"overwriteExisting=\"True\"", "overwriteExisting=\"False\"",
       "edited field Orders::Price: AutoEnter/overwriteExisting"},
      {"Message>wrong<", "Message>bad<", "edited field Orders::Price: Validation/Message"},
      {"top=\"10\" left=\"20\"", "top=\"15\" left=\"20\"", "edited tableOccurrence Orders: CoordRect"},
      {"cascadeCreate=\"True\"", "cascadeCreate=\"False\"",
       "edited relationship Orders <-> orders CUSTOMER: RightTable/cascadeCreate"},
      {"JoinPredicate type=\"Equal\"", "JoinPredicate type=\"Less\"",
       "edited relationship Orders <-> orders CUSTOMER: JoinPredicateList/JoinPredicate 1/type"},
      {"width=\"600\"", "width=\"610\"", "edited layout Order Form: width"},
      {"size=\"400\"", "size=\"410\"", "edited layout Order Form: Part Body/Definition/size"},
      {"= \"\"]]>", "= \"x\"]]>", "edited layout Order Form: Button 2/Conditions/Hide"},
      {"action=\"OnRecordLoad\" browseMode=\"True\"", "action=\"OnRecordLoad\" browseMode=\"False\"",
       "edited layout Order Form: ScriptTriggers/ScriptTrigger/browseMode"},
      {"hidden=\"False\" access", "hidden=\"True\" access", "edited script Start: Options/hidden"},
      {"prepares&#13;everything", "prepares nothing", "edited script Start: steps"},
      {"name=\"Import Records\" enable=\"True\"", "name=\"Import Records\" enable=\"False\"",
       "edited script Start: steps"},
      {"Map kind=\"1\"", "Map kind=\"0\"", "edited script Start: steps"},
      {"Open\rClosed", "Open\rDone", "edited valueList Status: CustomValues/Text"},
      {"PrimaryField show=\"True\" sort=\"True\"", "PrimaryField show=\"True\" sort=\"False\"",
       "edited valueList People: Field/PrimaryField/sort"},
      {"[CDATA[0.2]]", "[CDATA[0.3]]", "edited customFunction VAT.Rate: Calculation"},
      {"Parameter name=\"rate\"", "Parameter name=\"percent\"", "edited customFunction Net: Parameter 2/name"},
      {">for clerks<", ">for all<", "edited customMenu Orders Menu: Comment"},
      {"name=\"Office\" comment=\"c\"", "name=\"Office\" comment=\"d\"", "edited customMenuSet Office: comment"},
      {"color: black", "color: red", "edited theme com.example.theme: CSS"},
      {"enable=\"True\">\n\t\t\t\t\t\t<UUID", "enable=\"False\">\n\t\t\t\t\t\t<UUID", "edited account clerk: enable"},
      {"c2VjcmV0", "c2VjcmV1", "edited account clerk: Authentication/INSECURE_PASSWORD"},
      {"INSECURE_TEXT>clerk<", "INSECURE_TEXT>chief<", "renamed account chief: name"},
      {"Scripts Create=\"False\"", "Scripts Create=\"True\"", "edited privilegeSet Clerks: access/Scripts/Create"},
      {">Access by network<", ">Network<", "edited extendedPrivilege fmapp: Description"},
      {"file:Warehouse", "file:Depot", "edited externalDataSource Warehouse: File/UniversalPathList"},
      {"relativeTo=\"True\"", "relativeTo=\"False\"", "edited baseDirectory Orders/: relativeTo"},
      {"name=\"Admin\" isFolder", "name=\"Tools\" isFolder", "renamed folder Tools: name"},
  };
  for (const auto& row : kRows) EXPECT_EQ(ChangesTo(SampleWith(row.from, row.to)), std::string(row.change) + '\n');
}

TEST(Changes, NeverShowPasswords) {
  const auto newer = ReadText(SampleWith("c2VjcmV0", "c2VjcmV1"));
  const Comparison comparison = Compare(Sample(), *newer);
  ASSERT_EQ(comparison.changes.size(), 1u);
  EXPECT_EQ(comparison.changes[0].properties[0].newer, "(hidden)");
}

TEST(Changes, IgnoreBookkeeping) {
  EXPECT_EQ(ChangesTo(SampleText()), "");
  EXPECT_EQ(ChangesTo(SampleWith("ChunkList hash=\"0\"", "ChunkList hash=\"1\"")), "");
  EXPECT_EQ(ChangesTo(SampleWith("modifications=\"3\" userName=\"Ann\"", "modifications=\"4\" userName=\"Bob\"")), "");
  EXPECT_EQ(ChangesTo(SampleWith(" comment=\"\">", ">")), "");
}

// FileMaker writes the new name into every formula, step and object that uses the element.
TEST(Changes, OfANameChangeNothingElse) {
  EXPECT_EQ(ChangesTo(All(SampleText(), "Line Total", "Sum")), "renamed field Orders::Sum: name\n");
  EXPECT_EQ(ChangesTo(All(SampleText(), "orders CUSTOMER", "buyer")), "renamed tableOccurrence buyer: name\n");
  EXPECT_EQ(ChangesTo(All(SampleText(), "VAT.Rate", "VAT")), "renamed customFunction VAT: name\n");
  EXPECT_EQ(ChangesTo(All(SampleText(), "\"Reset\"", "\"Clear\"")), "renamed script Clear: name\n");
}

TEST(Changes, FindAddedRemovedAndMovedElements) {
  const std::string log = "<Script id=\"4\" name=\"Log\">";
  std::string text = SampleText();
  const auto start = text.find(log), end = text.find("</Script>", start) + 9;
  const std::string script = text.substr(start, end - start);
  text.erase(start, end - start);
  const std::string moved = std::string(text).insert(text.find("<Script id=\"7\" name=\"Unused\""), script);
  EXPECT_EQ(ChangesTo(moved), "moved script Log: folder\n");
  const std::string first = std::string(text).insert(text.find("<Script id=\"3\" name=\"Reset\""), script);
  EXPECT_EQ(ChangesTo(first), "moved script Log: order\n");

  const auto without =
      ReadText(All(text, "<ScriptReference id=\"4\" name=\"Log\"", "<ScriptReference id=\"7\" name=\"Unused\""));
  EXPECT_EQ(Lines(Compare(Sample(), *without)).substr(0, 19), "edited layout Order");
  EXPECT_NE(Lines(Compare(Sample(), *without)).find("removed script Log\n"), std::string::npos);
  EXPECT_NE(Lines(Compare(*without, Sample())).find("added script Log\n"), std::string::npos);
}

TEST(Changes, ShowAWholeLayoutObjectAsOne) {
  std::string text = SampleText();
  const auto start = text.find("<LayoutObject id=\"5\""), end = text.find("</LayoutObject>", start) + 15;
  const auto without = ReadText(text.erase(start, end - start));
  EXPECT_EQ(Lines(Compare(Sample(), *without)), "edited layout Order Form: Text 5\n");
  EXPECT_EQ(Lines(Compare(*without, Sample())), "edited layout Order Form: Text 5\n");
}

// Each version describes the same definition in its own way.
TEST(Changes, BetweenVersionsNeedAModificationCounter) {
  std::string text = All(SampleWith("Source=\"22.0.1\"", "Source=\"26.0.1\""), "View=\"Full\"", "viewState=\"Full\"");
  text = All(text, "<Options>0</Options>", "<Options>1</Options><GridStyle><Style>1</Style></GridStyle>");
  const Comparison same = Compare(Sample(), *ReadText(text));
  EXPECT_EQ(Lines(same), "");
  ASSERT_EQ(same.warnings.size(), 1u);
  EXPECT_EQ(
      same.warnings[0],
      "the exports were saved by different versions of FileMaker (22.0.1 and 26.0.1): an element counts as edited "
      "only if its modification counter changed");
  // A property that the other format lacks is not a change.
  text = All(text, "modifications=\"5\"", "modifications=\"6\"");
  text = All(text, "width=\"600\"", "width=\"601\"");
  EXPECT_EQ(Lines(Compare(Sample(), *ReadText(text))).substr(0, 32), "edited layout Order Form: width,");
  EXPECT_EQ(Lines(Compare(Sample(), *ReadText(text))).find("GridStyle"), std::string::npos);
}

TEST(Changes, WarnAboutOtherLanguagesAndFiles) {
  const Comparison german =
      Compare(Sample(), *ReadText(All(SampleWith("\"English\"", "\"German\""), "Set Field", "Feldwert setzen")));
  EXPECT_EQ(Lines(german), "");
  ASSERT_EQ(german.warnings.size(), 1u);
  EXPECT_NE(german.warnings[0].find("(English and German)"), std::string::npos);
  const Comparison other =
      Compare(Sample(), *ReadText(SampleWith("File=\"Orders.fmp12\" UUID=\"0", "File=\"B.fmp12\" UUID=\"1")));
  ASSERT_EQ(other.warnings.size(), 1u);
  EXPECT_EQ(other.warnings[0], "the exports are of different files (Orders.fmp12 and B.fmp12)");
}

TEST(LineDiff, KeepsCommonLines) {
  std::string text;
  for (const DiffLine& line : DiffLines("a\nb\nc\n", "a\nx\nc\nd\n")) {
    text += line.origin == DiffLine::Origin::kBoth ? ' ' : line.origin == DiffLine::Origin::kOlder ? '-' : '+';
    text += line.text + '|';
  }
  EXPECT_EQ(text, " a|-b|+x| c|+d|");
}

TEST(Order, FindsTheFewestEntriesThatMoved) {
  const struct {
    std::vector<std::size_t> positions, moved;
  } kRows[] = {
      {{}, {}}, {{3, 5, 9}, {}}, {{9, 3, 5}, {0}}, {{3, 9, 5, 7}, {1}}, {{2, 1}, {0}}, {{4, 0, 1, 5, 2, 3}, {0, 3}}};
  for (const auto& row : kRows)
    EXPECT_EQ(OutOfOrder(row.positions), row.moved) << testing::PrintToString(row.positions);
}

}  // namespace
}  // namespace solution
