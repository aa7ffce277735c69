// The operator interface to the designs that were received.
#include <algorithm>

#include "canonical/Properties.h"
#include "canonical/Steps.h"
#include "design/DesignReader.h"
#include "designs/DesignJson.h"
#include "designs/DesignStore.h"
#include "designs/Overview.h"
#include "http/HttpError.h"
#include "http/Message.h"
#include "http/Parameters.h"
#include "http/Routes.h"
#include "references/ReferenceIndex.h"

namespace service {
namespace {

constexpr int kClientGone = 499;  // nobody reads it, unless the client has closed only its own direction

using solution::Design;
using solution::Element;
using solution::Kind;

template <class Items, class Describe>
Json DescribeAll(const Items& items, Describe describe) {
  Json json = Json::array();
  for (const auto& item : items) json.push_back(describe(item));
  return json;
}

Json DescribeElements(const Design& design, const std::vector<const Element*>& elements) {
  return DescribeAll(elements, [&design](const Element* element) { return DescribeElementIn(design, *element); });
}

Json DescribeReferences(const Design& design, const std::vector<const solution::Reference*>& references) {
  return DescribeAll(references, [&design](const auto* reference) { return DescribeReferenceIn(design, *reference); });
}

std::unique_ptr<const Design> ReadStored(Context& context, std::int64_t id) {
  DesignStore history(context.store.Folder());
  if (!history.Has(id)) throw HttpError(404, "no such design");
  std::string error;
  auto design = solution::ReadDesignBytes(history.Content(id), "design " + std::to_string(id), error);
  if (design == nullptr) throw HttpError(409, error);
  return design;
}

// The design whose id is the captured segment `index` of the path.
std::shared_ptr<const OpenedDesign> Open(Context& context, const Request& request, std::size_t index) {
  const auto id = WholeNumber(request.captures[index]);
  const auto record = id ? context.store.FindRecord(*id) : std::nullopt;
  if (!record) throw HttpError(404, "no such design");
  return context.designs.Open(*id, record->bytes, [&context, id] { return ReadStored(context, *id); });
}

std::vector<const Element*> Named(const Design& design, const std::string& name) {
  auto elements = FindElements(design, name);
  if (elements.empty()) throw HttpError(404, "the design has no element named " + name);
  return elements;
}

// The designs as far as they are indexed. If indexing took all threads, no poll would be answered.
DesignStore IndexedDesigns(Context& context) {
  context.awaitIndex(context.times.index);
  return DesignStore(context.store.Folder());
}

Response ListDesigns(Context& context, const Request& request) {
  const auto designs = IndexedDesigns(context).List(request.Parameter("file"));
  return JsonAnswer({{"designs", DescribeAll(designs, DescribeDesign)}});
}

Response LabelDesign(Context& context, const Request& request) {
  const Message message = ReadMessage(request.body, {{"label", false}, {"note", false}});
  if (message.empty()) throw HttpError(400, "label or note is missing");
  const auto id = WholeNumber(request.captures[0]);
  DesignStore history(context.store.Folder());
  if (!id || !history.Describe(*id, Find(message, "label"), Find(message, "note"))) {
    throw HttpError(404, "no such design");
  }
  context.events.Fire(Topic::kDesigns);
  return JsonAnswer({{"ok", true}});
}

Response SearchDesigns(Context& context, const Request& request) {
  const std::string text = request.Parameter("text");
  if (text.empty()) throw HttpError(400, "text is missing");
  const auto rows = static_cast<std::size_t>(Rows(request));
  Json hits = Json::array();
  std::size_t total = 0;
  const auto found = [&](const StoredHit& hit) {
    if (++total <= rows) hits.push_back(DescribeHit(hit));
  };
  const bool isWhole = IndexedDesigns(context).Search(text, request.Parameter("file"), found, request.isWanted);
  if (!isWhole) throw HttpError(kClientGone, "the search was given up, because the connection was closed");
  return JsonAnswer({{"total", total}, {"hits", std::move(hits)}});
}

Response ShowChanges(Context& context, const Request& request) {
  const bool withDetails = Number("details", Parameter(request, "details"), 0, 1, 0) == 1;
  const auto olderOpened = Open(context, request, 0), newerOpened = Open(context, request, 1);
  const Design &older = olderOpened->design(), &newer = newerOpened->design();
  const auto comparison = Compare(older, newer);
  const auto describe = [&](const solution::Change& change) {
    return withDetails ? DescribeChangeBetween(older, newer, change) : DescribeChange(change);
  };
  return JsonAnswer({{"warnings", comparison.warnings}, {"changes", DescribeAll(comparison.changes, describe)}});
}

Response ShowReferences(Context& context, const Request& request) {
  const std::string of = request.Parameter("of");
  const bool unused = Number("unused", Parameter(request, "unused"), 0, 1, 0) == 1;
  const bool broken = Number("broken", Parameter(request, "broken"), 0, 1, 0) == 1;
  if (unused && (broken || !of.empty())) throw HttpError(400, "unused cannot be combined with of or broken");
  const auto opened = Open(context, request, 0);
  const Design& design = opened->design();
  const auto elements = of.empty() ? std::vector<const Element*>() : Named(design, of);
  if (unused) return JsonAnswer({{"elements", DescribeElements(design, opened->references().Unused(design))}});
  return JsonAnswer({{"references", DescribeReferences(design, opened->references().Select(elements, broken))}});
}

Response ShowCalls(Context& context, const Request& request) {
  const auto opened = Open(context, request, 0);
  const Design& design = opened->design();
  const auto scripts = Named(design, request.Parameter("of"));
  if (scripts.size() != 1 || scripts[0]->kind != solution::Kind::kScript) {
    throw HttpError(400, "of must name one script, such as its key");
  }
  return JsonAnswer({{"calls", DescribeAll(opened->references().CallChain(*scripts[0]),
                                           [&design](const auto& call) { return DescribeCall(design, call); })}});
}

Response ListElements(Context& context, const Request& request) {
  const std::string kind = request.Parameter("kind");
  const auto opened = Open(context, request, 0);
  Json elements = Json::array();
  for (const Element& element : opened->design().elements()) {
    if (!kind.empty() && kind != NamesOf(element.kind).word) continue;
    elements.push_back(DescribeElementIn(opened->design(), element));
  }
  return JsonAnswer({{"elements", std::move(elements)}});
}

// How many lines of the text each step takes; formulas and comments may have several.
Json StepLengths(const Design& design, const Element& script) {
  Json lengths = Json::array();
  for (const auto& step : solution::StepLines(design, script)) {
    lengths.push_back(1 + std::count(step.text.begin(), step.text.end(), '\n'));
  }
  return lengths;
}

Response ShowElements(Context& context, const Request& request) {
  const auto opened = Open(context, request, 0);
  const Design& design = opened->design();
  return JsonAnswer({{"elements", DescribeAll(Named(design, request.captures[1]), [&](const Element* element) {
                        Json json = DescribeElementIn(design, *element);
                        json["text"] = CanonicalText(design, *element);
                        if (element->kind == Kind::kScript) json["stepLines"] = StepLengths(design, *element);
                        return json;
                      })}});
}

Response ShowGraph(Context& context, const Request& request) {
  return JsonAnswer(DescribeGraph(Open(context, request, 0)->design()));
}

Response ShowReport(Context& context, const Request& request) {
  return JsonAnswer(DescribeReport(*Open(context, request, 0)));
}

constexpr Route kDesignRoutes[] = {
    {"GET", "/operator/designs", KeyPlace::kHeader, false, false, ListDesigns},
    {"GET", "/operator/designs/search", KeyPlace::kHeader, false, false, SearchDesigns},
    {"POST", "/operator/designs/*/label", KeyPlace::kHeader, false, false, LabelDesign},
    {"GET", "/operator/designs/*/changes/*", KeyPlace::kHeader, false, false, ShowChanges},
    {"GET", "/operator/designs/*/graph", KeyPlace::kHeader, false, false, ShowGraph},
    {"GET", "/operator/designs/*/report", KeyPlace::kHeader, false, false, ShowReport},
    {"GET", "/operator/designs/*/references", KeyPlace::kHeader, false, false, ShowReferences},
    {"GET", "/operator/designs/*/calls", KeyPlace::kHeader, false, false, ShowCalls},
    {"GET", "/operator/designs/*/elements", KeyPlace::kHeader, false, false, ListElements},
    {"GET", "/operator/designs/*/elements/*", KeyPlace::kHeader, false, false, ShowElements},
};

}  // namespace

std::span<const Route> DesignRoutes() { return kDesignRoutes; }

}  // namespace service
