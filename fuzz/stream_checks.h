#pragma once

#include "vxattribute/vxattribute.h"
#include "vxcore/string_source.h"
#include "vxserialize/memory_list.h"
#include "vxserialize/reader.h"
#include "vxserialize/writer.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vxfuzz {

/// A stream over bytes that the caller keeps alive. It may keep its size to itself.
class ViewStream final : public vxcore::IReadStream {
  public:
    ViewStream(std::string_view bytes, bool tellsSize) noexcept
        : m_source(bytes), m_tellsSize(tellsSize) {}

    unsigned int read(void * buffer, unsigned int size) override {
        return m_source.read(buffer, size);
    }

    unsigned int skip(unsigned int size) override { return m_source.skip(size); }

    long long size() const override { return m_tellsSize ? m_source.size() : -1; }

  private:
    vxcore::StringSource m_source;
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

/// What was read up to the end or to the first failure, and the text of that.
struct ReadResult {
    std::vector<vxattribute::AttributeValue> values;
    std::string failure;
};

/// Reads to the end or to the first failure, and checks
/// - that a failure is an ErrorException and leaves the target as it was,
/// - that the memory taken stays within 128 bytes for each byte of data and a small constant,
/// - that the first eight values copy, compare, hash, render and are the same after both forms.
ReadResult check_reading(vxserialize::Reader & reader, ReaderInput const & input);

/// Reads the same from borrowed bytes, which are gone before the result is compared.
void check_borrowed(ReaderInput const & input, ReadResult const & expected);

/// Checks that the value is the same after both forms. Returns false when both refuse to write it
/// because it nests too deep.
bool check_round_trip(vxattribute::AttributeValue const & value);

} // namespace vxfuzz
