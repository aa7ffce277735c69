// The pasteboard of this process on an X server of its own.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "clipboard/Pasteboard.h"
#include "clipboard/PasteboardContent.h"
#include "clipboard/x11/SystemClipboard.h"
#include "plugin/clipboard/x11/FakeOwner.h"
#include "plugin/clipboard/x11/XServer.h"
#include "support/Process.h"

class PasteboardFixture : public testing::Test {
 protected:
  using Types = std::vector<std::string>;

  static constexpr int kPatienceMs = 10'000;

  void SetUp() override {
    ASSERT_NE(server_->display(), "") << "Xvfb does not start";
    unsetenv("DISPLAY");
    Pasteboard::Open()->DeclareTypes(false, {});  // forgets what an earlier test has left
    ConnectTo(server_->display());
    other_.emplace(server_->display());
  }

  static void ConnectTo(const std::string& display) {
    setenv("DISPLAY", display.c_str(), 1);
    AdvanceClock(x11::kReconnectPauseMs);
  }

  static bool Write(const std::string& text, const Types& types) {
    const auto pasteboard = Pasteboard::Open();
    pasteboard->DeclareTypes(true, types);
    bool written = true;
    for (const auto& type : types) written = pasteboard->SetData(type, text) && written;
    return pasteboard->SetString(text) && written;
  }
  static std::string Text() { return Pasteboard::Open()->String(); }
  static Types AllTypes() { return Pasteboard::Open()->Types(); }
  static std::optional<std::string> Data(const std::string& type) {
    std::string bytes;
    return Pasteboard::Open()->DataForType(type, bytes) ? std::make_optional(bytes) : std::nullopt;
  }

  /// Has xclip own the clipboard with `bytes` as `target`.
  void XclipCopies(const std::string& bytes, const std::string& target = "UTF8_STRING") {
    const xcb_window_t before = other_->OwnerOf("CLIPBOARD");
    ASSERT_EQ(RunProcess({XCLIP, "-i", "-selection", "clipboard", "-t", target}, bytes).status, 0);
    while (other_->OwnerOf("CLIPBOARD") == before || other_->OwnerOf("CLIPBOARD") == XCB_NONE) continue;
  }
  static std::string XclipPastes(const std::string& target) {
    return RunProcess({XCLIP, "-o", "-selection", "clipboard", "-t", target}).output;
  }

  /// Something of `bytes` bytes that looks different everywhere.
  static std::string Large(std::size_t bytes) {
    std::string text(bytes, '\0');
    unsigned state = 1;
    for (char& c : text) c = static_cast<char>(32 + (state = state * 1664525 + 1013904223) / 0x2C000000U);
    return text;
  }

  std::optional<XServer> server_{std::in_place};
  std::optional<XClient> other_;  // another program
};
