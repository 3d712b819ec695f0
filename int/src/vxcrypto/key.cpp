#include "vxcrypto/key.h"

#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxcrypto/cleanse.h"
#include "vxcrypto/constant_time.h"
#include "vxcrypto/error_codes_internal.h"
#include "vxcrypto/random_provider.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

namespace vxcrypto {

namespace {

unsigned int capacity_for(unsigned int size) {
    if (size > std::numeric_limits<unsigned int>::max() - 7) {
        throw std::length_error("vxcrypto::Key::Key()");
    }
    return (size + 7) / 8 * 8;
}

} // namespace

Key::Key(unsigned int size) : m_capacity(capacity_for(size)), m_size(size) {
    if (size != 0) {
        m_data = new unsigned char[m_capacity]();
    }
}

Key::Key(void const * bytes, unsigned int size) : Key(size) {
    if (bytes == nullptr && size != 0) {
        throw std::invalid_argument("vxcrypto::Key::Key()");
    }
    std::copy_n(static_cast<unsigned char const *>(bytes), size, m_data);
}

Key Key::random(unsigned int bits) {
    if (bits != 128 && bits != 256) {
        vxcore::ErrorComposer("A random key has 128 or 256 bits, not {@bits}")
            .param("bits", vxcore::to_string(bits))
            .throw_error(error::vxcrypto_key_size, VXCORE_LOCATION("vxcrypto::Key::random()"));
    }
    Key key(bits / 8);
    default_random_provider()->generate_random(key.mutable_data(), key.size());
    return key;
}

Key::~Key() {
    if (m_data != nullptr) {
        cleanse(m_data, m_capacity);
        delete[] m_data;
        m_capacity = 0;
        m_size = 0;
        m_data = nullptr;
    }
}

bool Key::equal(Key const & other) const noexcept {
    return m_size == other.m_size && constant_time_equal(m_data, other.m_data, m_size);
}

void Key::swap(Key & other) noexcept {
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_size, other.m_size);
    std::swap(m_data, other.m_data);
}

} // namespace vxcrypto
