#pragma once

/// Marks what vxuri exports. Everything else of the library is hidden.
#if defined(__GNUC__)
#define VXURI_API __attribute__((visibility("default")))
#else
#define VXURI_API
#endif
