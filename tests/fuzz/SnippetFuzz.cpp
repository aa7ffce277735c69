// Any bytes are either clipboard XML or refused with one line. Title and readable text are UTF-8 without zero bytes,
// and limited in size.
#include "Utf8.h"
#include "fuzz/Fuzz.h"
#include "snippet/Snippet.h"

void Try(const std::string& input) {
  std::string error;
  const auto snippet = solution::ReadSnippet(input, error);
  if (!snippet) return Check(!error.empty() && error.find('\n') == error.npos && IsUtf8(error));
  Check(error.empty() && snippet->title.find('\n') == std::string::npos);
  for (const std::string& text : {snippet->title, snippet->text}) Check(IsUtf8(text) && text.find('\0') == text.npos);
  Check(snippet->title.size() < 200 && snippet->text.size() < 1'100'000);
}
