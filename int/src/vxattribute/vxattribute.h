#pragma once

/// Everything of the library.

#include "vxattribute/attribute.h"
#include "vxattribute/attribute_access.h"
#include "vxattribute/attribute_map.h"
#include "vxattribute/attribute_name.h"
#include "vxattribute/attribute_name_coder.h"
#include "vxattribute/attribute_value.h"
#include "vxattribute/attribute_value_marshaler.h"
#include "vxattribute/attribute_value_type.h"
#include "vxattribute/binary_value.h"
#include "vxattribute/core_elements.h"
#include "vxattribute/element_types.h"
#include "vxattribute/elements.h"
#include "vxattribute/error_codes.h"
#include "vxattribute/make_value.h"
#include "vxattribute/multi_value_writer.h"
#include "vxattribute/serialized_value.h"
#include "vxattribute/sorted_by_name.h"
#include "vxattribute/to_text.h"
#include "vxattribute/trace_formatter.h"
