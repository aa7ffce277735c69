#include "SampleText.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <random>
#include <string_view>

namespace bench {
namespace {

constexpr std::string_view kWords[] = {
    "Customer", "Invoice", "Order", "Line", "Item",    "Amount", "Date",  "Created", "Modified", "Account", "Übersicht",
    "Größe",    "Straße",  "Nr",    "ID",   "Status",  "Export", "naïve", "Window",  "Layout",   "Portal",  "Filter",
    "Global",   "Temp",    "Count", "of",   "Address", "Phone",  "Total", "Prénom",  "Rechnung", "Report",  "List"};

// %n a name, %w a word, %d a number, %u a UUID; ' a double quote.
constexpr std::string_view kCopied[] = {
    "<Step enable='True' id='141' name='Set Variable'><Value><Calculation><![CDATA[Let ( [\n\t~%w = GetField ( '%n::%n'"
    " ) ; // %n, %n\n\t~%w = %d ] ;\n\t~%w * ~%w + %d\n)]]></Calculation></Value><Repetition><Calculation><![CDATA[1]]>"
    "</Calculation></Repetition><Name>$%w</Name></Step>",
    "<Step enable='True' id='89' name='# (comment)'><Text>%n: %n, %n and %n</Text></Step>",
    "<Step enable='True' id='76' name='Set Field'><Calculation><![CDATA[If ( IsEmpty ( %n::%n ) ; %n::%n ; %d )]]>"
    "</Calculation><Field table='%n' id='%d' name='%n'></Field></Step>",
    "<Field id='%d' dataType='Text' fieldType='Normal' name='%n'><Comment>%n, %n</Comment><AutoEnter "
    "allowEditing='True'"
    " constant='False' furigana='False' lookup='False' calculation='False'><ConstantData>%n</ConstantData></AutoEnter>"
    "<Storage autoIndex='True' index='None' global='False' maxRepetition='1'/></Field>",
};
constexpr std::string_view kSaved[] = {
    "\t\t\t\t<Step hash='%d' index='%d' id='%d' name='%n' enable='True'>\n\t\t\t\t\t<UUID>%u</UUID>\n"
    "\t\t\t\t\t<Options>%d</Options>\n\t\t\t\t</Step>\n",
    "\t\t\t\t\t<Calculation datatype='1' position='%d'>\n\t\t\t\t\t\t<Text><![CDATA[If ( %n::%n = '%w' ; %n ;\n"
    "\tLet ( [ ~%w = %d ; ~%w = %d ] ; ~%w * 2 ) // %n\n)]]></Text>\n\t\t\t\t\t</Calculation>\n",
    "\t\t\t\t<FieldReference id='%d' name='%n' repetition='1' UUID='%u'>\n\t\t\t\t\t<TableOccurrenceReference id='%d'"
    " name='%n' UUID='%u'></TableOccurrenceReference>\n\t\t\t\t</FieldReference>\n",
    "\t\t\t\t\t<Parameter type='Boolean'>\n\t\t\t\t\t\t<Boolean type='Skip data-entry validation' id='%d' value='True'>"
    "</Boolean>\n\t\t\t\t\t</Parameter>\n",
};

class Writer {
 public:
  std::string_view Word() { return kWords[random_() % std::size(kWords)]; }

  std::string Name() {
    std::string name(Word());
    for (auto more = random_() % 3; more != 0; --more) name.append(" ").append(Word());
    return name;
  }

  template <std::size_t kCount>
  std::string Fragment(const std::string_view (&fragments)[kCount]) {
    const std::string_view fragment = fragments[random_() % kCount];
    std::string text;
    for (std::size_t i = 0; i < fragment.size(); ++i) {
      if (fragment[i] != '%') {
        text += fragment[i] == '\'' ? '"' : fragment[i];
        continue;
      }
      switch (fragment[++i]) {
        case 'n':
          text += Name();
          break;
        case 'w':
          text += Word();
          break;
        case 'd':
          text += std::to_string(random_() % 1000);
          break;
        default:
          text += Uuid();
      }
    }
    return text;
  }

  std::string Line() {
    std::string line = Name();
    while (line.size() < 8) line.append("_").append(Word());
    line.resize(std::min<std::size_t>(line.size(), 8 + random_() % 33));
    return line + '\r';
  }

 private:
  std::string Uuid() {
    std::string uuid = "00000000-0000-0000-0000-000000000000";
    for (char& digit : uuid) {
      if (digit == '0') digit = "0123456789ABCDEF"[random_() % 16];
    }
    return uuid;
  }

  std::mt19937 random_;
};

/// `size` bytes from `next`; they repeat after a megabyte, which is far more than a branch predictor remembers.
template <typename Next>
std::string Fill(std::size_t size, Next next) {
  std::string text;
  while (text.size() < std::min<std::size_t>(size, 1 << 20)) text += next();
  while (text.size() < size) text.append(text, 0, size - text.size());
  text.resize(size);
  return text;
}

}  // namespace

std::string CopiedXml(std::size_t size) {
  return Fill(size, [writer = Writer()]() mutable { return writer.Fragment(kCopied); });
}

std::string SavedXml(std::size_t size) {
  return Fill(size, [writer = Writer()]() mutable { return writer.Fragment(kSaved); });
}

std::string Prose(std::size_t size) {
  return Fill(size, [writer = Writer()]() mutable { return writer.Name() + ' '; });
}

std::string NameList(std::size_t size) {
  return Fill(size, [writer = Writer()]() mutable { return writer.Line(); });
}

Turns::Turns(const std::string& text, std::size_t size) {
  for (std::size_t at = 0; at + size <= text.size(); at += size) texts_.push_back(text.substr(at, size));
}

const std::string& Turns::Next() {
  next_ = (next_ + 1) % texts_.size();
  return texts_[next_];
}

std::size_t Turns::AverageSize() const {
  std::size_t sum = 0;
  for (const std::string& text : texts_) sum += text.size();
  return sum / texts_.size();
}

}  // namespace bench
