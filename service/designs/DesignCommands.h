// The subcommands of varnix-service about designs.
#pragma once

#include <iosfwd>

#include "Options.h"
#include "system/Terminal.h"

namespace service {

/// All of these write to `out`, warnings to `warnings`, and throw std::runtime_error when a design cannot be read or
/// written.

void PrintChanges(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings);

void PrintReferences(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings);

/// Also throws when nothing was found.
void PrintSearch(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings);

void ExportDesign(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings);

/// Prints the designs of the store.
void PrintDesigns(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings);

/// Prints the hits in the store. Also throws when nothing was found.
void PrintHistorySearch(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings);

/// Sets label and note of a stored design.
void LabelDesign(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings);

}  // namespace service
