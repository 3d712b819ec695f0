#pragma once

/// Marks the exported symbols of vxcrypto. All other symbols of the library are hidden.
#if defined(__GNUC__)
#define VXCRYPTO_API __attribute__((visibility("default")))
#else
#define VXCRYPTO_API
#endif
