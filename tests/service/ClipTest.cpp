// The clips, through requests.
#include <gtest/gtest.h>

#include "net/Json.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"

namespace {

std::string Snippet(const std::string& objects) {
  return "<fmxmlsnippet type='FMObjectList'>" + objects + "</fmxmlsnippet>";
}

const std::string kBeep = Snippet("<Step enable='True' id='93' name='Beep'/>");
const std::string kScript = Snippet("<Script id='1' name='Größe &lt;b>'><Step id='93' name='Beep'/></Script>");

class ClipTest : public FolderTest {
 protected:
  // What the plug-in sends; `content` has no quotation marks.
  void Push(const std::string& xmlType, const std::string& content, const std::string& more = "") const {
    const auto answer = service_.Post("/api/bridge/push", R"({"licenseKey":"K1","xmlType":")" + xmlType +
                                                              R"(","xmlContent":")" + content + '"' + more + '}');
    EXPECT_EQ(answer.status, 200) << answer.body;
  }
  std::string Get(const std::string& path) const { return service_.Get("/operator/clips" + path).body; }
  int Post(const std::string& path, const std::string& body) const {
    return service_.Post("/operator/clips" + path, body).status;
  }
  std::string Prune(const std::string& members) const { return service_.Post("/operator/prune", members).body; }

  // The titles in a list, in its order.
  std::string Titles(const std::string& query) const {
    const std::string list = Get(query);
    std::string titles;
    const std::string mark = R"("title":")";
    for (auto at = list.find(mark); at != std::string::npos; at = list.find(mark, at)) {
      at += mark.size();
      titles += list.substr(at, list.find('"', at) - at) + ';';
    }
    return titles;
  }

  const RunningService service_{folder_ + "/data"};
};

TEST_F(ClipTest, ListsEachContentOnceAndFindsIt) {
  Push("XMSS", kBeep);
  Push("XMSS", kScript, R"(,"label":"From the Café")");
  Push("FILE_LIST", "Workshop");
  Push("XMFD", "<fmxmlsnippet><Field>");
  Push("XMSS", kBeep);
  EXPECT_EQ(Titles(""), "Beep;Unreadable XMFD;Script “Größe <b>”;");
  const std::string list = Get("?limit=1");
  EXPECT_TRUE(list.starts_with(R"({"total":3,"clips":[{"id":1,"xmlType":"XMSS","title":"Beep","label":"",)")) << list;
  EXPECT_NE(list.find(R"("times":2,"bytes":)" + std::to_string(kBeep.size()) + R"(,"tags":[]}]})"), std::string::npos);
  const struct {
    const char* query;
    const char* titles;
  } rows[] = {
      {"?text=BEEP", "Beep;Script “Größe <b>”;"},
      {"?text=gr%C3%B6SSE", "Script “Größe <b>”;"},
      {"?text=the%20caf%C3%89", "Script “Größe <b>”;"},
      {"?text=nothing", ""},
      {"?xmlType=XMSC", "Script “Größe <b>”;"},
      {"?xmlType=XMFD", "Unreadable XMFD;"},
      {"?tag=beep", ""},
  };
  for (const auto& [query, titles] : rows) EXPECT_EQ(Titles(query), titles) << query;
  EXPECT_NE(Get("/2").find(R"("label":"From the Café")"), std::string::npos);
  EXPECT_NE(Get("/2").find(R"("text":"Script “Größe <b>”\n    Beep\n")"), std::string::npos) << Get("/2");
  EXPECT_EQ(Get("/2/content"), kScript);
  EXPECT_NE(Get("/4").find("cannot be shown as text: it is not well-formed XML in line 1"), std::string::npos);
  EXPECT_EQ(Get("/4/content"), "<fmxmlsnippet><Field>");
}

TEST_F(ClipTest, PruningSparesClipsWithTags) {
  Push("XMSS", kBeep);
  EXPECT_EQ(Post("/1/tags", R"({"tags":" sound, short,, sound "})"), 200);
  EXPECT_NE(Get("/1").find(R"("tags":["sound","short"])"), std::string::npos) << Get("/1");
  EXPECT_EQ(Titles("?tag=short"), "Beep;");
  EXPECT_EQ(Titles("?tag=shor"), "");
  Push("XMSS", kBeep);
  EXPECT_EQ(Prune(R"({"keep":"1"})"), R"({"commands":0,"records":1})");
  EXPECT_EQ(Titles("?tag=sound"), "Beep;");
  EXPECT_EQ(Prune(R"({"olderThan":"0"})"), R"({"commands":0,"records":0})");
  EXPECT_EQ(Post("/1/tags", R"({"tags":""})"), 200);
  EXPECT_EQ(Prune(R"({"olderThan":"0"})"), R"({"commands":0,"records":1})");
  EXPECT_EQ(Titles(""), "");
  Push("XMSS", kBeep);
  EXPECT_EQ(Titles(""), "Beep;");
  EXPECT_EQ(Titles("?tag=sound"), "");
}

TEST_F(ClipTest, AddsPlacesAndDeletes) {
  const auto added = service_.Post("/operator/clips?name=My%20steps", "\xEF\xBB\xBF" + kBeep, "application/xml");
  EXPECT_EQ(added.status, 201);
  EXPECT_EQ(added.body, R"({"id":1})");
  EXPECT_NE(Get("/1").find(R"("label":"My steps")"), std::string::npos);
  const auto placed = service_.Post("/operator/clips/1/place", "");
  EXPECT_EQ(placed.status, 201);
  EXPECT_EQ(service_.Poll(), R"({"command":{"id":")" + JsonGetString(placed.body, "id") +
                                 R"(","type":"SET_CLIPBOARD","xmlType":"XMSS","xmlContent":")" + kBeep + R"("}})");
  EXPECT_EQ(Post("/1/delete", ""), 200);
  EXPECT_EQ(Titles(""), "");
  EXPECT_EQ(service_.Get("/operator/records").body, R"({"records":[]})");
}

TEST_F(ClipTest, RefusesWhatItCannotDo) {
  Push("", "<fmxmlsnippet><Field>");
  const struct {
    const char* path;
    std::string body;
    int status;
    const char* error;
  } rows[] = {
      {"", "", 400, "the content is not XML"},
      {"", "<a/>", 400, "the content is not clipboard XML of FileMaker: its root element is a"},
      {"", "<fmxmlsnippet><Step>", 400, "the content is not well-formed XML in line 1: unexpected end of data"},
      {"", "\xFF", 400, "the content is not valid UTF-8 in line 1"},
      {"", Snippet(""), 400, "the content contains no object that FileMaker could paste"},
      {"/9/tags", R"({"tags":"a"})", 404, "no such clip"},
      {"/x/delete", "", 404, "no such clip"},
      {"/1/tags", R"({"tag":"a"})", 400, "unknown member tag"},
      {"/1/place", "", 409, "the clip cannot be placed: SET_CLIPBOARD needs xmlType"},
  };
  for (const auto& [path, body, status, error] : rows) {
    const auto answer = service_.Post(std::string("/operator/clips") + path, body);
    EXPECT_EQ(answer.status, status) << path << body;
    EXPECT_EQ(answer.body, std::string(R"({"error":")") + error + "\"}") << path << body;
  }
  EXPECT_EQ(service_.Get("/operator/clips/9").status, 404);
}

}  // namespace
