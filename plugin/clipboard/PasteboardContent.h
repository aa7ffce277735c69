// What one write puts on the pasteboard: the declared types, in order, and their bytes.
#pragma once

#include <memory>
#include <string>
#include <vector>

class PasteboardContent {
 public:
  using Bytes = std::shared_ptr<const std::string>;

  /// No types.
  PasteboardContent() = default;
  /// Announces the types: plain text, if `text`, then `types`.
  PasteboardContent(bool text, const std::vector<std::string>& types);

  /// False when `type` was not declared. Types with equal bytes share one copy of them.
  bool Set(const std::string& type, const std::string& bytes);
  /// Null when `type` was not declared or has not been given its bytes.
  Bytes Find(const std::string& type) const;
  /// The declared types.
  const std::vector<std::string>& Types() const { return types_; }

 private:
  std::vector<std::string> types_;
  std::vector<Bytes> bytes_;  // of each type
};
