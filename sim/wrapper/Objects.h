// The contents of the opaque host objects.
#pragma once

#include <FMWrapper/FMXTypes.h>

#include <FMWrapper/FMXBinaryData.h>
#include <FMWrapper/FMXCalcEngine.h>
#include <FMWrapper/FMXData.h>
#include <FMWrapper/FMXDateTime.h>
#include <FMWrapper/FMXFixPt.h>
#include <FMWrapper/FMXText.h>
#include <FMWrapper/FMXTextStyle.h>

#include <array>
#include <compare>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "calc/Value.h"
#include "wrapper/HostCall.h"

namespace wrapper {

class Host;
/// nullptr when not found.
Host* CurrentHost();

struct QuadCharObject {
  using Handle = fmx::QuadChar;
  static constexpr char kKind[] = "QuadChar";
  std::array<fmx::uchar, 4> bytes{};
  std::strong_ordering operator<=>(const QuadCharObject& other) const {
    return std::memcmp(bytes.data(), other.bytes.data(), bytes.size()) <=> 0;
  }
  bool operator==(const QuadCharObject&) const = default;
};

struct LocaleObject {
  using Handle = fmx::Locale;
  static constexpr char kKind[] = "Locale";
  fmx::int32 type = fmx::Locale::kType_System;
};

struct ColorObject {
  using Handle = fmx::CharacterStyle::Color;
  static constexpr char kKind[] = "Color";
  fmx::uchar red = 0, green = 0, blue = 0, alpha = fmx::CharacterStyle::kColorChannel_ON;
  bool operator==(const ColorObject&) const = default;
};

/// A style's attributes. A face is enabled when its bit is set.
struct Style {
  fmx::CharacterStyle::FontID font = 0;
  fmx::CharacterStyle::FontSize size = 12;
  fmx::CharacterStyle::Face face = fmx::CharacterStyle::kFace_Plain;
  ColorObject color;
  bool fontEnabled = false, sizeEnabled = false, colorEnabled = false;

  bool operator==(const Style&) const = default;
  /// Adopts the attributes that `other` enables.
  void Add(const Style& other);
  /// Disables the attributes that `other` enables.
  void Remove(const Style& other);
};

struct CharacterStyleObject {
  using Handle = fmx::CharacterStyle;
  static constexpr char kKind[] = "CharacterStyle";
  Style style;
  mutable Part<ColorObject> color{};
  bool operator==(const CharacterStyleObject& other) const { return style == other.style; }
};

struct TextObject {
  using Handle = fmx::Text;
  static constexpr char kKind[] = "Text";
  std::u16string units;
  std::vector<Style> styles;  ///< one for each unit; empty: no unit has a style

  /// Texts without a style.
  void Assign(std::u16string newUnits);
  /// Replaces `count` units at `position` with `size` units of `other` from `from` on, including their styles.
  /// Positions and sizes beyond the end, including Text::kSize_End, mean the end.
  void Replace(std::size_t position, std::size_t count, const TextObject& other, std::size_t from, std::size_t size);

  std::strong_ordering operator<=>(const TextObject& other) const { return units.compare(other.units) <=> 0; }
  bool operator==(const TextObject& other) const { return units == other.units; }
};

struct FixPtObject {
  using Handle = fmx::FixPt;
  static constexpr char kKind[] = "FixPt";
  calc::Number number;
  int precision = calc::kDivisionPlaces;  ///< decimal places that a division keeps; other operations are exact
  auto operator<=>(const FixPtObject& other) const { return number <=> other.number; }
  bool operator==(const FixPtObject& other) const { return number == other.number; }
};

struct DateTimeObject {
  using Handle = fmx::DateTime;
  static constexpr char kKind[] = "DateTime";
  long long day = 1;
  calc::Number seconds;  ///< since midnight; may exceed one day
  bool operator==(const DateTimeObject&) const = default;

  calc::Number SecondsSinceEpoch() const;
  /// Throws std::out_of_range outside FileMaker's calendar.
  void SetSecondsSinceEpoch(const calc::Number& total);
};

struct Stream {
  std::array<fmx::uchar, 4> type{};
  std::string bytes;
  bool operator==(const Stream&) const = default;
};

struct BinaryDataObject {
  using Handle = fmx::BinaryData;
  static constexpr char kKind[] = "BinaryData";
  std::vector<Stream> streams;
  std::map<fmx::uint32, std::array<fmx::uchar, 4>> unfinished{};  ///< the types of streams being added, by context
  bool operator==(const BinaryDataObject& other) const { return streams == other.streams; }
};

struct DataObject {
  using Handle = fmx::Data;
  static constexpr char kKind[] = "Data";

  void Set(calc::Value newValue, fmx::int32 newType);

  calc::Value value;
  fmx::int32 nativeType = fmx::Data::kDTInvalid;
  // The forms of the value that have been requested.
  mutable Part<LocaleObject> locale;
  mutable Part<TextObject> text;
  mutable Part<FixPtObject> number;
  mutable Part<DateTimeObject> date, time, timestamp;
  mutable Part<BinaryDataObject> content;
};

struct DataVectObject {
  using Handle = fmx::DataVect;
  static constexpr char kKind[] = "DataVect";
  std::vector<std::unique_ptr<Part<DataObject>>> values;

  void PushBack(const DataObject& value);
};

struct RowVectObject {
  using Handle = fmx::RowVect;
  static constexpr char kKind[] = "RowVect";
  std::vector<std::unique_ptr<Part<DataVectObject>>> rows;
};

struct ExprEnvObject {
  using Handle = fmx::ExprEnv;
  static constexpr char kKind[] = "ExprEnv";
  std::uint64_t file = 0;
};

}  // namespace wrapper
