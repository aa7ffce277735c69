// Clipboard XML as readable text: the project's own samples, every form of step, and invalid input.
#include "snippet/Snippet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "Utf8.h"
#include "export/Document.h"

namespace solution {
namespace {

std::string Snippet(const std::string& objects) {
  return "<fmxmlsnippet type=\"FMObjectList\">" + objects + "</fmxmlsnippet>";
}

std::string Shown(std::string snippet) {
  std::string error;
  const auto read = ReadSnippet(std::move(snippet), error);
  return read ? "[" + read->xmlType + "] " + read->title + '\n' + read->text : "refused: it " + error + '\n';
}

std::string Repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(Snippets, ShowWhatEachSampleContains) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(SAMPLES)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::string all;
  for (const auto& path : paths) {
    const std::string shown = Shown(ReadFile(path.string()));
    EXPECT_EQ(shown.substr(1, 4), path.filename().string().substr(0, 4)) << "the type is the one in the file's name";
    all += shown + '\n';
  }
  EXPECT_EQ(all, ReadFile(TEST_DATA "/snippet-samples.txt"));
}

TEST(Snippets, ShowStepsAsExportsDo) {
  EXPECT_EQ(Shown(Snippet(ReadFile(TEST_DATA "/snippet-steps.xml"))), ReadFile(TEST_DATA "/snippet-steps.txt"));
}

TEST(Snippets, NameWhatTheyAreWhateverTheyContain) {
  const struct {
    std::string snippet;
    std::string shown;
  } rows[] = {
      {"", "refused: it is not XML\n"},
      {"<a/>", "refused: it is not clipboard XML of FileMaker: its root element is a\n"},
      {"<fmxmlsnippet>\n<Step>", "refused: it is not well-formed XML in line 2: unexpected end of data\n"},
      {"<!DOCTYPE x><fmxmlsnippet/>", "refused: it is damaged in line 1: a document type\n"},
      {Snippet(Repeated("<Group>", 600)), "refused: it is damaged in line 1: elements are nested too deeply\n"},
      {Snippet("\xFF"), "refused: it is not valid UTF-8 in line 1\n"},
      {Snippet(""), "[] Empty snippet\n"},
      {Snippet("<New thing=\"1\"/>"), "[] New\nNew\n"},
      {Snippet("<Step id=\"93\" name=\"Beep\"/>"), "[XMSS] Beep\nBeep\n"},
      {Snippet("<Step id=\"x\"/>"), "[XMSS] \n\n"},
      {Snippet("<Step id=\"93\" name=\"a&#xD800;&#0;b\"/>"), "[XMSS] a\uFFFD\uFFFD\uFFFD b\na\uFFFD\uFFFD\uFFFD b\n"},
      {Snippet("<Group name=\"F\"><CustomFunction name=\"Pi\" parameters=\"\"/></Group>"),
       "[XMFN] Folder “F”\nFolder “F”\n    Pi\n"},
      {Snippet("<Script name=\"&quot;&lt;/script>\"/><Script name=\"b\"/>"),
       "[XMSC] Script “\"</script>” and 1 more\nScript “\"</script>”\n\nScript “b”\n"},
      {"\xEF\xBB\xBF<?xml version=\"1.0\"?>" + Snippet("<Theme name=\"Plain\"/>") + "<!-- note -->",
       "[XMTH] Theme “Plain”\nTheme “Plain”\n"},
  };
  for (const auto& [snippet, shown] : rows) EXPECT_EQ(Shown(snippet), shown) << snippet.substr(0, 200);
}

TEST(Snippets, StaySmallWhateverTheirShape) {
  const std::string ifs = Repeated("<Step id=\"68\" name=\"If\"/>", 20'000);
  const std::string lines = Repeated("x&#13;", 300'000);
  const std::string deep = Repeated("<Group name=\"g\">", 400) + "<Script name=\"s\"><Step id=\"89\"><Text>" + lines +
                           "</Text></Step></Script>" + Repeated("</Group>", 400);
  const std::string title = "<Step id=\"89\"><Text>" + Repeated("ä", 5000) + "</Text></Step>";
  for (const std::string& objects : {ifs, deep, title, title + title}) {
    std::string error;
    const auto snippet = ReadSnippet(Snippet(objects), error);
    ASSERT_TRUE(snippet) << error;
    EXPECT_LT(snippet->title.size(), 200u);
    EXPECT_LT(snippet->text.size(), 1'100'000u);
    EXPECT_TRUE(IsUtf8(snippet->title) && IsUtf8(snippet->text));
  }
}

}  // namespace
}  // namespace solution
