// The settings in memory, for tests on a Mac that are about something else: the system's are those of the user.
#include "core/Prefs.h"

static std::string savedUrl, savedKey;

void Prefs::SaveBaseUrl(const std::string& url) { savedUrl = url.c_str(); }
void Prefs::SaveLicenseKey(const std::string& key) { savedKey = key.c_str(); }
std::string Prefs::LoadBaseUrl() { return savedUrl; }
std::string Prefs::LoadLicenseKey() { return savedKey; }
