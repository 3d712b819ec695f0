#include "vxattribute/binary_value.h"

#include "vxattribute/error_codes.h"
#include "vxattribute/value/typed_value_internal.h"
#include "vxcore/error_composer.h"
#include "vxcore/hash.h"
#include "vxcore/read_stream.h"
#include "vxcore/text_conversion.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace vxattribute {

namespace {

void copy_bytes(unsigned char * to, unsigned char const * from, unsigned int size) noexcept {
    if (size != 0) {
        std::memcpy(to, from, size);
    }
}

} // namespace

/// A value of `capacity` uninitialised bytes; without a block when `capacity` is 0.
BinaryValue BinaryValue::with_capacity(unsigned int capacity) {
    BinaryValue value;
    if (capacity != 0) {
        value.m_data = static_cast<unsigned char *>(::operator new(capacity));
        value.m_size = capacity;
    }
    return value;
}

BinaryValue::BinaryValue(unsigned int size) : BinaryValue(with_capacity(size)) {
    std::fill_n(m_data, m_size, static_cast<unsigned char>(0));
}

BinaryValue::BinaryValue(unsigned char const * data, unsigned int size)
    : BinaryValue(with_capacity(size)) {
    copy_bytes(m_data, data, size);
}

BinaryValue::BinaryValue(vxcore::IReadStream & stream) {
    set(stream);
}

BinaryValue & BinaryValue::operator=(BinaryValue const & other) {
    // Blocks have no room to spare, so only a value of the same size is copied in place.
    if (m_size != other.m_size) {
        BinaryValue(other).swap(*this);
    } else if (this != &other) {
        copy_bytes(m_data, other.m_data, m_size);
    }
    return *this;
}

void BinaryValue::set(unsigned char const * data, unsigned int size) {
    if (size != m_size) {
        // An empty range gets a block too: only a value that was never set has none.
        auto * const block = static_cast<unsigned char *>(::operator new(std::max(size, 1u)));
        copy_bytes(block, data, size); // before the old block is freed, which `data` may point into
        ::operator delete(std::exchange(m_data, block));
        m_size = size;
    } else if (data != m_data) {
        copy_bytes(m_data, data, size);
    }
}

void BinaryValue::set(vxcore::IReadStream & stream) {
    long long const size = stream.size();
    if (size < 0) {
        set_from_unsized(stream);
        return;
    }
    if (size > max_stream_size) {
        vxcore::ErrorComposer("Attribute value BLOB cannot be larger than {@maxSize} bytes.")
            .param("maxSize", vxcore::to_string(max_stream_size))
            .param("size", vxcore::to_string(size))
            .throw_error(error::vxattribute_value_binary_size,
                         VXCORE_LOCATION("vxattribute::BinaryValue::set()"));
    }
    // The stream may end early: then the size is that of the bytes it returned.
    BinaryValue fresh = with_capacity(static_cast<unsigned int>(size));
    fresh.m_size = stream.read(fresh.m_data, fresh.m_size);
    swap(fresh);
}

/// Reads a stream of unknown size. The first piece goes to the stack, which is enough for a short
/// stream. Then a block doubles as data comes, so memory follows the data. At the end the bytes are
/// copied to a block of their exact size.
void BinaryValue::set_from_unsized(vxcore::IReadStream & stream) {
    constexpr unsigned int firstSize = 4096;
    unsigned char buffer[firstSize];
    unsigned int total = stream.read(buffer, firstSize);
    if (total < firstSize) {
        set(buffer, total);
        return;
    }
    BinaryValue block = with_capacity(2 * firstSize);
    copy_bytes(block.m_data, buffer, firstSize);
    while (true) {
        unsigned int const room = block.m_size - total;
        unsigned int const count = stream.read(block.m_data + total, room);
        total += count;
        if (count < room) {
            break;
        }
        if (block.m_size > std::numeric_limits<unsigned int>::max() / 2) {
            throw std::length_error("vxattribute::BinaryValue::set(): more than 2 GiB");
        }
        BinaryValue larger = with_capacity(2 * block.m_size);
        copy_bytes(larger.m_data, block.m_data, total);
        block.swap(larger);
    }
    set(block.m_data, total);
}

void BinaryValue::resize(unsigned int size) {
    if (size == m_size) {
        return;
    }
    // A new block: blocks have no room to spare, and a failure leaves the value as it was.
    BinaryValue fresh = with_capacity(size);
    unsigned int const kept = std::min(size, m_size);
    copy_bytes(fresh.m_data, m_data, kept);
    std::fill_n(fresh.m_data + kept, size - kept, static_cast<unsigned char>(0));
    swap(fresh);
}

int BinaryValue::compare(BinaryValue const & other) const noexcept {
    unsigned int const common = std::min(m_size, other.m_size);
    int const order = common != 0 ? std::memcmp(m_data, other.m_data, common) : 0;
    if (order != 0) {
        return order < 0 ? -1 : 1;
    }
    return int{m_size > other.m_size} - int{m_size < other.m_size};
}

unsigned int BinaryValue::hash() const noexcept {
    unsigned int h = 0;
    for (unsigned int i = 0; i < m_size; ++i) {
        h = vxcore::hash_fold(h, m_data[i]);
    }
    return h;
}

void write_binary_value(vxserialize::Writer & writer, BinaryValue const & value) {
    writer.write_binary(value.data(), value.size());
}

void read_binary_value(vxserialize::Reader & reader, BinaryValue & value) {
    auto const stream = reader.read_binary();
    value.set(*stream);
}

namespace impl {

int ValueTypeTraits<BinaryValue>::compare(BinaryValue const & a, BinaryValue const & b) noexcept {
    return a.compare(b);
}

bool ValueTypeTraits<BinaryValue>::equal(BinaryValue const & a, BinaryValue const & b) noexcept {
    return a == b;
}

unsigned int ValueTypeTraits<BinaryValue>::hash(BinaryValue const & a) noexcept {
    return a.hash();
}

} // namespace impl

} // namespace vxattribute

VXATTRIBUTE_INSTANTIATE_ELEMENT(vxattribute::BinaryValue);
