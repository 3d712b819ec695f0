// The rules under test: whatever holds bytes converts to a view of exactly these, and a sink takes
// all bytes of a write or says why not.

#include "support/expect_error.h"

#include "vxcore/error_codes.h"
#include "vxcore/output_sink.h"

#include <array>
#include <sstream>
#include <vector>

namespace {

using namespace vxcore;
using namespace std::string_view_literals;

template <typename T>
constexpr bool is_viewable = std::is_convertible_v<T, ByteView>;

static_assert(is_viewable<std::string> && is_viewable<std::string_view>);
static_assert(is_viewable<std::span<char const>> && is_viewable<std::span<std::byte>>);
static_assert(is_viewable<std::vector<unsigned char> &> && is_viewable<std::array<char, 3> const>);
static_assert(is_viewable<unsigned char (&)[3]>);
static_assert(!is_viewable<char const (&)[3]> && !is_viewable<char (&)[3]>);
static_assert(!is_viewable<char const *> && !is_viewable<std::vector<int>>);

TEST(OutputSink, ReportsAStreamThatFailed) {
    std::ostringstream stream;
    StreamSink sink(stream);
    sink.write("a\0b"sv);
    EXPECT_EQ(stream.str(), "a\0b"sv);
    stream.setstate(std::ios::failbit);
    vxtest::expect_error([&] { sink.write("c"sv); }, error::vxcore_output,
                         "A standard stream cannot be written");
}

TEST(OutputSink, FillsBuffersToTheLastByteAndNoFurther) {
    std::array<unsigned char, 3> buffer{};
    BufferSink sink(buffer);
    sink.write("ab"sv);
    vxtest::expect_error([&] { sink.write("cd"sv); }, error::vxcore_output_full,
                         "A buffer of 3 bytes is full: 2 are written, and 2 more do not fit");
    sink.write(std::array{std::byte{'e'}});
    EXPECT_EQ(sink.written().as_text(), "abe");
}

} // namespace
