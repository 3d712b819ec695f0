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

/// A stream over bytes that the caller keeps alive.
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

/// Returns the bytes in segments of `first` and `second` bytes in turn.
vxcore::RefCountPtr<vxserialize::MemoryList const> cut(std::string_view bytes, unsigned int first,
                                                       unsigned int second);

/// Return the bytes or the text that `write` writes.
std::string binary_of(std::function<void(vxserialize::Writer &)> const & write);
std::string text_of(std::function<void(vxserialize::Writer &)> const & write);

std::string write_binary(vxattribute::AttributeValue const & value);
std::string write_text(vxattribute::AttributeValue const & value);

/// The input of a target that tests a reader: five bytes of decisions, then data.
struct ReaderInput {
    /// Returns false when the input is too short.
    bool parse(unsigned char const * data, std::size_t size);

    unsigned char pieces; // selects the sizes in which the reader gets the bytes
    unsigned int shapes;  // two bits for each read: 0 an attribute, 1 a map, 2 and 3 a value
    /// The data. When the second byte of the input is 0xF0 or more, the data is repeated up to 16
    /// KiB, so that memory that grows too fast with it shows in small inputs too.
    std::string bytes;
};

/// Reads to the end or to the first failure, and checks
/// - that a failure is an ErrorException and leaves the target as it was,
/// - that the memory taken stays within 128 bytes for each byte of data and a small constant,
/// - that the first eight values copy, compare, hash, render and are the same after both forms.
void check_reading(vxserialize::Reader & reader, ReaderInput const & input);

/// Checks that the value is the same after both forms. Returns false when both refuse to write it
/// because it nests too deep.
bool check_round_trip(vxattribute::AttributeValue const & value);

} // namespace vxfuzz
