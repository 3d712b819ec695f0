#pragma once

#include "vxserialize/memory_list_order.h"

/// The order and hash of payloads, under the names that this library has always had for them.
namespace vxattribute::impl {

using vxserialize::impl::compare_memory_lists;
using vxserialize::impl::hash_memory_list;

} // namespace vxattribute::impl
