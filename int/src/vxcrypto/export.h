#pragma once

/// Marks what vxcrypto exports. Everything else of the library is hidden.
#if defined(__GNUC__)
#define VXCRYPTO_API __attribute__((visibility("default")))
#else
#define VXCRYPTO_API
#endif
