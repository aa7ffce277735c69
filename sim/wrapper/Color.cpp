// Colours.
#include "wrapper/Objects.h"

namespace wrapper {
namespace {

constexpr fmx::uchar kOn = fmx::CharacterStyle::kColorChannel_ON;

// Like the vendor's library: 0xFF becomes 0xFFFF.
fmx::uint16 Upsampled(fmx::uchar channel) { return static_cast<fmx::uint16>(channel * 257); }

// Lives as long as the process.
const fmx::CharacterStyle::Color* Constant(const char* function, ColorObject color) {
  Ledger::Instance().EnterCall(function);
  auto* part = new Part<ColorObject>;
  **part = color;
  return part->Show();
}

}  // namespace
}  // namespace wrapper

namespace fmx {

using wrapper::ColorObject;
using wrapper::HostCall;
using wrapper::Live;
using Color = CharacterStyle::Color;

FM_API Color* FM_Color_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<ColorObject>(); });
}

FM_API Color* FM_Color_Constructor2(uchar red, uchar green, uchar blue, uchar alpha, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<ColorObject>(red, green, blue, alpha); });
}

FM_API Color* FM_Color_Constructor3(const Color& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<ColorObject>(Live<ColorObject>(&other)); });
}

FM_API void FM_Color_Delete(void* self, _fmxcpt&) { wrapper::Delete<ColorObject>(__func__, self); }

FM_API Color* FM_Color_operatorAS(void* self, const Color& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    Live<ColorObject>(self) = Live<ColorObject>(&other);
    return static_cast<Color*>(self);
  });
}

FM_EQUALITY(Color, Color)

// These two cannot fail.
FM_API const Color* FM_Color_Black(_fmxcpt&) noexcept {
  static const auto* black = wrapper::Constant(__func__, {});
  return black;
}

FM_API const Color* FM_Color_White(_fmxcpt&) noexcept {
  static const auto* white = wrapper::Constant(__func__, {wrapper::kOn, wrapper::kOn, wrapper::kOn, wrapper::kOn});
  return white;
}

#define COLOR_CHANNEL(Name, name)                                                                   \
  FM_API uchar FM_Color_Get##Name(const void* self, _fmxcpt& x) {                                   \
    return HostCall(__func__, x, [&] { return Live<ColorObject>(self).name; });                     \
  }                                                                                                 \
  FM_API uint16 FM_Color_Get##Name##Upsample(const void* self, _fmxcpt& x) {                        \
    return HostCall(__func__, x, [&] { return wrapper::Upsampled(Live<ColorObject>(self).name); }); \
  }                                                                                                 \
  FM_API void FM_Color_Set##Name(void* self, uchar value, _fmxcpt& x) {                             \
    HostCall(__func__, x, [&] { Live<ColorObject>(self).name = value; });                           \
  }
COLOR_CHANNEL(Red, red)
COLOR_CHANNEL(Green, green)
COLOR_CHANNEL(Blue, blue)
COLOR_CHANNEL(Alpha, alpha)
#undef COLOR_CHANNEL

}  // namespace fmx
