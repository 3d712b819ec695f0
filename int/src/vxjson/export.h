#pragma once

/// VXJSON_API marks the exported symbols of vxjson. All other symbols of the library are hidden.
/// VXJSON_LOCAL marks members of exported classes that are hidden too, for faster calls.
#if defined(__GNUC__)
#define VXJSON_API __attribute__((visibility("default")))
#define VXJSON_LOCAL __attribute__((visibility("hidden")))
#else
#define VXJSON_API
#define VXJSON_LOCAL
#endif
