#pragma once

#include "vxattribute/attribute_name.h"
#include "vxcore/key_loan_impl.h"
#include "vxcore/text_fingerprint.h"

#include <array>
#include <memory_resource>
#include <string_view>
#include <vector>

namespace vxattribute::impl {

/// The names that one call has read, and for each of them the name that followed it last.
///
/// Objects of one kind have their names in one order, so most names are recognised by one
/// comparison with the name that is expected next. Others are found by their fingerprints. At most
/// 255 names are kept: the next one takes the place of all, so that the keys of a large map do not
/// stay alive here.
///
///     if (std::size_t const size = names.match_next(at, limit)) { at += size; }
///     else if (!names.find(text)) { names.add(text); }
///     elements.add(names.take_current());
class NameSequence {
  public:
    /// @param memory  For the names; must outlive them.
    explicit NameSequence(std::pmr::memory_resource & memory) : m_entries(&memory) {
        m_entries.reserve(8);
        m_entries.emplace_back();
    }

    NameSequence(NameSequence const &) = delete;
    NameSequence & operator=(NameSequence const &) = delete;

    /// Makes the expected name the current one if it is at `at`, with a quote after it. Returns its
    /// size in bytes; 0 if there is another name.
    std::size_t match_next(char const * at, char const * limit) noexcept {
        Entry const & expected = m_entries[m_entries[m_current].next];
        std::size_t const size = expected.fingerprint.size;
        if (!expected.isPlain || static_cast<std::size_t>(limit - at) <= size || at[size] != '"' ||
            !expected.holds({at, size})) {
            return 0;
        }
        m_current = m_entries[m_current].next;
        return size;
    }

    /// Makes the name `text` the current one. False if it is not here.
    ///
    /// @param isPlain  The text came without escapes, so its bytes may be matched directly.
    bool find(std::string_view text, bool isPlain) noexcept;

    /// Adds the name `text`, which is not empty, and makes it the current one.
    ///
    /// @raises std::bad_alloc: no memory for it.
    void add(std::string_view text, bool isPlain);

    /// The key of the current name. There must be one.
    vxcore::StringKey const & current() const noexcept { return m_entries[m_current].loan.key(); }

    /// The current name, from a loan.
    AttributeName take_current() noexcept { return m_entries[m_current].loan.take(); }

  private:
    using Index = unsigned char;

    struct Entry {
        bool holds(std::string_view text) const noexcept {
            return fingerprint == vxcore::TextFingerprint(text) &&
                   (text.size() <= vxcore::TextFingerprint::exact_size ||
                    loan.key().value() == text);
        }

        vxcore::TextFingerprint fingerprint;
        vxcore::impl::KeyLoan loan;
        Index next = 0;     // the name that followed
        Index sameHash = 0; // the next entry in the same bucket
        bool isPlain = false;
    };

    static constexpr std::size_t sm_maxEntries = 256;
    static constexpr int sm_bucketBits = 7;

    static std::size_t bucket_of(vxcore::TextFingerprint const & fingerprint) noexcept {
        return fingerprint.hash() >> (32 - sm_bucketBits);
    }

    void step_to(std::size_t index) noexcept {
        m_entries[m_current].next = static_cast<Index>(index);
        m_current = index;
    }

    // The first entry is the place before all names. It holds no name; its index ends each list.
    std::pmr::vector<Entry> m_entries;
    std::array<Index, 1 << sm_bucketBits> m_buckets{};
    std::size_t m_current = 0;
};

} // namespace vxattribute::impl
