// The settings in memory, for other tests on a Mac: the system's would be the user's own.
#include "core/Prefs.h"

static std::string savedUrl, savedKey;

void Prefs::SaveBaseUrl(const std::string& url) { savedUrl = url.c_str(); }
void Prefs::SaveLicenseKey(const std::string& key) { savedKey = key.c_str(); }
std::string Prefs::LoadBaseUrl() { return savedUrl; }
std::string Prefs::LoadLicenseKey() { return savedKey; }
