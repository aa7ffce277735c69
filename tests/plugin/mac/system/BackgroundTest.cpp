// Background work on a queue, the system's or a stand-in of it.
#include "bridge/Background.h"

#include <FMWrapper/FMXExtern.h>
#include <dlfcn.h>

#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <thread>

#include "support/FolderTest.h"

namespace {

using Background = FolderTest;

TEST_F(Background, RunsJobsOnAnotherThreadAndDropsTheirExceptions) {
  std::promise<std::thread::id> ran;
  std::promise<void> gone;
  std::shared_ptr<void> owned(nullptr, [&gone](void*) { gone.set_value(); });
  bg([&ran, owned = std::move(owned)] {
    ran.set_value(std::this_thread::get_id());
    throw std::runtime_error("dropped");
  });
  ASSERT_EQ(gone.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready) << "the job is kept";
  EXPECT_NE(ran.get_future().get(), std::this_thread::get_id());
}

TEST_F(Background, ThePluginStaysInMemoryForJobsThatOutliveIt) {
  void* const plugin = dlopen(PLUGIN_FILE, RTLD_LAZY);
  ASSERT_NE(plugin, nullptr) << dlerror();
  FMX_ExternCallStruct call{};
  call.whichCall = kFMXT_Init;
  reinterpret_cast<void (*)(FMX_ExternCallPtr)>(dlsym(plugin, "FMExternCallProc"))(&call);
  dlclose(plugin);
  EXPECT_NE(dlopen(PLUGIN_FILE, RTLD_LAZY | RTLD_NOLOAD), nullptr);
}

}  // namespace
