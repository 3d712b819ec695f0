#pragma once

/// Everything of the library.

#include "vxmoduleregistry/module_registry.h"
