#include "designs/OpenDesign.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>

#include "Options.h"
#include "design/DesignReader.h"
#include "http/Parameters.h"
#include "system/Terminal.h"

namespace service {
namespace {

std::vector<StoredDesign> Readable(DesignStore& history, const std::string& file) {
  auto designs = history.List(file);
  if (designs.empty())
    throw std::runtime_error("there is no design of " + file + "; a path contains / or ends in .xml");
  std::erase_if(designs, [](const StoredDesign& design) { return design.problem.has_value(); });
  return designs;
}

}  // namespace

bool IsPath(const std::string& name) {
  return name.find('/') != std::string::npos || name.ends_with(".xml") || name.ends_with(".XML");
}

StoredDesign FindDesign(DesignStore& history, const std::string& name) {
  if (const auto id = WholeNumber(name)) {
    const auto found = history.Find(*id);
    if (!found) throw std::runtime_error("there is no design " + name);
    return *found;
  }
  const auto designs = Readable(history, name);
  if (designs.empty()) throw std::runtime_error("no design of " + name + " can be read; see varnix-service designs");
  return designs.back();
}

DesignStore OpenHistory(const std::string& folder) {
  DesignStore history(folder);
  history.CatchUp(false);
  return history;
}

std::pair<std::string, std::string> NewestTwo(const std::string& file, const std::string& folder) {
  if (IsPath(file)) throw UsageError("NEW is missing: name another export to compare with");
  DesignStore history = OpenHistory(folder);
  const auto designs = Readable(history, file);
  if (designs.size() < 2) throw std::runtime_error("there are fewer than two readable designs of " + file);
  return {std::to_string(designs[designs.size() - 2].id), std::to_string(designs.back().id)};
}

std::unique_ptr<const solution::Design> OpenDesign(const std::string& name, const std::string& folder,
                                                   std::ostream& warnings) {
  const auto progress = ShowProgress("reading " + LineForTerminal(name));
  if (progress) progress(0, 1);
  std::string error;
  std::unique_ptr<const solution::Design> design;
  if (IsPath(name)) {
    design = solution::ReadDesign(name, error);
  } else {
    DesignStore history = OpenHistory(folder);
    design = solution::ReadDesignBytes(history.Content(FindDesign(history, name).id), "design " + name, error);
  }
  if (progress) progress(1, 1);
  if (design == nullptr) throw std::runtime_error(error);
  for (const std::string& note : design->document().notes) warnings << "warning: " << note << '\n';
  return design;
}

}  // namespace service
