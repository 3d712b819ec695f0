#include "vxcore/error_info.h"

#include "vxcore/error_codes.h"
#include "vxcore/error_exception.h"
#include "vxcore/hash.h"

#include <ostream>

namespace vxcore {

namespace {

/// The largest size of a filled message, in bytes. Infos come from streams too. Without a limit in
/// proportion to the parts, a message of many placeholders would multiply a long parameter.
std::size_t fill_limit(std::string_view message, ErrorParams const & params) {
    std::size_t size = message.size();
    for (auto const & [key, value] : params) {
        size += value.size();
    }
    return 16 * size;
}

/// `message` with each known placeholder replaced, in one pass from left to right. A placeholder
/// whose value would exceed the limit is kept.
std::string fill_placeholders(std::string_view message, ErrorParams const & params) {
    std::size_t const limit = fill_limit(message, params);
    std::string text;
    text.reserve(message.size());
    while (true) {
        std::size_t const close = message.find('}');
        if (close == message.npos) {
            return text.append(message);
        }
        // The nearest opening before the brace: those further left belong to no placeholder. Only
        // this piece is searched, which keeps the pass linear.
        std::size_t const open = message.substr(0, close).rfind("{@");
        std::string const * const value =
            open == message.npos ? nullptr
                                 : params.find_value(message.substr(open + 2, close - open - 2));
        std::size_t const rest = message.size() - close - 1;
        if (value != nullptr && text.size() + open + value->size() + rest <= limit) {
            text.append(message.substr(0, open)).append(*value);
        } else {
            text.append(message.substr(0, close + 1));
        }
        message.remove_prefix(close + 1);
    }
}

/// Order of one link of a chain, without what is nested.
int compare_link(ErrorInfo const & a, ErrorInfo const & b) noexcept {
    if (int const order = a.code().view().compare(b.code().view()); order != 0) {
        return order;
    }
    if (int const order = a.message().view().compare(b.message().view()); order != 0) {
        return order;
    }
    auto ia = a.params().begin();
    auto ib = b.params().begin();
    for (; ia != a.params().end() && ib != b.params().end(); ++ia, ++ib) {
        if (int const order = ia->first.view().compare(ib->first.view()); order != 0) {
            return order;
        }
        if (int const order = ia->second.compare(ib->second); order != 0) {
            return order;
        }
    }
    return (ia != a.params().end() ? 1 : 0) - (ib != b.params().end() ? 1 : 0);
}

void write_link(std::ostream & stream, ErrorInfo const & info) {
    SourceLocation const & location = info.location();
    stream << info.code().name() << ": " << info.text() << '\n';
    if (!location.function().empty()) {
        stream << "  at " << location.function().view() << " (" << location.file().view() << ':'
               << std::to_string(location.line()) << ")\n";
    }
}

} // namespace

ErrorInfo::ErrorInfo(SourceString code, SourceString message, ErrorParams params,
                     SourceLocation location, Ptr nested)
    : m_codeName(std::move(code)), m_code(m_codeName.data(), true), m_message(std::move(message)),
      m_params(std::move(params)), m_location(std::move(location)), m_nested(std::move(nested)),
      m_text(fill_placeholders(m_message.view(), m_params)) {}

ErrorInfo::~ErrorInfo() {
    // Releases a long chain in a loop: the destructors of the members would recurse for each link.
    Ptr next = std::move(m_nested);
    while (next && next->has_unique_ref()) {
        next = std::move(const_cast<ErrorInfo &>(*next).m_nested);
    }
}

ErrorInfo::Ptr ErrorInfo::create(ErrorCode const & code, SourceString message, ErrorParams params,
                                 SourceLocation location, Ptr nested) {
    return create_with_own_code(SourceString(code.name(), true), std::move(message),
                                std::move(params), std::move(location), std::move(nested));
}

ErrorInfo::Ptr ErrorInfo::create_with_own_code(SourceString code, SourceString message,
                                               ErrorParams params, SourceLocation location,
                                               Ptr nested) {
    return Ptr(new ErrorInfo(std::move(code), std::move(message), std::move(params),
                             std::move(location), std::move(nested)));
}

ErrorInfo::Ptr ErrorInfo::from_exception(std::exception const & e, SourceLocation location) {
    if (auto const * own = dynamic_cast<ErrorException const *>(&e)) {
        return own->info();
    }
    // The text of the exception is a parameter and not the message, since it may contain braces.
    ErrorParams params;
    params.insert_ref(SourceString("what", true)) = e.what();
    return create(error::vxcore_exception, SourceString("{@what}", true), std::move(params),
                  std::move(location));
}

unsigned int ErrorInfo::hash() const noexcept {
    unsigned int seed = 0;
    for (ErrorInfo const * info = this; info != nullptr; info = info->m_nested.get()) {
        seed = hash_mix(seed, hash_bytes(info->m_code.view()));
        seed = hash_mix(seed, hash_bytes(info->m_message.view()));
        for (auto const & [key, value] : info->m_params) {
            seed = hash_mix(seed, hash_bytes(key.view()));
            seed = hash_mix(seed, hash_bytes(value));
        }
    }
    return seed;
}

int ErrorInfo::compare(ErrorInfo const & other) const noexcept {
    ErrorInfo const * a = this;
    ErrorInfo const * b = &other;
    // Ends where both chains end, or where they meet: from there on they are one chain.
    for (; a != b; a = a->m_nested.get(), b = b->m_nested.get()) {
        if (a == nullptr || b == nullptr) {
            return a == nullptr ? -1 : 1;
        }
        if (int const order = compare_link(*a, *b); order != 0) {
            return order;
        }
    }
    return 0;
}

void ErrorInfo::write_trace(std::ostream & stream) const {
    for (ErrorInfo const * info = this; info != nullptr; info = info->m_nested.get()) {
        if (info != this) {
            stream << "caused by ";
        }
        write_link(stream, *info);
    }
}

std::ostream & operator<<(std::ostream & stream, ErrorInfo const & info) {
    info.write_trace(stream);
    return stream;
}

} // namespace vxcore
