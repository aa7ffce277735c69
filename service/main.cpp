// varnix-service: a bridge service on this machine.
#include <iostream>

#include "Options.h"
#include "client/Client.h"
#include "system/Terminal.h"

int main(int argc, char** argv) {
  using namespace service;
  const auto fail = [](const std::exception& error, ExitStatus status) {
    std::cerr << "varnix-service: " << TextForTerminal(error.what()) << '\n';
    return status;
  };
  try {
    return RunCommandLine(argc, argv);
  } catch (const UsageError& error) {
    fail(error, kWrongUsage);
    std::cerr << "See varnix-service --help.\n";
    return kWrongUsage;
  } catch (const ServiceError& error) {
    return fail(error, kNoService);
  } catch (const std::exception& error) {
    return fail(error, kFailed);
  }
}
