#pragma once

/// Includes all public headers of vxcrypto.

#include "vxcrypto/aes.h"
#include "vxcrypto/aes_cmac_context.h"
#include "vxcrypto/aes_ctr_context.h"
#include "vxcrypto/cleanse.h"
#include "vxcrypto/cleansed_block.h"
#include "vxcrypto/constant_time.h"
#include "vxcrypto/eax_aes.h"
#include "vxcrypto/eax_aes_context.h"
#include "vxcrypto/fwd.h"
#include "vxcrypto/key.h"
#include "vxcrypto/md5_context.h"
#include "vxcrypto/random_provider.h"
