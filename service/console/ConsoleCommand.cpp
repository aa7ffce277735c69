// varnix-service console.
#include <iostream>

#include "Subcommands.h"
#include "client/Client.h"
#include "system/Program.h"
#include "system/System.h"

namespace service {

ExitStatus RunConsole(const Options& options) {
  const auto address = Client(options).Post("/operator/console", nlohmann::json::object()).at("url").get<std::string>();
  std::cout << address << std::endl;
  if (!options.open) return kDone;
  if (const std::string failure = RunProgram({kOpenProgram, address}); !failure.empty()) {
    throw std::runtime_error("no browser could be started (" + failure + "); open the address yourself");
  }
  return kDone;
}

}  // namespace service
