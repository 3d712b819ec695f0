#include "vxserialize/frame.h"

#include "vxcore/error_composer.h"
#include "vxcore/text_conversion.h"
#include "vxserialize/error_codes.h"
#include "vxserialize/memory_list.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace vxserialize {

namespace {

constexpr std::size_t headSize = 4;

/// A frame up to this size is passed on in one piece. A sink that writes to a socket would
/// otherwise send the head in a packet of its own.
constexpr std::size_t joinedSize = 1024;

/// The most bytes that an empty reader keeps.
constexpr std::size_t keptSize = 1 << 16;

void put_head(unsigned char * at, std::size_t size) {
    for (std::size_t i = 0; i != headSize; ++i) {
        at[i] = static_cast<unsigned char>(size >> (8 * (headSize - 1 - i)));
    }
}

} // namespace

void write_frame(vxcore::OutputSink & sink, vxcore::ByteView payload) {
    if (payload.size() > std::numeric_limits<unsigned int>::max()) {
        throw std::length_error("vxserialize::write_frame: more than 2^32 - 1 bytes");
    }
    unsigned char frame[joinedSize];
    put_head(frame, payload.size());
    if (payload.size() > joinedSize - headSize) {
        sink.write({frame, headSize});
        sink.write(payload);
        return;
    }
    std::copy(payload.begin(), payload.end(), frame + headSize);
    sink.write({frame, headSize + payload.size()});
}

void write_frame(vxcore::OutputSink & sink, MemoryListBase const & payload) {
    unsigned char frame[joinedSize];
    put_head(frame, payload.size());
    if (payload.size() <= joinedSize - headSize) {
        payload.read_at(0, frame + headSize, payload.size());
        sink.write({frame, headSize + payload.size()});
        return;
    }
    sink.write({frame, headSize});
    for (auto segment = payload.segment_read_iterator(); !segment.at_end(); ++segment) {
        sink.write({segment->data(), segment->size()});
    }
}

void FrameReader::feed(vxcore::ByteView bytes) {
    std::size_t const skipped = std::min<std::size_t>(m_skipped, bytes.size());
    if (buffered() == 0 && m_bytes.capacity() > keptSize) {
        std::string().swap(m_bytes);
        m_taken = 0;
    } else if (m_taken >= buffered()) { // costs no more than taking them did
        m_bytes.erase(0, m_taken);
        m_taken = 0;
    }
    m_last = 0;
    m_bytes.append(bytes.without_first(skipped).as_text());
    m_skipped -= static_cast<unsigned int>(skipped);
}

unsigned int FrameReader::size_at(std::size_t place) const noexcept {
    unsigned int size = 0;
    for (std::size_t i = 0; i != headSize; ++i) {
        size = size << 8 | static_cast<unsigned char>(m_bytes[place + i]);
    }
    return size;
}

std::optional<vxcore::ByteView> FrameReader::next() {
    if (buffered() < headSize) {
        return std::nullopt;
    }
    unsigned int const size = size_at(m_taken);
    if (size > m_options.max_size) {
        refuse(size);
    }
    if (buffered() - headSize < size) {
        return std::nullopt;
    }
    m_taken += headSize + size;
    m_last = size;
    return last();
}

void FrameReader::refuse(unsigned int size) {
    auto const info =
        vxcore::ErrorComposer("A frame has {@size} bytes, and at most {@limit} are allowed")
            .param("size", vxcore::to_string(size))
            .param("limit", vxcore::to_string(m_options.max_size))
            .create(error::vxserialize_data_size,
                    VXCORE_LOCATION("vxserialize::FrameReader::next()"));
    std::size_t const here = std::min<std::size_t>(size, buffered() - headSize);
    m_taken += headSize + here;
    m_skipped = size - static_cast<unsigned int>(here);
    m_last = 0;
    vxcore::throw_error(info);
}

vxcore::ByteView FrameReader::last() const noexcept {
    return {m_bytes.data() + m_taken - m_last, m_last};
}

void FrameReader::finish() const {
    std::size_t place = m_taken;
    std::size_t left = buffered();
    while (left >= headSize && left - headSize >= size_at(place)) {
        std::size_t const size = headSize + size_at(place);
        place += size;
        left -= size;
    }
    if (left == 0 && m_skipped == 0) {
        return;
    }
    vxcore::throw_error(error::vxserialize_data_truncated,
                        vxcore::SourceString("The stream ends inside a frame", true),
                        VXCORE_LOCATION("vxserialize::FrameReader::finish()"));
}

} // namespace vxserialize
