#pragma once

/// Includes all public headers of vxserialize.

#include "vxserialize/element_kind.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/error_info_stream.h"
#include "vxserialize/frame.h"
#include "vxserialize/fwd.h"
#include "vxserialize/limits.h"
#include "vxserialize/memory_list.h"
#include "vxserialize/memory_reader.h"
#include "vxserialize/memory_segment.h"
#include "vxserialize/memory_writer.h"
#include "vxserialize/reader.h"
#include "vxserialize/string_target.h"
#include "vxserialize/text_reader.h"
#include "vxserialize/text_writer.h"
#include "vxserialize/writer.h"
