#include "vxuri/uri_reference.h"

#include "vxcore/hash.h"
#include "vxuri/shared_instances_internal.h"
#include "vxuri/strict_syntax_internal.h"
#include "vxuri/uri_parse_data.h"

#include <algorithm>
#include <limits>
#include <ostream>

namespace vxuri {

namespace {

/// Returns the text from `begin` to `end`, clamped to the text: the words of parse data that was
/// not made by `split` are untrusted.
std::string_view piece(std::string_view text, unsigned long long begin,
                       unsigned long long end) noexcept {
    end = std::min<unsigned long long>(end, text.size());
    begin = std::min(begin, end);
    return {text.data() + begin, static_cast<std::size_t>(end - begin)};
}

/// A to F become a to f. Any other byte stays, hexadecimal digit or not.
signed char fold_escape(char c) noexcept {
    return static_cast<signed char>(c >= 'A' && c <= 'F' ? c - 'A' + 'a' : c);
}

/// The difference of two sizes, as far as an int holds it.
int compare_sizes(std::size_t a, std::size_t b) noexcept {
    constexpr long long max = std::numeric_limits<int>::max();
    long long const difference = static_cast<long long>(a) - static_cast<long long>(b);
    return static_cast<int>(std::clamp(difference, -max, max));
}

} // namespace

UriReference::UriReference() noexcept : m_data(impl::undefined_instance()) {}

UriReference::UriReference(vxcore::RefCountPtr<impl::UriParseData const> data) noexcept
    : m_data(std::move(data)) {}

UriReference::UriReference(UriReference const &) noexcept = default;

UriReference & UriReference::operator=(UriReference const &) noexcept = default;

UriReference::~UriReference() = default;

UriReference UriReference::parse(std::string text) {
    return text.empty() ? empty_reference()
                        : UriReference(impl::UriParseData::split(std::move(text)));
}

UriReference UriReference::empty_reference() noexcept {
    return UriReference(impl::empty_instance());
}

bool UriReference::is_strict() const noexcept {
    return impl::is_strict_syntax(*this);
}

std::string const & UriReference::text() const noexcept {
    return m_data->text;
}

bool UriReference::empty() const noexcept {
    return m_data->text.empty();
}

bool UriReference::is_undefined() const noexcept {
    return m_data->is_undefined();
}

// The accessors add words in 64 bits, since sums of untrusted words may exceed 32.
std::string_view UriReference::scheme() const noexcept {
    return has_scheme() ? piece(text(), 0, m_data->parts[1] - 1) : std::string_view();
}

std::string_view UriReference::authority() const noexcept {
    unsigned long long const begin = m_data->parts[1];
    return has_authority() ? piece(text(), begin + 2, begin + m_data->parts[2])
                           : std::string_view();
}

std::string_view UriReference::host() const noexcept {
    return piece(text(), m_data->parts[7], m_data->parts[8]);
}

std::string_view UriReference::port() const noexcept {
    unsigned long long const begin = m_data->parts[8];
    unsigned int const size = m_data->parts[9];
    return size != 0 ? piece(text(), begin + 1, begin + size) : std::string_view();
}

std::string_view UriReference::path() const noexcept {
    unsigned long long const scheme = m_data->parts[1];
    return piece(text(), scheme + m_data->parts[2], m_data->parts[3]);
}

std::string_view UriReference::query() const noexcept {
    unsigned long long const begin = m_data->parts[3];
    return has_query() ? piece(text(), begin + 1, begin + m_data->parts[4]) : std::string_view();
}

std::string_view UriReference::fragment() const noexcept {
    unsigned long long const begin = 0ull + m_data->parts[3] + m_data->parts[4];
    return has_fragment() ? piece(text(), begin + 1, begin + m_data->parts[5]) : std::string_view();
}

bool UriReference::has_scheme() const noexcept {
    return m_data->parts[1] != 0;
}

bool UriReference::has_authority() const noexcept {
    return m_data->parts[2] != 0;
}

bool UriReference::has_query() const noexcept {
    return m_data->parts[4] != 0;
}

bool UriReference::has_fragment() const noexcept {
    return m_data->parts[5] != 0;
}

int UriReference::compare(UriReference const & other) const noexcept {
    std::string_view const a = text();
    std::string_view const b = other.text();
    std::size_t const size = std::min(a.size(), b.size());
    // Up to `i` the texts are equal except for the case of escapes, so `a` alone shows where
    // escapes are. References that share their data need no look at the text.
    std::size_t escaped = 0; // how many of the next bytes belong to an escape
    for (std::size_t i = 0; m_data != other.m_data && i < size; ++i) {
        if (a[i] != b[i]) {
            signed char const x = escaped > 0 ? fold_escape(a[i]) : static_cast<signed char>(a[i]);
            signed char const y = escaped > 0 ? fold_escape(b[i]) : static_cast<signed char>(b[i]);
            if (x != y) {
                return x - y;
            }
        }
        // A "%" inside an escape does not start another one.
        escaped = escaped > 0 ? escaped - 1 : a[i] == '%' ? 2 : 0;
    }
    return compare_sizes(a.size(), b.size());
}

bool UriReference::equal(UriReference const & other) const noexcept {
    return text().size() == other.text().size() && compare(other) == 0;
}

unsigned int UriReference::hash() const noexcept {
    // Folds the same bytes as `compare`, so that equal references have equal hashes.
    unsigned int h = 0;
    unsigned int escaped = 0; // as in compare(), so that equal references have equal hashes
    for (char const c : text()) {
        signed char const byte = escaped > 0 ? fold_escape(c) : static_cast<signed char>(c);
        h = vxcore::hash_fold(h, static_cast<unsigned int>(byte));
        escaped = escaped > 0 ? escaped - 1 : c == '%' ? 2 : 0;
    }
    return h;
}

void UriReference::write_trace(std::ostream & stream) const {
    if (is_undefined()) {
        stream << "<undefined>";
        return;
    }
    // Writing to the stream may run foreign code, which might destroy this reference.
    vxcore::RefCountPtr<impl::UriParseData const> const data = m_data;
    vxcore::StringTraceData::write_to_stream(stream, data->traceReference);
}

std::ostream & operator<<(std::ostream & stream, UriReference const & reference) {
    reference.write_trace(stream);
    return stream;
}

} // namespace vxuri
