// A parsed XML text as a read-only tree. Nodes and attributes are handles that are cheap to copy and valid as long as
// their document. Every accessor of an empty handle returns an empty handle or text.
#pragma once

#include <charconv>
#include <cstddef>
#include <rapidxml.hpp>
#include <string_view>

namespace solution {

/// The integer at the start of `text`; `other` if there is none.
template <typename Number>
Number NumberIn(std::string_view text, Number other) {
  std::from_chars(text.data(), text.data() + text.size(), other);
  return other;
}

class XmlAttribute {
 public:
  XmlAttribute() = default;
  explicit XmlAttribute(const rapidxml::xml_attribute<>* attribute) : attribute_(attribute) {}

  explicit operator bool() const { return attribute_ != nullptr; }
  std::string_view name() const { return *this ? std::string_view(attribute_->name(), attribute_->name_size()) : ""; }
  std::string_view value() const {
    return *this ? std::string_view(attribute_->value(), attribute_->value_size()) : "";
  }
  int AsInt(int other = 0) const { return NumberIn(value(), other); }
  XmlAttribute next() const { return XmlAttribute(*this ? attribute_->next_attribute() : nullptr); }

  bool operator==(const XmlAttribute&) const = default;

 private:
  const rapidxml::xml_attribute<>* attribute_ = nullptr;
};

/// A range for loops that follow `Handle::next`.
template <typename Handle>
class XmlRange {
 public:
  class Iterator {
   public:
    Iterator(Handle at, std::string_view name) : at_(at), name_(name) { SkipOthers(); }
    Handle operator*() const { return at_; }
    Iterator& operator++() {
      at_ = at_.next();
      SkipOthers();
      return *this;
    }
    bool operator==(const Iterator& other) const { return at_ == other.at_; }

   private:
    void SkipOthers() {
      while (at_ && !name_.empty() && at_.name() != name_) at_ = at_.next();
    }
    Handle at_;
    std::string_view name_;
  };

  XmlRange(Handle first, std::string_view name) : first_(first), name_(name) {}
  Iterator begin() const { return {first_, name_}; }
  Iterator end() const { return {Handle(), name_}; }

 private:
  Handle first_;
  std::string_view name_;
};

/// An element, or a piece of text inside an element, which has a value but no name.
class XmlNode {
 public:
  XmlNode() = default;
  explicit XmlNode(const rapidxml::xml_node<>* node) : node_(node) {}

  explicit operator bool() const { return node_ != nullptr; }
  bool IsElement() const { return *this && node_->type() == rapidxml::node_element; }
  std::string_view name() const { return *this ? std::string_view(node_->name(), node_->name_size()) : ""; }
  /// Of a text; empty for an element.
  std::string_view value() const { return IsElement() ? "" : Value(); }
  /// The first piece of text directly inside an element.
  std::string_view first_text() const { return IsElement() ? Value() : ""; }

  XmlNode parent() const { return XmlNode(*this ? node_->parent() : nullptr); }
  XmlNode first_child() const { return XmlNode(*this ? node_->first_node() : nullptr); }
  /// The next or previous sibling, of this name if one is given.
  XmlNode next(std::string_view name = {}) const {
    return XmlNode(parent() ? node_->next_sibling(name.data(), name.size()) : nullptr);
  }
  XmlNode previous(std::string_view name = {}) const {
    return XmlNode(parent() ? node_->previous_sibling(name.data(), name.size()) : nullptr);
  }

  /// The first child element of this name.
  XmlNode child(std::string_view name) const {
    return XmlNode(*this ? node_->first_node(name.data(), name.size()) : nullptr);
  }
  XmlAttribute attribute(std::string_view name) const {
    return XmlAttribute(*this ? node_->first_attribute(name.data(), name.size()) : nullptr);
  }
  /// The children of this name, or all children, including texts.
  XmlRange<XmlNode> children(std::string_view name = {}) const { return {first_child(), name}; }
  XmlRange<XmlAttribute> attributes() const {
    return {XmlAttribute(*this ? node_->first_attribute() : nullptr), std::string_view()};
  }

  bool operator==(const XmlNode&) const = default;

 private:
  std::string_view Value() const { return *this ? std::string_view(node_->value(), node_->value_size()) : ""; }

  const rapidxml::xml_node<>* node_ = nullptr;
};

}  // namespace solution
