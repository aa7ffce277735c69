// The two settings that persist between runs of FileMaker. Per user, plain text, written to disk immediately.
// FileMaker's main thread only. Saving reports no failure: if the new value cannot be stored, or is not UTF-8, the old
// one stays intact. A text ends at its first zero byte.
#pragma once

#include <string>

namespace Prefs {

inline constexpr char kBaseUrlKey[] = "com.varnix.plugin.baseUrl";
inline constexpr char kLicenseKeyKey[] = "com.varnix.plugin.licenseKey";

/// Origin of the service; an empty text is stored as such.
void SaveBaseUrl(const std::string& url);
/// The account key; an empty text means signed out.
void SaveLicenseKey(const std::string& key);

/// The stored text (UTF-8), or "" when nothing usable is stored.
std::string LoadBaseUrl();
std::string LoadLicenseKey();

}  // namespace Prefs
