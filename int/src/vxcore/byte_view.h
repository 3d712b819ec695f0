#pragma once

#include <cstddef>
#include <iterator>
#include <string_view>
#include <type_traits>

namespace vxcore {

namespace impl {

template <typename T>
inline constexpr bool is_byte =
    std::is_same_v<T, char> || std::is_same_v<T, unsigned char> || std::is_same_v<T, std::byte>;

/// Contiguous bytes: whatever `std::data` and `std::size` take, with bytes as elements.
template <typename Bytes>
concept ByteRun = requires(Bytes const & bytes) {
    std::size(bytes);
    requires is_byte<std::remove_cvref_t<decltype(*std::data(bytes))>>;
};

} // namespace impl

/// A borrowed run of bytes: a pointer and a size, passed by value.
///
/// Functions that read bytes take one, so that callers may pass what they have: a `std::string`, a
/// `std::string_view`, or a `std::span`, `std::vector` or `std::array` of `char`, `unsigned char`
/// or `std::byte`. All of these convert without a cast and without a copy.
///
///     std::vector<std::byte> const packet = receive();
///     AttributeMap const map = map_from_bytes(packet);
///     AttributeMap const other = map_from_bytes({buffer, received}); // a pointer and a size
///
/// The bytes must stay in place as long as the view is used, as for a `std::string_view`. A view is
/// safe as a parameter; think twice before you store one.
///
/// A string literal does not convert, since it is not clear whether its terminator is meant. Write
/// `"text"sv`.
class ByteView {
  public:
    /// No bytes; `data()` is null.
    constexpr ByteView() noexcept = default;

    /// @param data  May be null if `size` is 0.
    /// @param size  Bytes.
    ByteView(void const * data, std::size_t size) noexcept
        : m_data(static_cast<unsigned char const *>(data)), m_size(size) {}

    /// Converts implicitly: see above.
    template <impl::ByteRun Bytes>
    ByteView(Bytes const & bytes) noexcept : ByteView(std::data(bytes), std::size(bytes)) {}

    /// Literals, and buffers that may be filled in part: state the size.
    template <std::size_t length>
    ByteView(char const (&)[length]) = delete;

    /// The first byte. Not to be read through if the view is empty.
    constexpr unsigned char const * data() const noexcept { return m_data; }

    /// Bytes.
    constexpr std::size_t size() const noexcept { return m_size; }

    constexpr bool empty() const noexcept { return m_size == 0; }

    /// The bytes in order, for loops and for `std::span`.
    constexpr unsigned char const * begin() const noexcept { return m_data; }

    constexpr unsigned char const * end() const noexcept { return m_data + m_size; }

    /// The same bytes as characters, whatever they are. The text dangles when the view does.
    std::string_view as_text() const noexcept {
        return {reinterpret_cast<char const *>(m_data), m_size};
    }

    /// The first `count` bytes, and what follows them.
    ///
    /// @pre  `count` is at most `size()`.
    ByteView first(std::size_t count) const noexcept { return {m_data, count}; }

    ByteView without_first(std::size_t count) const noexcept {
        return {m_data + count, m_size - count};
    }

  private:
    unsigned char const * m_data = nullptr;
    std::size_t m_size = 0;
};

} // namespace vxcore
