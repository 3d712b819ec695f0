#pragma once

#include "vxattribute/vxattribute.h"
#include "vxcrypto/random_provider.h"

#include <algorithm>

/// The key and the random bytes that the seeds of sealed values are made with.
namespace vxfuzz {

/// Returns the first `size` bytes of the key, at most 32.
inline vxcrypto::Key key_of_size(unsigned int size) {
    return vxcrypto::Key("the key of all the seeds, 32 byte", size);
}

/// Produces the same bytes at each call: seeds and replays must not differ from run to run.
class FixedRandom final : public vxcrypto::IRandomProvider {
  public:
    void generate_random(void * buffer, unsigned int size) override {
        std::fill_n(static_cast<char *>(buffer), size, 'r');
    }
};

} // namespace vxfuzz
