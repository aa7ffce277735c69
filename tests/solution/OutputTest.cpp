#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "canonical/Properties.h"
#include "output/DesignFolder.h"
#include "output/Search.h"
#include "solution/SampleDesign.h"
#include "support/FolderTest.h"

namespace solution {
namespace {

namespace fs = std::filesystem;

TEST(CanonicalText, ShowsAScriptAsItsSteps) {
  const std::string text = CanonicalText(Sample(), *Sample().Find(Kind::kScript, "Start"));
  EXPECT_EQ(text.substr(text.find("# prepares")),
            "# prepares\n"
            "    everything\n"
            "Set Variable [ $total[2] ; Value: Orders::Line Total\n"
            "    + Orders::${a + b} ]\n"
            "If [ $total > 0 and orders CUSTOMER::${and} = 1 ]\n"
            "    Set Field [ Orders::Status ; \"Open\" ]\n"
            "    Perform Script [ \u201CReset\u201D ; Parameter: $total ]\n"
            "Else\n"
            "    // Go to Layout [ \u201COrder Form\u201D ; None ]\n"
            "End If\n"
            "Import Records [ With dialog: Off ; ImportField: 2 fields ]\n"
            "Perform Script [ Warehouse ; \u201CRestock\u201D ]\n"
            "Set Field [ <Field Missing> ; /*<Function Missing> ( 1 )*/ ]\n"
            "Show Custom Dialog [ Message: \"Left: \" & Stock::On Hand ]\n");
}

TEST(CanonicalText, ShowsOtherElementsAsTheirProperties) {
  const Element* field = Sample().FindField(Sample().Find(Kind::kTable, "Orders"), "Line Total");
  EXPECT_EQ(CanonicalText(Sample(), *field),
            "field: Orders::Line Total\n"
            "id: 5\n"
            "UUID: " +
                std::string(field->uuid) +
                "\n"
                "\n"
                "fieldtype: Calculated\n"
                "datatype: Number\n"
                "AutoEnter/alwaysEvaluate: True\n"
                "Storage/autoIndex: True\n"
                "Storage/index: None\n"
                "Storage/global: False\n"
                "Storage/maxRepetitions: 1\n"
                "Storage/storeCalculationResults: False\n"
                "Storage/LanguageReference/name: English\n"
                "Storage/LanguageReference/id: 21\n"
                "TableOccurrenceReference: Orders\n"
                "Calculation:\n"
                "    Let ( [ Price = Price ; q = Quantity ] ; // Quantity\n"
                "    Price * q + \"Price\" )\n");
}

TEST(Search, FindsLinesWithoutRegardToCase) {
  std::string hits;
  Search(Sample(), "LEFT: ", [&hits](const SearchHit& hit) {
    hits += DisplayName(*hit.element) + '|' + hit.property + '|' + std::to_string(hit.line) + '|' + hit.text + '\n';
  });
  EXPECT_EQ(hits, "Start|steps|14|Show Custom Dialog [ Message: \"Left: \" & Stock::On Hand ]\n");
  const auto count = [](std::string_view text) {
    int hits = 0;
    Search(Sample(), text, [&hits](const SearchHit&) { ++hits; });
    return hits;
  };
  EXPECT_EQ(count("photo"), 1);
  EXPECT_EQ(count(""), 0);
  EXPECT_EQ(count("open sesame"), 0);  // a password
}

class DesignFolder : public FolderTest {
 protected:
  std::string Write(const Design& design) {
    std::string error;
    const bool isWritten = WriteDesignFolder(design, folder_, error);
    EXPECT_EQ(isWritten, error.empty());
    return error;
  }
  std::string Read(const char* file) const {
    std::ifstream stream(folder_ / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }
  std::size_t Files() const {
    return static_cast<std::size_t>(std::count_if(fs::recursive_directory_iterator(folder_),
                                                  fs::recursive_directory_iterator(),
                                                  [](const auto& entry) { return entry.is_regular_file(); }));
  }

  const fs::path folder_ = fs::path(FolderTest::folder_) / "design";
};

TEST_F(DesignFolder, ContainsAFileForEachElement) {
  EXPECT_EQ(Write(Sample()), "");
  EXPECT_EQ(Files(), Sample().elements().size() + 1);  // and the list
  EXPECT_EQ(Read("scripts/Admin/Reset.txt"), CanonicalText(Sample(), *Sample().Find(Kind::kScript, "Reset")));
  EXPECT_NE(Read("fields/Orders/a + b.txt"), "");
  EXPECT_NE(Read("relationships/Orders _-_ orders CUSTOMER.txt"), "");
  EXPECT_NE(Read("base directories/Orders_.txt"), "");
}

TEST_F(DesignFolder, FollowsTheDesign) {
  Write(Sample());
  const auto before = fs::last_write_time(folder_ / "scripts/Start.txt");
  std::ofstream(folder_ / "notes.md") << "mine";
  const auto renamed = ReadText(SampleWith("<Script id=\"7\" name=\"Unused\"", "<Script id=\"7\" name=\"../ START\""));
  EXPECT_EQ(Write(*renamed), "");
  EXPECT_FALSE(fs::exists(folder_ / "scripts/Unused.txt"));
  EXPECT_NE(Read("scripts/_.._ START.txt"), "");
  EXPECT_EQ(Read("notes.md"), "mine");
  EXPECT_EQ(fs::last_write_time(folder_ / "scripts/Start.txt"), before);

  // Two names that some systems take for one
  Write(*ReadText(SampleWith("<Script id=\"7\" name=\"Unused\"", "<Script id=\"7\" name=\"START\"")));
  EXPECT_NE(Read("scripts/Start - 1.txt"), "");
  EXPECT_NE(Read("scripts/START - 7.txt"), "");
}

TEST_F(DesignFolder, RefusesFoldersWithOtherFiles) {
  fs::create_directories(folder_ / ".git");
  EXPECT_EQ(Write(Sample()), "");
  fs::remove_all(folder_);
  fs::create_directories(folder_);
  std::ofstream(folder_ / "thesis.txt") << "mine";
  EXPECT_EQ(Write(Sample()), folder_.string() + " contains other files (thesis.txt): choose an empty folder");
  EXPECT_EQ(Files(), 1u);
  fs::remove_all(folder_);
  std::ofstream(folder_) << "a file";
  EXPECT_EQ(Write(Sample()), folder_.string() + " is not a folder");
}

}  // namespace
}  // namespace solution
