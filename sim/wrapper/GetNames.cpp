#include "wrapper/GetNames.h"

#include <algorithm>

namespace wrapper {
namespace {

constexpr int kFirst = 1001;

// In numeric order; "-" marks an unused number.
constexpr std::u16string_view kNames =
    u"ApplicationVersion CurrentDate LastError ActiveFieldName FileName FileSize FoundCount HostName LayoutCount "
    u"LayoutName LayoutNumber SystemLanguage WindowMode MultiUserState PageNumber SystemPlatform "
    u"ActivePortalRowNumber PrinterName TotalRecordCount RecordNumber ActiveRepetitionNumber RequestCount "
    u"ScreenDepth ScreenHeight ScreenWidth ScriptName SortState SystemVersion CurrentTime UserCount UserName "
    u"AccountName LastMessageChoice CurrentPrivilegeSetName ActiveModifierKeys NetworkProtocol RecordID "
    u"RecordModificationCount ActiveFieldContents FilePath LastExternalErrorDetail LayoutAccess RecordAccess "
    u"HighContrastState HighContrastColor StatusAreaState LayoutViewState WindowName WindowHeight WindowLeft "
    u"WindowTop WindowVisible WindowWidth SystemNICAddress SystemIpAddress ActiveFieldTableName "
    u"ActiveSelectionSize ActiveSelectionStart ApplicationLanguage CurrentHostTimestamp LayoutTableName "
    u"ScriptParameter CurrentTimeStamp WindowDesktopHeight WindowDesktopWidth WindowContentHeight "
    u"WindowContentWidth CalculationRepetitionNumber CurrentExtendedPrivileges AllowAbortState ErrorCaptureState "
    u"DesktopPath DocumentsPath FileMakerPath HostIPAddress RequestOmitState PreferencesPath RecordOpenCount "
    u"RecordOpenState ScriptResult SystemDrive TextRulerVisible AllowFormattingBarState UseSystemFormatsState "
    u"WindowZoomLevel CustomMenuSetName - ActiveLayoutObjectName TemporaryPath HostApplicationVersion "
    u"TriggerModifierKeys TriggerKeystroke DocumentsPathListing AccountPrivilegeSet AccountExtendedPrivileges "
    u"QuickFindText TriggerCurrentPanel TriggerTargetPanel WindowStyle InstalledFMPlugins UUID PersistentID "
    u"ConnectionState CurrentTimeUTCMilliseconds Device WindowOrientation TriggerGestureInfo EncryptionState "
    u"ScriptAnimation ModifiedFields NetworkType ConnectionAttributes ScreenScaleFactor - ApplicationArchitecture "
    u"TriggerExternalEvent TouchKeyboardState MenubarState RegionMonitorEvents AccountGroupName "
    u"ActiveRecordNumber UUIDNumber OpenDataFileInfo AccountType PageCount SystemLocaleElements "
    u"FileLocaleElements InstalledFMPluginsAsJSON SessionIdentifier CacheFileName CacheFilePath TransactionState "
    u"- LastErrorLocation";

}  // namespace

std::u16string_view GetFunctionName(int number) {
  std::u16string_view names = number < kFirst ? std::u16string_view() : kNames;
  for (int skipped = kFirst; skipped < number && !names.empty(); ++skipped) {
    names.remove_prefix(std::min(names.find(u' '), names.size() - 1) + 1);
  }
  const auto name = names.substr(0, names.find(u' '));
  return name == u"-" ? std::u16string_view() : name;
}

}  // namespace wrapper
