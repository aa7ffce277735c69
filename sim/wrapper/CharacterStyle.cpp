// Text styles.
#include "wrapper/Objects.h"

namespace wrapper {

void Style::Add(const Style& other) {
  if (other.fontEnabled) font = other.font;
  if (other.sizeEnabled) size = other.size;
  if (other.colorEnabled) color = other.color;
  face |= other.face;
  fontEnabled |= other.fontEnabled;
  sizeEnabled |= other.sizeEnabled;
  colorEnabled |= other.colorEnabled;
}

void Style::Remove(const Style& other) {
  const Style plain;
  if (other.fontEnabled) font = plain.font;
  if (other.sizeEnabled) size = plain.size;
  if (other.colorEnabled) color = plain.color;
  face = static_cast<fmx::CharacterStyle::Face>(face & ~other.face);
  fontEnabled &= !other.fontEnabled;
  sizeEnabled &= !other.sizeEnabled;
  colorEnabled &= !other.colorEnabled;
}

namespace {

Style& StyleAt(const void* self) { return Live<CharacterStyleObject>(self).style; }

}  // namespace
}  // namespace wrapper

namespace fmx {

using wrapper::CharacterStyleObject;
using wrapper::HostCall;
using wrapper::StyleAt;

FM_API CharacterStyle* FM_CharacterStyle_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<CharacterStyleObject>(); });
}

FM_API CharacterStyle* FM_CharacterStyle_Constructor2(uint16 font, uint16 face, uint16 size,
                                                      const CharacterStyle::Color& color, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    const auto& shown = wrapper::Live<wrapper::ColorObject>(&color);
    return wrapper::Make<CharacterStyleObject>(wrapper::Style{font, size, face, shown, true, true, true});
  });
}

FM_API CharacterStyle* FM_CharacterStyle_Constructor3(const CharacterStyle& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<CharacterStyleObject>(StyleAt(&other)); });
}

FM_API void FM_CharacterStyle_Delete(void* self, _fmxcpt&) { wrapper::Delete<CharacterStyleObject>(__func__, self); }

FM_API CharacterStyle* FM_CharacterStyle_operatorAS(void* self, const CharacterStyle& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    StyleAt(self) = StyleAt(&other);
    return static_cast<CharacterStyle*>(self);
  });
}

FM_EQUALITY(CharacterStyle, CharacterStyle)

// Setting an attribute enables it.
#define STYLE_ATTRIBUTE(Name, name)                                               \
  FM_API uint16 FM_CharacterStyle_Get##Name(const void* self, _fmxcpt& x) {       \
    return HostCall(__func__, x, [&] { return StyleAt(self).name; });             \
  }                                                                               \
  FM_API void FM_CharacterStyle_Set##Name(void* self, uint16 value, _fmxcpt& x) { \
    HostCall(__func__, x, [&] {                                                   \
      StyleAt(self).name = value;                                                 \
      StyleAt(self).name##Enabled = true;                                         \
    });                                                                           \
  }
STYLE_ATTRIBUTE(Font, font)
STYLE_ATTRIBUTE(Size, size)
#undef STYLE_ATTRIBUTE

#define STYLE_SWITCH(Name, name)                                                  \
  FM_API void FM_CharacterStyle_Enable##Name(void* self, _fmxcpt& x) {            \
    HostCall(__func__, x, [&] { StyleAt(self).name##Enabled = true; });           \
  }                                                                               \
  FM_API void FM_CharacterStyle_Disable##Name(void* self, _fmxcpt& x) {           \
    HostCall(__func__, x, [&] { StyleAt(self).name##Enabled = false; });          \
  }                                                                               \
  FM_API bool FM_CharacterStyle_Is##Name##Enabled(const void* self, _fmxcpt& x) { \
    return HostCall(__func__, x, [&] { return StyleAt(self).name##Enabled; });    \
  }
STYLE_SWITCH(Font, font)
STYLE_SWITCH(Size, size)
STYLE_SWITCH(Color, color)
#undef STYLE_SWITCH

FM_API uint16 FM_CharacterStyle_GetFace(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return StyleAt(self).face; });
}

FM_API void FM_CharacterStyle_SetFace(void* self, uint16 face, _fmxcpt& x) {
  HostCall(__func__, x, [&] { StyleAt(self).face = face; });
}

FM_API void FM_CharacterStyle_EnableFace(void* self, uint16 face, _fmxcpt& x) {
  HostCall(__func__, x, [&] { StyleAt(self).face |= face; });
}

FM_API void FM_CharacterStyle_DisableFace(void* self, uint16 face, _fmxcpt& x) {
  HostCall(__func__, x, [&] { StyleAt(self).face = static_cast<uint16>(StyleAt(self).face & ~face); });
}

FM_API void FM_CharacterStyle_DisableAllFaces(void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] { StyleAt(self).face = CharacterStyle::kFace_Plain; });
}

FM_API bool FM_CharacterStyle_IsFaceEnabled(const void* self, uint16 face, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return face != 0 && (StyleAt(self).face & face) == face; });
}

FM_API bool FM_CharacterStyle_IsAnyFaceEnabled(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return StyleAt(self).face != 0; });
}

FM_API const CharacterStyle::Color* FM_CharacterStyle_GetColor(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& object = wrapper::Live<CharacterStyleObject>(self);
    *object.color = object.style.color;
    return object.color.Show();
  });
}

FM_API void FM_CharacterStyle_SetColor(void* self, const CharacterStyle::Color& color, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    StyleAt(self).color = wrapper::Live<wrapper::ColorObject>(&color);
    StyleAt(self).colorEnabled = true;
  });
}

FM_API void FM_CharacterStyle_GetFontInformation(void* self, uint16& font, uint16& face, uint16& size, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    const auto& style = StyleAt(self);
    font = style.font;
    face = style.face;
    size = style.size;
  });
}

FM_API void FM_CharacterStyle_SetFontInformation(void* self, uint16 font, uint16 face, uint16 size, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    auto& style = StyleAt(self);
    style = {font, size, face, style.color, true, true, style.colorEnabled};
  });
}

FM_API void FM_CharacterStyle_DisableAll(void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    auto& style = StyleAt(self);
    style.fontEnabled = style.sizeEnabled = style.colorEnabled = false;
    style.face = CharacterStyle::kFace_Plain;
  });
}

FM_API bool FM_CharacterStyle_IsAllDisabled(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    const auto& style = StyleAt(self);
    return !style.fontEnabled && !style.sizeEnabled && !style.colorEnabled && style.face == 0;
  });
}

}  // namespace fmx
