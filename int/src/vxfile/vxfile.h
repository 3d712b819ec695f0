#pragma once

/// Includes all public headers of vxfile.

#include "vxfile/atomic_file.h"
#include "vxfile/bytes_file.h"
#include "vxfile/descriptor_sink.h"
#include "vxfile/error_codes.h"
#include "vxfile/file_form.h"
#include "vxfile/fwd.h"
#include "vxfile/input_file.h"
#include "vxfile/key_file.h"
#include "vxfile/name_list_file.h"
#include "vxfile/value_file.h"
