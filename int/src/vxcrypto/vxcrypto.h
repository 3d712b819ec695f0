#pragma once

/// Everything of vxcrypto.

#include "vxcrypto/cleanse.h"
#include "vxcrypto/cleansed_block.h"
#include "vxcrypto/fwd.h"
#include "vxcrypto/md5_context.h"
