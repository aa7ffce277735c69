// Designs, and what is found in them, as JSON. The command line and the requests share it.
#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "changes/Changes.h"
#include "designs/DesignStore.h"
#include "output/Search.h"
#include "references/ReferenceIndex.h"
#include "references/References.h"

namespace service {

nlohmann::ordered_json DescribeDesign(const StoredDesign& design);
nlohmann::ordered_json DescribeHit(const StoredHit& hit);
nlohmann::ordered_json DescribeHit(const solution::SearchHit& hit);
nlohmann::ordered_json DescribeChange(const solution::Change& change);
nlohmann::ordered_json DescribeReference(const solution::Reference& reference);

/// Kind, UUID and name of `element`.
nlohmann::ordered_json DescribeElement(const solution::Element& element);

/// For requests, with more: keys of elements, who changed what, values before and after.
nlohmann::ordered_json DescribeElementIn(const solution::Design& design, const solution::Element& element);
nlohmann::ordered_json DescribeReferenceIn(const solution::Design& design, const solution::Reference& reference);
nlohmann::ordered_json DescribeCall(const solution::Design& design, const solution::ReferenceIndex::Call& call);
nlohmann::ordered_json DescribeChangeBetween(const solution::Design& older, const solution::Design& newer,
                                             const solution::Change& change);

}  // namespace service
