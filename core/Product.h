// The constants that say which product this is and where its service lives. The build sets the values.
#pragma once

inline constexpr char kPluginVersion[] = VARNIX_VERSION;

/// Origin of the service (https, no trailing slash), used where no other has been given.
inline constexpr char kDefaultBaseUrl[] = VARNIX_DEFAULT_BASE_URL;

/// The service's plug-in guide page.
inline constexpr char kGuideUrl[] = VARNIX_GUIDE_URL;
