#pragma once

#include "foundation/DefaultsKeys.h"

/// The user defaults of what belongs to no document.
namespace quillory::keys {

inline constexpr DefaultsKey<bool> showWelcome{"showWelcome"};             ///< at a bare start
inline constexpr DefaultsKey<bool> checksForVersions{"checksForVersions"}; ///< once a day
inline constexpr DefaultsKey<QString> versionListAddress{"versionListAddress"};
inline constexpr DefaultsKey<QString> lastVersionCheck{"lastVersionCheck"}; ///< ISO 8601, UTC
inline constexpr DefaultsKey<QString> skippedVersion{"skippedVersion"}; ///< not to be told of again
inline constexpr DefaultsKey<QString> cloudBrowserGeometry{"cloudBrowserGeometry"}; ///< base64

} // namespace quillory::keys
