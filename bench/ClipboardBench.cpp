// The cost of an idle call that finds new content on the clipboard, as a multiple of one copy of it, and how fast the
// kind of a large text is found. IdleBench.cpp measures idle calls that find nothing new.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <optional>
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
// In copies of the content. Text is read and searched, XML also hashed. A flavour that is not a snippet, which
// FileMaker never writes, is read, searched and hashed after its text has been read.
constexpr double kMostCopiesOfText = 5;
constexpr double kMostCopiesOfXml = 8;
constexpr double kMostCopiesOfFlavour = 14;
constexpr double kLeastSpeedOfDetection = 4;

std::int64_t now = 1000000;
const std::string* clipboardText = nullptr;
bool hasFlavour = false;

// A clipboard with one text, already prepared, and optionally the same content as a FileMaker flavour. It returns a
// copy, as a system does.
class PreparedText : public Pasteboard {
 public:
  std::optional<std::uint64_t> ChangeCount() override { return std::nullopt; }  // each call looks
  void DeclareTypes(bool, const std::vector<std::string>&) override {}
  bool SetData(const std::string&, const std::string&) override { return true; }
  bool SetString(const std::string&) override { return true; }
  std::string AvailableType(const std::vector<std::string>& candidates) override {
    return hasFlavour ? candidates.front() : "";
  }
  bool DataForType(const std::string&, std::string& bytes) override { return bytes = *clipboardText, true; }
  std::string String() override { return *clipboardText; }
  std::vector<std::string> Types() override {
    return hasFlavour ? std::vector<std::string>{"Mac-XMSS"} : std::vector<std::string>{};
  }
};

// A layout of text objects, without a mark of another kind.
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

bench::Comparison Idle(const std::string& of, const std::string& text, double mostCopies, bool isFlavour = false) {
  const auto idle = [&text, isFlavour] {
    clipboardText = &text;
    hasFlavour = isFlavour;
    now += kIdleIntervalMs;
    KeepClipboardConvertible();
  };
  const auto copy = [&text] { benchmark::DoNotOptimize(std::string(text)); };
  return {"idle call with new " + of + " : one copy", text.size(), idle, copy, 1 / mostCopies};
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
  const std::string otherXml = bench::SavedXml(20 << 20);
  const std::string preparedXml = "<fmxmlsnippet type=\"FMObjectList\">" + otherXml + "</fmxmlsnippet>";
  const std::string layouts[] = {LayoutXml(1 << 20), LayoutXml(20 << 20)};
  return bench::Compare({
      Idle("FileMaker XML", preparedXml, kMostCopiesOfXml),
      Idle("other XML", otherXml, kMostCopiesOfText),
      Idle("flavour", otherXml, kMostCopiesOfFlavour, true),
      Detection(layouts[0]),
      Detection(layouts[1]),
  });
}
