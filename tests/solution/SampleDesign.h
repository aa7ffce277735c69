// The sample design of these tests: every kind of element, each as FileMaker writes it.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>
#include <string_view>

#include "design/DesignReader.h"
#include "export/Document.h"

namespace solution {

inline const std::string& SampleText() {
  static const std::string text = ReadFile(TEST_DATA "/Orders.xml");
  return text;
}

/// The sample with the first `from` in it replaced; fails when there is none.
inline std::string SampleWith(std::string_view from, std::string_view to) {
  std::string text = SampleText();
  const auto at = text.find(from);
  EXPECT_NE(at, text.npos) << "the sample does not contain " << from;
  return at == text.npos ? text : text.replace(at, from.size(), to);
}

/// The sample as a version without UUIDs writes it.
inline std::string SampleWithoutUuids() {
  static const std::regex uuids("<UUID.*?</UUID>| UUID=\".*?\"");
  return std::regex_replace(SampleWith("2.2.3.0", "2.0.0.0"), uuids, "");
}

inline std::unique_ptr<const Design> ReadText(std::string text) {
  std::string error;
  auto design = ReadDesignBytes(std::move(text), "a.xml", error);
  EXPECT_NE(design, nullptr) << error;
  return design;
}

inline const Design& Sample() {
  static const auto design = ReadText(SampleText());
  return *design;
}

}  // namespace solution
