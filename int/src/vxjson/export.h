#pragma once

/// Marks the exported symbols of vxjson. All other symbols of the library are hidden.
#if defined(__GNUC__)
#define VXJSON_API __attribute__((visibility("default")))
#else
#define VXJSON_API
#endif
