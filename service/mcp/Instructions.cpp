#include "mcp/Methods.h"

namespace service::mcp {

const char* Instructions() {
  return R"(Varnix connects you with FileMaker Pro on this machine. Designs are complete schema exports of FileMaker files: tables, fields, scripts, layouts, relationships and so on.

- designs lists the designs that are stored; elements, element, search, references and changes examine them.)";
}

}  // namespace service::mcp
