#pragma once

/// Everything of vxuri.

#include "vxuri/character_sets.h"
#include "vxuri/export.h"
#include "vxuri/fwd.h"
#include "vxuri/uri_parse_data.h"
#include "vxuri/uri_reference.h"
