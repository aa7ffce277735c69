#include "http/Message.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "http/HttpError.h"

namespace service {
namespace {

constexpr std::size_t kLongestEcho = 60;

// Receives the parser's events, so that a large body is not built as a document first. The parser fixes these names.
class MessageReader : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit MessageReader(const std::vector<Member>& members) : members_(members) {}

  Message TakeMessage() { return std::move(message_); }

  bool key(string_t& name) override {
    const auto known = [&](const Member& member) { return name == member.name; };
    if (std::none_of(members_.begin(), members_.end(), known))
      throw HttpError(400, "unknown member " + name.substr(0, kLongestEcho));
    if (message_.count(name) != 0) throw HttpError(400, name + " is given twice");
    name_ = name;
    return true;
  }
  bool string(string_t& value) override {
    if (!open_) return NotAnObject();
    message_[name_] = std::move(value);
    return true;
  }
  bool start_object(std::size_t) override {
    if (open_) return NotAString();
    return open_ = true;
  }
  bool end_object() override { return true; }
  bool start_array(std::size_t) override { return OtherValue(); }
  bool end_array() override { return true; }
  bool null() override { return OtherValue(); }
  bool boolean(bool) override { return OtherValue(); }
  bool number_integer(number_integer_t) override { return OtherValue(); }
  bool number_unsigned(number_unsigned_t) override { return OtherValue(); }
  bool number_float(number_float_t, const string_t&) override { return OtherValue(); }
  bool binary(binary_t&) override { return OtherValue(); }
  // The parser's own message would quote the input, which may contain the account key.
  bool parse_error(std::size_t position, const std::string&, const nlohmann::json::exception&) override {
    throw HttpError(400, "the body is not JSON in UTF-8: error at byte " + std::to_string(position));
  }

 private:
  bool OtherValue() const { return open_ ? NotAString() : NotAnObject(); }
  [[noreturn]] static bool NotAnObject() { throw HttpError(400, "the body must be a JSON object"); }
  [[noreturn]] bool NotAString() const { throw HttpError(400, name_ + " must be a string"); }

  const std::vector<Member>& members_;
  bool open_ = false;
  std::string name_;
  Message message_;
};

}  // namespace

Message ReadMessage(std::string_view text, const std::vector<Member>& members) {
  MessageReader reader(members);
  nlohmann::json::sax_parse(text.begin(), text.end(), &reader);
  Message message = reader.TakeMessage();
  for (const auto& member : members) {
    if (member.required && message.count(member.name) == 0)
      throw HttpError(400, std::string(member.name) + " is missing");
  }
  return message;
}

std::optional<std::string> Find(const Message& message, const char* name) {
  const auto found = message.find(name);
  return found == message.end() ? std::nullopt : std::optional<std::string>(found->second);
}

}  // namespace service
