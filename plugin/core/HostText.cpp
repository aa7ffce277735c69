#include "core/HostText.h"

#include <algorithm>

#include "Utf8.h"

namespace {

// Four bytes per UTF-16 unit are enough for every UTF-8 form, so no pass is needed to measure first. The text is cut at
// its first zero byte and the unused rest freed: a large text would otherwise hold four times its memory.
std::string Utf8FromText(const fmx::Text& text) {
  const fmx::uint32 units = text.GetSize();
  if (units == 0) return {};
  std::string utf8(static_cast<std::size_t>(units) * 4 + 1, '\0');
  text.GetBytes(utf8.data(), static_cast<fmx::uint32>(utf8.size()), 0, units, fmx::Text::kEncoding_UTF8);
  utf8.resize(std::min(utf8.find('\0'), utf8.size()));
  utf8.shrink_to_fit();
  return utf8;
}

}  // namespace

std::string GetTextArg(const fmx::DataVect& args, unsigned int index) {
  if (index >= args.Size()) return {};
  return Utf8FromText(args.At(index).GetAsText());
}

std::string EmptyArgumentError(std::initializer_list<NamedText> arguments) {
  for (const auto& [name, value] : arguments) {
    if (value.empty()) return std::string("ERROR: ") + name + " is empty.";
  }
  return "";
}

void SetTextResult(const std::string& utf8, fmx::Data& result) {
  const fmx::TextUniquePtr text;
  text->Assign(utf8.c_str(), fmx::Text::kEncoding_UTF8);
  result.SetAsText(*text, result.GetLocale());
}

std::string EvalCalc(const fmx::ExprEnv* env, const char* expression) {
  // In ill-formed UTF-8, the host might see the end of a text literal elsewhere.
  if (env == nullptr || !IsUtf8(expression)) return {};
  const fmx::TextUniquePtr text;
  text->Assign(expression, fmx::Text::kEncoding_UTF8);
  const fmx::DataUniquePtr data;
  if (env->Evaluate(*text, *data) != 0) return {};
  return Utf8FromText(data->GetAsText());
}

void CopyUTF8ToUnichar16(const char* utf8, unsigned int capacity, unsigned short* out) {
  const fmx::TextUniquePtr text;
  text->Assign(utf8, fmx::Text::kEncoding_UTF8);
  const unsigned int units = text->GetSize();
  const unsigned int count = capacity > units ? units : capacity - 1;
  text->GetUnicode(out, 0, count);
  out[count] = 0;
}
