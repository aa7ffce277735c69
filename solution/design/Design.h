// The design of one FileMaker file: its elements, as one export describes them.
//
// For all of solution/, unless stated otherwise: texts are UTF-8. Calls share no state, so they are safe on any thread,
// and several threads may read one design as long as none changes it. Pointers and views point into the design and live
// as long as it does. Only std::bad_alloc is thrown.
#pragma once

#include <array>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>
#include "export/XmlTree.h"

#include "design/Kind.h"
#include "export/Document.h"

namespace solution {

/// The texts point into the export's document.
struct Element {
  Kind kind = Kind::kFile;
  int id = 0;                        ///< unique within its kind, for a field within its table
  std::string_view uuid;             ///< empty in format 2.0
  std::string_view name;             ///< as in FileMaker; empty for a relationship
  const Element* parent = nullptr;   ///< the enclosing folder; a field's table
  const Element* table = nullptr;    ///< of a table occurrence; null when the table is in another file
  std::optional<int> modifications;  ///< how often it was changed and saved; absent in format 2.0
  std::string_view user;             ///< who changed it last
  std::string_view account;          ///< with which account
  std::string_view time;             ///< when, "2025-07-02T16:45:56" in local time
  std::vector<XmlNode> nodes;        ///< its definition; then what other catalogs say about it
};

class Design {
 public:
  explicit Design(std::unique_ptr<const Document> document) : document_(std::move(document)) {}

  const Document& document() const { return *document_; }
  std::string_view fileName() const { return document_->Attribute("File"); }

  /// All elements, those of one kind together and in the order of the export. The file itself is the first one.
  const std::deque<Element>& elements() const { return elements_; }
  std::deque<Element>& elements() { return elements_; }
  const Element& file() const { return elements_.front(); }

  /// These return null when there is no such element. Names are compared in any case; of several elements with the same
  /// name, the first is found.
  const Element* Find(std::string_view uuid) const;
  const Element* Find(Kind kind, int id) const;
  Element* Find(Kind kind, int id);
  const Element* Find(Kind kind, std::string_view name) const;
  const Element* FindField(const Element* table, int id) const;
  Element* FindField(const Element* table, int id);
  const Element* FindField(const Element* table, std::string_view name) const;
  std::size_t CountFields(const Element* table) const;

  /// Appends an element, which can then be found by id and UUID. For the reader.
  Element& Add(Element element);
  /// Makes all elements findable by name, once they are complete. For the reader.
  void IndexNames();

 private:
  struct Scope {
    std::unordered_map<int, Element*> byId;
    std::unordered_map<std::string, const Element*> byName;
  };

  std::unique_ptr<const Document> document_;
  std::deque<Element> elements_;
  std::unordered_map<std::string_view, const Element*> byUuid_;
  std::array<Scope, kKindCount> kinds_;
  std::unordered_map<const Element*, Scope> fields_;
};

/// The name under which an element is shown: `Table::Field`, `Left <-> Right` for a relationship.
std::string DisplayName(const Element& element);

}  // namespace solution
