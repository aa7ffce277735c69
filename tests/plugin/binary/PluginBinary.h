// The plug-in binary, loaded as the host loads it.
#pragma once

#include <FMWrapper/FMXExtern.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/FolderTest.h"
#include "support/ScriptedHost.h"

/// The binary with its own settings.
class PluginBinary : public FolderTest {
 protected:
  PluginBinary() {
    library_ = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(library_, nullptr) << dlerror();
    entryPoint_ = reinterpret_cast<FMX_ExternCallProc>(dlsym(library_, "FMExternCallProc"));
    call_.extnVersion = 71;
    call_.unusedID = -1;
    call_.cCurrentEnv = [](FMX_ExprEnv*) -> FMX_ErrorCode { return 0; };
  }
  ~PluginBinary() override {
    Send(kFMXT_Shutdown);
    dlclose(library_);
  }

  void Send(FMX_ExternCallSwitch message, FMX_UChar parm1 = 0, FMX_PtrType parm3 = 0, FMX_PtrType result = 0) {
    call_.whichCall = message;
    call_.parm1 = parm1;
    call_.parm3 = parm3;
    call_.result = result;
    entryPoint_(&call_);
  }

  fmx::ptrtype Initialise() {
    Send(kFMXT_Init, 1);
    return call_.result;
  }

  std::string Call(const char16_t* name, const std::vector<std::string>& arguments = {}) {
    const auto* function = wrapper::FindFunction(name);
    return function == nullptr ? "not registered" : CallHandler(function->function, arguments);
  }

  std::u16string AskString(int id, std::size_t capacity = 100) {
    std::u16string buffer(100, u'~');
    Send(kFMXT_GetString, static_cast<FMX_UChar>(id), capacity, reinterpret_cast<FMX_PtrType>(buffer.data()));
    return buffer.substr(0, buffer.find(u'\0'));
  }

  ScriptedHost host_;
  void* library_;
  FMX_ExternCallProc entryPoint_;
  FMX_ExternCallStruct call_{};
};
