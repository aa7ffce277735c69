// The operator interface to the designs that were received.
#include <charconv>

#include "HttpError.h"
#include "Parameters.h"
#include "Routes.h"
#include "canonical/Properties.h"
#include "design/DesignReader.h"
#include "designs/DesignJson.h"
#include "designs/OpenDesign.h"
#include "references/ReferenceIndex.h"

namespace service {
namespace {

using solution::Design;
using solution::Element;

template <class Items, class Describe>
Json DescribeAll(const Items& items, Describe describe) {
  Json json = Json::array();
  for (const auto& item : items) json.push_back(describe(item));
  return json;
}

// The design whose id is the open segment `index` of the path.
std::unique_ptr<const Design> Open(Context& context, const Request& request, std::size_t index) {
  const std::string& digits = request.captures[index];
  std::int64_t id = 0;
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), id);
  DesignStore history = OpenHistory(context.store.Folder());
  const bool isNumber = fault == std::errc() && end == digits.data() + digits.size();
  if (!isNumber || !history.Find(id)) throw HttpError(404, "no such design");
  std::string error;
  auto design = solution::ReadDesignBytes(history.Content(id), "design " + digits, error);
  if (design == nullptr) throw HttpError(409, error);
  return design;
}

std::vector<const Element*> Named(const Design& design, const std::string& name) {
  auto elements = FindElements(design, name);
  if (elements.empty()) throw HttpError(404, "the design has no element named " + name);
  return elements;
}

Response ListDesigns(Context& context, const Request& request) {
  const auto designs = OpenHistory(context.store.Folder()).List(request.Parameter("file"));
  return JsonAnswer({{"designs", DescribeAll(designs, DescribeDesign)}});
}

Response SearchDesigns(Context& context, const Request& request) {
  const std::string text = request.Parameter("text");
  if (text.empty()) throw HttpError(400, "text is missing");
  const auto rows = static_cast<std::size_t>(Rows(request));
  Json hits = Json::array();
  std::size_t total = 0;
  OpenHistory(context.store.Folder()).Search(text, request.Parameter("file"), [&](const StoredHit& hit) {
    if (++total <= rows) hits.push_back(DescribeHit(hit));
  });
  return JsonAnswer({{"total", total}, {"hits", std::move(hits)}});
}

Response ShowChanges(Context& context, const Request& request) {
  const auto older = Open(context, request, 0), newer = Open(context, request, 1);
  const auto comparison = Compare(*older, *newer);
  return JsonAnswer({{"warnings", comparison.warnings}, {"changes", DescribeAll(comparison.changes, DescribeChange)}});
}

Response ShowReferences(Context& context, const Request& request) {
  const std::string of = request.Parameter("of");
  const bool unused = Number("unused", Parameter(request, "unused"), 0, 1, 0) == 1;
  const bool broken = Number("broken", Parameter(request, "broken"), 0, 1, 0) == 1;
  if (unused && (broken || !of.empty())) throw HttpError(400, "unused excludes of and broken");
  const auto design = Open(context, request, 0);
  const auto elements = of.empty() ? std::vector<const Element*>() : Named(*design, of);
  const solution::ReferenceIndex index(FindReferences(*design));
  if (unused) {
    return JsonAnswer({{"elements", DescribeAll(index.Unused(*design),
                                                [](const Element* element) { return DescribeElement(*element); })}});
  }
  return JsonAnswer(
      {{"references", DescribeAll(index.Select(elements, broken), [](const solution::Reference* reference) {
          return DescribeReference(*reference);
        })}});
}

Response ListElements(Context& context, const Request& request) {
  return JsonAnswer({{"elements", DescribeAll(Open(context, request, 0)->elements(), DescribeElement)}});
}

Response ShowElements(Context& context, const Request& request) {
  const auto design = Open(context, request, 0);
  return JsonAnswer({{"elements", DescribeAll(Named(*design, request.captures[1]), [&](const Element* element) {
                        Json json = DescribeElement(*element);
                        json["text"] = CanonicalText(*design, *element);
                        return json;
                      })}});
}

constexpr Route kRoutes[] = {
    {"GET", "/operator/designs", KeyPlace::kHeader, false, false, ListDesigns},
    {"GET", "/operator/designs/search", KeyPlace::kHeader, false, false, SearchDesigns},
    {"GET", "/operator/designs/*/changes/*", KeyPlace::kHeader, false, false, ShowChanges},
    {"GET", "/operator/designs/*/references", KeyPlace::kHeader, false, false, ShowReferences},
    {"GET", "/operator/designs/*/elements", KeyPlace::kHeader, false, false, ListElements},
    {"GET", "/operator/designs/*/elements/*", KeyPlace::kHeader, false, false, ShowElements},
};

}  // namespace

std::span<const Route> DesignRoutes() { return kRoutes; }

}  // namespace service
