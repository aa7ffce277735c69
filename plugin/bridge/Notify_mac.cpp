// Notifications through osascript, which reads the script from its standard input.
#include <fcntl.h>

#include <cstdio>

#include "bridge/Background.h"
#include "bridge/NotificationScript.h"
#include "bridge/Notify.h"

void Notify(const std::string& title, const std::string& message) {
  bg([script = NotificationScript(title, message)] {
    std::FILE* tool = popen("/usr/bin/osascript", "w");
    if (tool == nullptr) return;
    fcntl(fileno(tool), F_SETNOSIGPIPE, 1);  // otherwise an osascript that exits early would end FileMaker
    std::fwrite(script.data(), 1, script.size(), tool);
    pclose(tool);
  });
}
