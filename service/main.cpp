// varnix-service: a bridge service on this machine.
#include <iostream>

#include "Client.h"
#include "CommandLine.h"

int main(int argc, char** argv) {
  using namespace service;
  const auto fail = [](const std::exception& error, ExitStatus status) {
    std::cerr << "varnix-service: " << error.what() << '\n';
    return status;
  };
  try {
    const CommandLine line(argc, argv);
    if (!line.wantsHelp()) return line.Run();
    std::cout << Usage();
    return kDone;
  } catch (const UsageError& error) {
    std::cerr << "varnix-service: " << error.what() << "\nvarnix-service --help tells more.\n";
    return kWrongUsage;
  } catch (const ServiceError& error) {
    return fail(error, kNoService);
  } catch (const std::exception& error) {
    return fail(error, kFailed);
  }
}
