// The designs in the data folder, for tools and resources.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "designs/DesignCache.h"
#include "mcp/Call.h"

namespace service::mcp {

/// A design by its id, or the newest of a file. Recently used designs are kept in memory. Throws std::runtime_error.
std::shared_ptr<const OpenedDesign> OpenStored(const Call& call, const std::string& name);

/// The elements with this name, UUID or key, of one kind unless `kind` is empty. Throws std::runtime_error when there
/// are none.
std::vector<const solution::Element*> Named(const solution::Design& design, const std::string& name,
                                            const std::string& kind);

bool HasKind(const solution::Element& element, const std::string& kind);

/// A short description of an element: key, kind, name, parent, detail.
Json Summary(const solution::Design& design, const solution::Element& element);

}  // namespace service::mcp
