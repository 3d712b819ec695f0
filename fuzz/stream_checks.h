#pragma once

#include "vxattribute/vxattribute.h"
#include "vxcore/read_stream.h"
#include "vxserialize/memory_list.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

#include <functional>
#include <string>
#include <string_view>

namespace vxfuzz {

/// A stream over bytes that stay where they are.
class ViewStream final : public vxcore::IReadStream {
  public:
    ViewStream(std::string_view bytes, bool tellsSize) noexcept
        : m_left(bytes), m_tellsSize(tellsSize) {}

    unsigned int read(void * buffer, unsigned int size) override;
    unsigned int skip(unsigned int size) override;
    long long size() const override;

  private:
    std::string_view m_left;
    bool m_tellsSize;
};

/// The bytes in segments of `first` and `second` bytes in turn.
vxcore::RefCountPtr<vxserialize::MemoryList const> cut(std::string_view bytes, unsigned int first,
                                                       unsigned int second);

/// The bytes or the text that `write` writes.
std::string binary_of(std::function<void(vxserialize::Writer &)> const & write);
std::string text_of(std::function<void(vxserialize::Writer &)> const & write);

std::string write_binary(vxattribute::AttributeValue const & value);
std::string write_text(vxattribute::AttributeValue const & value);

/// What the targets of readers take an input for.
struct ReaderInput {
    /// False when the input is too short.
    bool parse(unsigned char const * data, std::size_t size);

    unsigned char pieces; // in which the reader gets the bytes
    unsigned int shapes;  // two bits for each read: an attribute, a map or (2 and 3) a value
    /// The rest of the input; for a few inputs over and over, up to 16 KiB, so that memory that
    /// grows too fast with the data shows in small inputs too.
    std::string bytes;
};

/// Reads to the end or to the first failure, and checks
/// - that a failure leaves the target as it was and is one of the documented errors,
/// - that the memory taken stays within 128 bytes for each byte and a small constant,
/// - that all that was read copies, compares, hashes, renders and goes through both forms.
void check_reading(vxserialize::Reader & reader, ReaderInput const & input);

/// Checks that the value is the same after both forms. Gives false when it nests too deep to be
/// written, in both of them.
bool check_round_trip(vxattribute::AttributeValue const & value);

} // namespace vxfuzz
