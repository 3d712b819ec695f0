#include "vxcore/uuid.h"

#include "vxcore/hash.h"
#include "vxcore/hex.h"

#include <cerrno>
#include <ostream>
#include <sys/random.h>
#include <system_error>

namespace vxcore {

namespace {

/// True for the bytes that a dash precedes in the form 8-4-4-4-12.
bool follows_dash(std::size_t index) noexcept {
    return index == 4 || index == 6 || index == 8 || index == 10;
}

} // namespace

Uuid Uuid::random() {
    BinaryData data;
    // Not std::random_device, which does not say where its bits come from.
    if (::getentropy(data.data(), data.size()) != 0) {
        throw std::system_error(errno, std::generic_category(), "vxcore::Uuid::random()");
    }
    data[6] = static_cast<unsigned char>((data[6] & 0x0F) | 0x40); // the version: 4
    data[8] = static_cast<unsigned char>((data[8] & 0x3F) | 0x80); // the variant: RFC 9562
    return Uuid(data);
}

bool Uuid::parse(std::string_view text, Uuid & uuid) noexcept {
    // The size alone tells the two formats apart, so no index below leaves the text.
    bool const dashes = text.size() == 36;
    if (!dashes && text.size() != 32) {
        return false;
    }
    // With 36 or 32 bytes, the loop below reads exactly to the end of the text.
    BinaryData data;
    std::size_t at = 0;
    for (std::size_t i = 0; i < data.size(); ++i, at += 2) {
        if (dashes && follows_dash(i) && text[at++] != '-') {
            return false;
        }
        int const high = hex_value(text[at]);
        int const low = hex_value(text[at + 1]);
        if (high < 0 || low < 0) {
            return false;
        }
        data[i] = static_cast<unsigned char>(high * 16 + low);
    }
    uuid = Uuid(data);
    return true;
}

std::string Uuid::as_string(unsigned int format) const {
    std::string text;
    text.reserve(36);
    for (std::size_t i = 0; i < m_data.size(); ++i) {
        if (format != 1 && follows_dash(i)) {
            text += '-';
        }
        text += hex_digit(m_data[i] >> 4);
        text += hex_digit(m_data[i]);
    }
    return text;
}

unsigned int Uuid::hash() const noexcept {
    unsigned int h = 0;
    for (unsigned char const byte : m_data) {
        h = hash_fold(h, byte);
    }
    return h;
}

std::ostream & operator<<(std::ostream & stream, Uuid const & uuid) {
    return stream << uuid.as_string(0);
}

} // namespace vxcore
