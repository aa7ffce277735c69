// Font numbers, assigned in order of first request.
#include <algorithm>

#include "wrapper/Objects.h"

namespace wrapper {
namespace {

using FontID = fmx::CharacterStyle::FontID;
using FontScript = fmx::CharacterStyle::FontScript;

struct Font {
  std::u16string name;
  FontScript script;
  bool postscript;
  bool operator==(const Font&) const = default;
};

std::vector<Font>& Fonts() {
  static auto* fonts = new std::vector<Font>;
  return *fonts;
}

FontID NumberOf(const fmx::Text& name, FontScript script, bool postscript) {
  const Font font{Live<TextObject>(&name).units, script, postscript};
  if (font.name.empty() || Fonts().size() == fmx::CharacterStyle::kInvalidFont)
    return fmx::CharacterStyle::kInvalidFont;
  const auto known = std::find(Fonts().begin(), Fonts().end(), font);
  const auto number = static_cast<FontID>(known - Fonts().begin());
  if (known == Fonts().end()) Fonts().push_back(font);
  return number;
}

const Font* FontOf(FontID number, bool postscript, fmx::Text& name) {
  if (number >= Fonts().size() || Fonts()[number].postscript != postscript) return nullptr;
  Live<TextObject>(&name).Assign(Fonts()[number].name);
  return &Fonts()[number];
}

}  // namespace
}  // namespace wrapper

namespace fmx {

using wrapper::HostCall;

FM_API uint16 FM_Data_GetFontID(const void*, const Text& name, uint16 script, const ExprEnv&, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::NumberOf(name, script, false); });
}

FM_API bool FM_Data_GetFontInfo(const void*, uint16 number, Text& name, uint16& script, const ExprEnv&, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    const auto* font = wrapper::FontOf(number, false, name);
    if (font != nullptr) script = font->script;
    return font != nullptr;
  });
}

FM_API uint16 FM_Data_GetPostscriptFontID(const void*, const Text& name, const ExprEnv&, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::NumberOf(name, CharacterStyle::kRoman, true); });
}

FM_API bool FM_Data_GetPostscriptFontInfo(const void*, uint16 number, Text& name, const ExprEnv&, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::FontOf(number, true, name) != nullptr; });
}

}  // namespace fmx
