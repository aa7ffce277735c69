// What an idle call costs with FileMaker XML on the clipboard, as a multiple of one copy of it, and how fast the kind
// of a large text is found.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "Ratio.h"
#include "SampleText.h"
#include "bridge/ClipboardUpkeep.h"
#include "clipboard/ClipboardTypes.h"
#include "clipboard/Pasteboard.h"
#include "core/Clock.h"
#include "plugin/clipboard/KindReference.h"

namespace {

constexpr std::int64_t kIdleIntervalMs = 100;
constexpr double kLeastSpeedOfIdle = 1 / 3.0;  // an idle call costs at most three copies of the text
// A flavour without the mark of a snippet, which FileMaker never writes, is read and hashed beside its text.
constexpr double kLeastSpeedOfMirroring = 1 / 8.0;
constexpr double kLeastSpeedOfDetection = 4;

std::int64_t now = 1000000;
const std::string* clipboardText = nullptr;
bool hasFlavour = false;

// A clipboard that holds one text, already prepared, as FileMaker's flavour too if that is said, and hands out a copy
// as a system does.
class PreparedText : public Pasteboard {
 public:
  void DeclareTypes(bool, const std::vector<std::string>&) override {}
  bool SetData(const std::string&, const std::string&) override { return true; }
  bool SetString(const std::string&) override { return true; }
  std::string AvailableType(const std::vector<std::string>& candidates) override {
    return hasFlavour ? candidates.front() : "";
  }
  bool DataForType(const std::string&, std::string& bytes) override { return bytes = *clipboardText, true; }
  std::string String() override { return *clipboardText; }
  std::vector<std::string> Types() override { return {}; }
};

// A layout of text objects, which no mark of another kind stands in.
std::string LayoutXml(std::size_t size) {
  std::string xml = "<fmxmlsnippet type=\"LayoutObjectList\"><Layout>";
  for (int key = 1; xml.size() < size; ++key) {
    xml += "<Object type=\"Text\" key=\"" + std::to_string(key) +
           "\" LabelKey=\"0\" flags=\"0\" rotation=\"0\">\n<Bounds top=\"10.0000000\" left=\"10.0000000\" "
           "bottom=\"30.0000000\" right=\"90.0000000\"/>\n<TextObj flags=\"0\"><ExtendedAttributes fontHeight=\"14\" "
           "graphicFormat=\"5\"/><Styles><CSS>self { color: rgba(0%,0%,0%,1); font-size: 14pt; }</CSS></Styles>"
           "<CharacterStyleVector><Style><Data>Label</Data></Style></CharacterStyleVector></TextObj></Object>\n";
  }
  return xml + "</Layout></fmxmlsnippet>";
}

bench::Comparison Idle(const std::string& of, const std::string& text, bool isFlavour = false) {
  const auto idle = [&text, isFlavour] {
    clipboardText = &text;
    hasFlavour = isFlavour;
    now += kIdleIntervalMs;
    KeepClipboardConvertible();
  };
  const auto copy = [&text] { benchmark::DoNotOptimize(std::string(text)); };
  return {"idle call with " + of + " : one copy", text.size(), idle, copy,
          isFlavour ? kLeastSpeedOfMirroring : kLeastSpeedOfIdle};
}

bench::Comparison Detection(const std::string& xml) {
  return {"DetectXmlClipboardType : row of finds", xml.size(),
          [&xml] { benchmark::DoNotOptimize(DetectXmlClipboardType(xml)); },
          [&xml] { benchmark::DoNotOptimize(reference::KindOf(xml)); }, kLeastSpeedOfDetection};
}

}  // namespace

std::unique_ptr<Pasteboard> Pasteboard::Open() { return std::make_unique<PreparedText>(); }
std::int64_t SteadyMilliseconds() { return now; }

int main() {
  std::vector<std::string> texts;
  for (const std::size_t size : {1 << 20, 20 << 20}) {
    texts.push_back("<fmxmlsnippet type=\"FMObjectList\">" + bench::SavedXml(size) + "</fmxmlsnippet>");
  }
  const std::string layouts[] = {LayoutXml(1 << 20), LayoutXml(20 << 20)};

  const std::string otherXml = bench::SavedXml(20 << 20);

  std::vector<bench::Comparison> comparisons;
  for (const auto& text : texts) comparisons.push_back(Idle("prepared XML", text));
  comparisons.push_back(Idle("other XML", otherXml));
  comparisons.push_back(Idle("a flavour of it", otherXml, true));
  for (const auto& xml : layouts) comparisons.push_back(Detection(xml));
  return bench::Compare(comparisons);
}
