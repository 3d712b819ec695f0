#pragma once

#include "vxattribute/vxattribute.h"
#include "vxcrypto/random_provider.h"

#include <algorithm>

/// What the seeds of sealed values are sealed with.
namespace vxfuzz {

/// The key, cut to the size, 32 at most.
inline vxcrypto::Key key_of_size(unsigned int size) {
    return vxcrypto::Key("the key of all the seeds, 32 byte", size);
}

/// The same bytes at each call: seeds and replays must not differ from run to run.
class FixedRandom final : public vxcrypto::IRandomProvider {
  public:
    void generate_random(void * buffer, unsigned int size) override {
        std::fill_n(static_cast<char *>(buffer), size, 'r');
    }
};

} // namespace vxfuzz
