#include "clipboard/PasteboardContent.h"

#include <algorithm>
#include <cstddef>

#include "clipboard/ClipboardTypes.h"
#include "clipboard/Pasteboard.h"

PasteboardContent::PasteboardContent(bool text, const std::vector<std::string>& types) {
  if (text) types_.push_back(kPlainTextType);
  for (const auto& type : types) AddUniqueType(types_, type);
  bytes_.resize(types_.size());
}

bool PasteboardContent::Set(const std::string& type, const std::string& bytes) {
  const auto declared = std::find(types_.begin(), types_.end(), type);
  if (declared == types_.end()) return false;
  const auto same = std::find_if(bytes_.begin(), bytes_.end(),
                                 [&](const Bytes& other) { return other != nullptr && *other == bytes; });
  Bytes shared = same != bytes_.end() ? *same : std::make_shared<const std::string>(bytes);
  bytes_[static_cast<std::size_t>(declared - types_.begin())] = std::move(shared);
  return true;
}

PasteboardContent::Bytes PasteboardContent::Find(const std::string& type) const {
  const auto declared = std::find(types_.begin(), types_.end(), type);
  return declared == types_.end() ? nullptr : bytes_[static_cast<std::size_t>(declared - types_.begin())];
}
