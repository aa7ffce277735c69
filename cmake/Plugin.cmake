# The plug-in: one static library of everything but the entry point, which tests link too, and the module FileMaker
# loads. A test replaces a platform seam by defining its functions; the linker then leaves the library's unit out.

add_library(varnix STATIC
  bridge/BridgeState.cpp
  bridge/ClipboardUpkeep.cpp
  bridge/Commands.cpp
  bridge/IdleLoop.cpp
  bridge/LivePush.cpp
  bridge/NotificationScript.cpp
  bridge/Polling.cpp
  bridge/Register.cpp
  bridge/SchemaRequest.cpp
  bridge/ServiceMessages.cpp
  clipboard/Clipboard.cpp
  clipboard/ClipboardFunctions.cpp
  clipboard/ClipboardTypes.cpp
  core/Clock.cpp
  core/FunctionTable.cpp
  core/HostText.cpp
  core/Lines.cpp
  core/Utf8.cpp
  host/AppleScript.cpp
  host/FileIO.cpp
  net/Base64.cpp
  net/Json.cpp
  net/JsonRecord.cpp
  net/Network.cpp
  net/PercentEncode.cpp
  net/ServiceFunctions.cpp
  net/TimeLimits.cpp
  net/Version.cpp
  net/VersionCheck.cpp
  schema/ContextDebug.cpp
  schema/OpenFiles.cpp
  schema/SchemaBuilder.cpp)
if(APPLE)
  target_sources(varnix PRIVATE
    bridge/Background_mac.cpp
    bridge/Notify_mac.cpp
    clipboard/Clipboard_mac.mm
    core/Prefs_mac.mm
    host/AppleScript_mac.mm
    net/Network_mac.mm)
else()
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
  pkg_check_modules(CURL REQUIRED IMPORTED_TARGET libcurl)
  find_package(Threads REQUIRED)
  target_sources(varnix PRIVATE
    bridge/Background_linux.cpp
    bridge/Notify_linux.cpp
    clipboard/Clipboard_linux.cpp
    clipboard/PasteboardContent.cpp
    clipboard/x11/Connection.cpp
    clipboard/x11/Conversion.cpp
    clipboard/x11/Latin1.cpp
    clipboard/x11/PropertyWriter.cpp
    clipboard/x11/SelectionOwner.cpp
    clipboard/x11/SelectionReader.cpp
    clipboard/x11/Session.cpp
    clipboard/x11/SystemClipboard.cpp
    core/HostProcess_linux.cpp
    core/Prefs_linux.cpp
    host/AppleScript_linux.cpp
    net/Network_linux.cpp
    net/UrlSyntax.cpp
    net/curl/CurlTransfer.cpp
    net/curl/TransferThread.cpp)
  target_link_libraries(varnix PRIVATE PkgConfig::XCB PkgConfig::CURL Threads::Threads)
endif()
target_include_directories(varnix PUBLIC ${PROJECT_SOURCE_DIR})

if(NOT VARNIX_DEFAULT_BASE_URL MATCHES "^https://[^/ ]+$")
  message(FATAL_ERROR "VARNIX_DEFAULT_BASE_URL must be an https origin without a trailing slash")
endif()

# The description texts name the guide page as people type it, without its scheme.
string(REGEX REPLACE "^[a-z]+://" "" VARNIX_GUIDE_ADDRESS "${VARNIX_GUIDE_URL}")
configure_file(core/Product.h.in generated/core/Product.h @ONLY)
target_include_directories(varnix PUBLIC ${PROJECT_BINARY_DIR}/generated)

if(NOT FMWRAPPER_SDK)
  target_include_directories(varnix PUBLIC ${PROJECT_SOURCE_DIR}/sdk)
elseif(APPLE)
  target_compile_options(varnix PUBLIC "-iframework${FMWRAPPER_SDK}")
else()
  target_include_directories(varnix SYSTEM PUBLIC ${FMWRAPPER_SDK})
endif()

add_library(plugin MODULE core/VarnixPlugin.cpp)
target_link_libraries(plugin PRIVATE varnix)
set_target_properties(plugin PROPERTIES PREFIX "" OUTPUT_NAME Varnix LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
if(APPLE)
  include(cmake/Bundle.cmake)
else()
  # The host provides libFMWrapper.so. Linking an empty library of that name records the need for it without tying the
  # plug-in to any one host's build.
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/empty.cpp CONTENT "")  # written only once
  add_library(host_placeholder SHARED ${CMAKE_BINARY_DIR}/empty.cpp)
  set_target_properties(host_placeholder PROPERTIES OUTPUT_NAME FMWrapper
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/placeholder)
  set_target_properties(plugin PROPERTIES SUFFIX .fmx SKIP_BUILD_RPATH ON
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  target_link_libraries(plugin PRIVATE host_placeholder)
  target_link_options(plugin PRIVATE "LINKER:--no-as-needed" "LINKER:-Bsymbolic"
    "LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map")
endif()
