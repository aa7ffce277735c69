// The function table, laid out so that it can be compared with the function reference.
#include "core/FunctionTable.h"

#include "bridge/ContextFunctions.h"
#include "bridge/LivePush.h"
#include "bridge/SignIn.h"
#include "clipboard/ClipboardFunctions.h"
#include "core/HostText.h"
#include "core/Product.h"
#include "host/FileFunctions.h"
#include "net/ServiceFunctions.h"
#include "net/VersionCheck.h"
#include "schema/SchemaBuilder.h"

namespace {

constexpr fmx::uint32 kFlags = 0x00FFFF7E;  // shown in every dialog, on every kind of device, now and in future

fmx::QuadCharUniquePtr PluginId() { return fmx::QuadCharUniquePtr('V', 'r', 'n', 'x'); }

fmx::errcode Do_Version(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data& result) {
  SetTextResult(kPluginVersion, result);
  return 0;
}

struct ExternalFunction {
  short id;
  const char* name;
  short minArguments;
  short maxArguments;
  const char* prototype;    // as the function list shows it; braces mark optional arguments
  const char* description;  // shown in FileMaker's calculation dialogs
  fmx::ExtPluginType handler;
};

// In order of registration, which is also the order of ids, without gaps.
// clang-format off
constexpr ExternalFunction kFunctions[] = {
    {100, "Varnix.Version", 0, 0,
     "Varnix.Version",
     "Returns the Varnix plugin version string.",
     Do_Version},
    {101, "Varnix.SetXMLClipboard", 2, 2,
     "Varnix.SetXMLClipboard( xmlType ; xmlContent )",
     "Writes UTF-8 XML to the FM clipboard under the given type key (e.g. XMSS).",
     Do_SetXMLClipboard},
    {102, "Varnix.GetXMLClipboard", 1, 1,
     "Varnix.GetXMLClipboard( xmlType )",
     "Reads FM XML clipboard for the given type key. Pass empty text or AUTO to probe common FileMaker XML types.",
     Do_GetXMLClipboard},
    {103, "Varnix.Register", 3, 4,
     "Varnix.Register( email ; licenseKey ; machineId { ; baseUrl } )",
     "Registers this FM installation with Varnix and starts the background bridge. Call once at file open. "
     "Use Get(PersistentID) for machineId. baseUrl is optional for local development sites.",
     Do_Register},
    {104, "Varnix.ReadFile", 1, 1,
     "Varnix.ReadFile( path )",
     "Reads a file from disk and returns its contents as text.",
     Do_ReadFile},
    {105, "Varnix.HTTPPost", 2, 2,
     "Varnix.HTTPPost( url ; jsonBody )",
     "Synchronous HTTP POST with a JSON body. Returns the response body or an error string.",
     Do_HTTPPost},
    {106, "Varnix.PushSnapshot", 2, 2,
     "Varnix.PushSnapshot( ingestUrl ; xmlPath )",
     "Reads an XML file and pushes it to Varnix as a snapshot.",
     Do_PushSnapshot},
    {107, "Varnix.PushScript", 3, 4,
     "Varnix.PushScript( licenseKey ; bridgeUrl ; xmlType { ; label } )",
     "Reads FM XML from the clipboard and pushes it to Varnix. xmlType: XMSC, XMSS, XMFD, XMTB, XMLO, XMFN.",
     Do_PushScript},
    {108, "Varnix.GetSchema", 0, 1,
     "Varnix.GetSchema( { fileName } )",
     "Returns a JSON snapshot of an open FM file's schema: tables, fields, scripts, layouts, and custom functions. "
     "Defaults to the frontmost file.",
     Do_GetSchema},
    {109, "Varnix.POSIXPath", 1, 1,
     "Varnix.POSIXPath( fmPath )",
     "Converts a FileMaker path (e.g. /Macintosh HD/var/...) to a POSIX path (/var/...) suitable for cURL file=@ "
     "uploads.",
     Do_POSIXPath},
    {110, "Varnix.UploadFile", 4, 4,
     "Varnix.UploadFile( url ; licenseKey ; filename ; posixPath )",
     "POSTs a file as multipart/form-data to the given URL with licenseKey and filename fields. "
     "Returns the response body.",
     Do_UploadFile},
    {111, "Varnix.LivePush", 1, 1,
     "Varnix.LivePush( posixPath )",
     "Uploads a SaveAsXML file to Varnix Live Schema and completes the pending Get Schema command. "
     "Call from the Varnix Live Push script after Save a Copy As [XML].",
     Do_LivePush},
    {112, "Varnix.GetTextClipboard", 0, 0,
     "Varnix.GetTextClipboard",
     "Reads plain UTF-8 text from the system clipboard. Returns empty if clipboard has no text.",
     Do_GetTextClipboard},
    {113, "Varnix.SetTextClipboard", 1, 1,
     "Varnix.SetTextClipboard( text )",
     "Writes plain UTF-8 text to the system clipboard, replacing all current contents.",
     Do_SetTextClipboard},
    {114, "Varnix.UpdateAvailable", 0, 0,
     "Varnix.UpdateAvailable",
     "Returns empty if the plugin is up to date, or a human-readable notice if a newer version is available at "
     VARNIX_GUIDE_ADDRESS ".",
     Do_UpdateAvailable},
    {115, "Varnix.ClipboardFormats", 0, 0,
     "Varnix.ClipboardFormats",
     "Returns diagnostic clipboard format ids and names currently available on the system clipboard.",
     Do_ClipboardFormats},
    {116, "Varnix.PrepareXMLClipboard", 0, 1,
     "Varnix.PrepareXMLClipboard( { xmlType } )",
     "Reads plain XML text from the clipboard and rewrites it as FileMaker XML clipboard data. "
     "xmlType is optional; commonly XMSS for script steps.",
     Do_PrepareXMLClipboard},
    {117, "Varnix.ListFiles", 0, 0,
     "Varnix.ListFiles",
     "Returns FileMaker file names visible to the Varnix plug-in in the current FileMaker calculation context.",
     Do_ListFiles},
    {118, "Varnix.DebugContext", 0, 1,
     "Varnix.DebugContext( { targetFileName } )",
     "Returns diagnostic JSON showing the current FileMaker context visible to the Varnix plug-in.",
     Do_DebugContext},
};
// clang-format on

}  // namespace

fmx::errcode RegisterExternalFunctions() {
  const auto id = PluginId();
  const fmx::TextUniquePtr name, prototype, description;
  fmx::errcode firstResult = 0;
  for (const auto& function : kFunctions) {
    name->Assign(function.name, fmx::Text::kEncoding_UTF8);
    prototype->Assign(function.prototype, fmx::Text::kEncoding_UTF8);
    description->Assign(function.description, fmx::Text::kEncoding_UTF8);
    const auto result = fmx::ExprEnv::RegisterExternalFunctionEx(*id, function.id, *name, *prototype, *description,
                                                                 function.minArguments, function.maxArguments, kFlags,
                                                                 function.handler);
    if (&function == kFunctions) firstResult = result;
  }
  return firstResult;
}

void UnregisterExternalFunctions() {
  const auto id = PluginId();
  for (const auto& function : kFunctions) fmx::ExprEnv::UnRegisterExternalFunction(*id, function.id);
}
