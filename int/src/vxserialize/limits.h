#pragma once

namespace vxserialize {

/// The most lists and records that may be open at one moment, in both readers and both writers:
/// what can be written can be read back, and no stream drives the recursion of its reader deeper.
inline constexpr unsigned int max_open_containers = 512;

/// The most links of one chain of ErrorInfo that goes through a stream.
inline constexpr unsigned int max_error_chain = 64;

} // namespace vxserialize
