// What FileMaker writes in place of a deleted element: `<Field Missing>`, `<unknown>`, and the same in other
// languages.
#pragma once

#include <string_view>
#include <vector>

#include "design/Kind.h"

namespace solution {

/// The placeholder at the start of `text`, with its angle brackets; empty when there is none.
std::string_view PlaceholderAt(std::string_view text);

bool IsPlaceholder(std::string_view name);

/// FileMaker turns a formula that it can no longer parse into one comment. Returns the placeholders in such a comment.
std::vector<std::string_view> PlaceholdersInComment(std::string_view formula);

/// Guessed from the placeholder's words; a field when they do not say.
Kind KindOfPlaceholder(std::string_view placeholder);

}  // namespace solution
