// The subcommands of varnix-service, one function each. They print their results and return the exit status. They throw
// std::exception, UsageError for wrong arguments; the caller prints it.
#pragma once

#include "Options.h"

namespace service {

ExitStatus RunServe(const Options& options);
ExitStatus RunSignIn(const Options& options);
ExitStatus RunConsole(const Options& options);
ExitStatus RunInstall(const Options& options);
ExitStatus RunUninstall(const Options& options);
ExitStatus RunSend(const Options& options);
ExitStatus RunResult(const Options& options);
ExitStatus RunCancel(const Options& options);
ExitStatus RunList(const Options& options);
ExitStatus RunShow(const Options& options);
ExitStatus RunRecords(const Options& options);
ExitStatus RunStatus(const Options& options);
ExitStatus RunPrune(const Options& options);

ExitStatus RunChanges(const Options& options);
ExitStatus RunReferences(const Options& options);
ExitStatus RunSearch(const Options& options);
ExitStatus RunDesigns(const Options& options);
ExitStatus RunLabel(const Options& options);
ExitStatus RunExport(const Options& options);

ExitStatus RunMcp(const Options& options);

}  // namespace service
