#include "design/DesignReader.h"

#include "solution/SampleDesign.h"

namespace solution {
namespace {

std::string Utf16(std::string_view text, bool bigEndian) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned unit = static_cast<unsigned char>(text[i]);
    if (unit >= 0xC0) {  // the sample has no characters longer than two bytes
      unit = (unit & 0x1F) << 6 | (static_cast<unsigned char>(text[++i]) & 0x3F);
    }
    const char high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

std::string Refusal(std::string bytes) {
  std::string error;
  EXPECT_EQ(ReadDesignBytes(std::move(bytes), "a.xml", error), nullptr);
  return error;
}

const Element& Get(const Design& design, Kind kind, std::string_view name) {
  const Element* element = design.Find(kind, name);
  EXPECT_NE(element, nullptr) << name;
  return element == nullptr ? design.file() : *element;
}

TEST(DesignReader, ReadsEveryKindOfElement) {
  std::string kinds;
  for (const Element& element : Sample().elements()) {
    kinds += std::string(NamesOf(element.kind).word) + ' ' + DisplayName(element) + '\n';
  }
  EXPECT_EQ(
      kinds,
      "file Orders.fmp12\n"
      "table Orders\ntable Customers\n"
      "tableOccurrence Orders\ntableOccurrence Customers\ntableOccurrence orders CUSTOMER\ntableOccurrence Stock\n"
      "field Orders::ID\nfield Orders::Customer ID\nfield Orders::Quantity\nfield Orders::Price\n"
      "field Orders::Line Total\nfield Orders::Status\nfield Orders::Sum of Totals\nfield Orders::a + b\n"
      "field Orders::Name\nfield Orders::Photo\n"
      "field Customers::ID\nfield Customers::Name\nfield Customers::Discount\nfield Customers::and\n"
      "relationship Orders <-> orders CUSTOMER\n"
      "folder Office\nlayout Order Form\nlayout Lists\n"
      "script Start\nfolder Admin\nscript Reset\nscript Log\nscript Unused\n"
      "valueList Status\nvalueList People\n"
      "folder Money\ncustomFunction Net\ncustomFunction VAT.Rate\n"
      "customMenu [Format]\ncustomMenu Orders Menu\ncustomMenuSet Office\n"
      "theme com.example.theme\naccount clerk\nprivilegeSet [Full Access]\nprivilegeSet Clerks\n"
      "extendedPrivilege fmapp\nexternalDataSource Warehouse\nbaseDirectory Orders/\n");
}

TEST(DesignReader, KnowsWhoChangedAnElementAndWhereItIs) {
  const Element& script = Get(Sample(), Kind::kScript, "reset");
  EXPECT_EQ(script.id, 3);
  EXPECT_EQ(script.modifications, 2);
  EXPECT_EQ(script.user, "Ann");
  EXPECT_EQ(script.account, "Admin");
  EXPECT_EQ(script.time, "2025-07-02T16:45:56");
  ASSERT_NE(script.parent, nullptr);
  EXPECT_EQ(script.parent->name, "Admin");
  EXPECT_EQ(Sample().Find(script.uuid), &script);
  EXPECT_EQ(Get(Sample(), Kind::kScript, "Start").parent, nullptr);
  EXPECT_EQ(Get(Sample(), Kind::kTableOccurrence, "Stock").table, nullptr);
  EXPECT_EQ(Get(Sample(), Kind::kTableOccurrence, "orders customer").table, Sample().Find(Kind::kTable, "Customers"));
}

TEST(DesignReader, ReadsEveryEncoding) {
  const auto count = Sample().elements().size();
  for (const std::string& bytes :
       {"\xEF\xBB\xBF" + SampleText(), "\xFF\xFE" + Utf16(SampleText(), false), Utf16(SampleText(), false),
        "\xFE\xFF" + Utf16(SampleText(), true), Utf16(SampleText(), true)}) {
    EXPECT_EQ(ReadText(bytes)->elements().size(), count) << testing::PrintToString(bytes.substr(0, 4));
  }
  std::string lone = "\xFF\xFE" + Utf16(SampleWith("about Orders", "about\x01Orders"), false);
  lone.replace(lone.find(std::string("\x01\0", 2)), 2, "\x3D\xD8");  // the first half of a character
  const auto design = ReadText(lone);
  EXPECT_EQ(Get(*design, Kind::kTable, "Orders").nodes[0].attribute("comment").value(), "about\uFFFDOrders");
  ASSERT_EQ(design->document().notes.size(), 1u);
  EXPECT_EQ(design->document().notes[0], "a.xml contains 1 lone surrogate(s), shown as U+FFFD");
}

// Up to 19.4, FileMaker does not escape a CDATA section within the text of a comment.
TEST(DesignReader, ReadsCommentsThatBreakTheXml) {
  const auto design = ReadText(
      SampleWith("prepares&#13;everything", "&lt;Text&gt;<![CDATA[\"a\" < 'b' & c]]>&lt;/Text&gt;\t<![CDATA[]]>!"));
  const XmlNode steps = Get(*design, Kind::kScript, "Start").nodes[1].child("ObjectList");
  const XmlNode parameter = steps.child("Step").child("ParameterValues").child("Parameter");
  EXPECT_EQ(parameter.child("Comment").attribute("value").value(),
            "<Text><![CDATA[\"a\" < 'b' & c]]></Text>\t<![CDATA[]]>!");
}

TEST(DesignReader, ReadsTheOldestFormat) {
  const auto design = ReadText(
      "<FMDynamicTemplate version=\"2.0.0.0\" Source=\"18.0.3\" File=\"Old.fmp12\" UUID=\"0\" "
      "locale=\"English\"><Structure>"
      "<AddAction><BaseTableCatalog><BaseTable id=\"129\" name=\"T\"/></BaseTableCatalog><TableOccurrenceCatalog>"
      "<TableOccurrence id=\"5\" name=\"T\" type=\"Local\"><BaseTableReference id=\"129\" "
      "name=\"T\"/></TableOccurrence>"
      "</TableOccurrenceCatalog><CustomFunctionsCatalog><ObjectList><CustomFunction id=\"1\" name=\"F\"/>"
      "<CustomFunction id=\"2\" name=\"Folder\"/><CustomFunction id=\"3\" "
      "name=\"--\"/></ObjectList></CustomFunctionsCatalog>"
      "<FieldsForTables><FieldCatalog><TableOccurrenceReference id=\"5\" name=\"T\"/><ObjectList>"
      "<Field id=\"1\" name=\"A\"/></ObjectList></FieldCatalog></FieldsForTables><CalcsForCustomFunctions><ObjectList>"
      "<CustomFunctionCalc><CustomFunctionReference id=\"1\" name=\"F\"/><Calculation><Text>1</Text></Calculation>"
      "</CustomFunctionCalc><CustomFunctionCalc><CustomFunctionReference id=\"3\" name=\"--\"/></CustomFunctionCalc>"
      "</ObjectList></CalcsForCustomFunctions><AccountsCatalog><ObjectList><Account id=\"1\"><Authentication>"
      "<AccountName>[\uE002]</AccountName></Authentication></Account></ObjectList></AccountsCatalog>"
      "</AddAction></Structure></FMDynamicTemplate>");
  EXPECT_EQ(DisplayName(*design->FindField(design->Find(Kind::kTable, "T"), "a")), "T::A");
  EXPECT_EQ(design->Find(Kind::kCustomFunction, "F")->nodes.size(), 2u);
  EXPECT_NE(design->Find(Kind::kCustomFunctionFolder, "Folder"), nullptr);
  EXPECT_NE(design->Find(Kind::kAccount, "[Guest]"), nullptr);
  EXPECT_FALSE(design->Find(Kind::kTable, "T")->modifications.has_value());
}

TEST(DesignReader, RefusesOtherFilesWithTheLine) {
  const auto root = [](const std::string& attributes) {
    return "<FMSaveAsXML " + attributes + "><Structure><AddAction/></Structure></FMSaveAsXML>";
  };
  const auto nested = [](int depth) {
    std::string text = SampleText(), open, close;
    for (int i = 0; i < depth; ++i) {
      open += "<x>\n";
      close += "</x>";
    }
    return text.replace(text.find("<Structure"), 0, open + close);
  };
  const struct {
    std::string bytes, error;
  } kRows[] = {
      {"", "a.xml is empty"},
      {"\xFF\xFE", "a.xml is empty"},
      {"hello", "a.xml is not XML"},
      {"<a>\n<b>\n</a>", "a.xml is not well-formed XML in line 3: "},
      {SampleText().substr(0, 20000), "a.xml is not well-formed XML in line "},
      {"<a/>\n\nmore", "a.xml has content outside the root element in line 3"},
      {"<a>\n\xC3\xA4\n\xC3(</a>", "a.xml is not valid UTF-8 in line 3"},
      {std::string("<a>\n\0</a>", 9), "a.xml contains a zero byte in line 2"},
      {Utf16("<a>\n</a>", false) + "x", "a.xml is cut off within a UTF-16 character in line 2"},
      {"<fmxmlsnippet/>", "a.xml is not a \"Save a Copy as XML\" export: its root element is fmxmlsnippet"},
      {root("version=\"1.9\""), "a.xml has the format version \"1.9\", which is not supported"},
      {root("version=\"2.3.0.0\" split_catalogs=\"True\""), "a.xml is split into one file per catalog"},
      {root("version=\"2.2.0.0\""), "a.xml does not name its FileMaker file: the attribute File is missing"},
      {"<FMSaveAsXML version=\"2.2\"/>", "a.xml contains no design: the element Structure/AddAction is missing"},
      {nested(600), "a.xml is damaged in line 503: elements are nested too deeply"},
      {"<!--></x></x>-->" + nested(600), "a.xml is damaged in line 503: elements are nested too deeply"},
      {"<a><?></x>?>" + nested(600), "a.xml is damaged in line 502: elements are nested too deeply"},
      {"<a>\n<!x \">", "a.xml is damaged in line 2: a document type"},
      {"<a>\n<b\">", "a.xml is damaged in line 2: a quotation mark outside an attribute value"},
      {"<a>\n<b=\">", "a.xml is damaged in line 2: a quotation mark outside an attribute value"},
      {"<a>\n<b c\"=''>", "a.xml is damaged in line 2: a quotation mark outside an attribute value"},
      {SampleWith("<BaseTable id=\"129\"", "<BaseTable id=\"x\""), "a.xml is damaged in line "},
      {SampleWith("<BaseTable id=\"130\"", "<BaseTable id=\"129\""), ": a second BaseTable with the id 129"},
      {SampleWith("</ScriptCatalog>", "</Scripts>"), "a.xml is not well-formed XML in line "},
      {SampleWith("<Script id=\"7\" name=\"Unused\"", "<Script id=\"8\" name=\"Unused\""),
       ": details of an unknown script"},
  };
  for (const auto& row : kRows) {
    const std::string error = Refusal(row.bytes);
    EXPECT_NE(error.find(row.error), error.npos) << error << "\n  instead of " << row.error;
    EXPECT_EQ(error.find('\n'), error.npos) << error;
  }
  std::string error;
  EXPECT_EQ(ReadDesign("/nowhere/a.xml", error), nullptr);
  EXPECT_EQ(error, "/nowhere/a.xml cannot be opened: No such file or directory");
  EXPECT_EQ(ReadDesign("/tmp", error), nullptr);
  EXPECT_EQ(error, "/tmp is not a regular file");
}

}  // namespace
}  // namespace solution
