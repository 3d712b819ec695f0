#include "vxattribute/json/name_sequence_internal.h"

namespace vxattribute::impl {

bool NameSequence::find(std::string_view text, bool isPlain) noexcept {
    constexpr int maxSteps = 4; // more names of one hash are made on purpose: intern those anew
    std::size_t index = m_buckets[bucket_of(vxcore::TextFingerprint(text))];
    for (int step = 0; index != 0 && step < maxSteps; ++step, index = m_entries[index].sameHash) {
        if (m_entries[index].holds(text)) {
            m_entries[index].isPlain = m_entries[index].isPlain || isPlain;
            step_to(index);
            return true;
        }
    }
    return false;
}

void NameSequence::add(std::string_view text, bool isPlain) {
    if (m_entries.size() == sm_maxEntries) {
        m_entries.resize(1);
        m_buckets.fill(0);
        m_current = 0;
    }
    vxcore::TextFingerprint const fingerprint(text);
    Index & bucket = m_buckets[bucket_of(fingerprint)];
    m_entries.push_back(
        {fingerprint, vxcore::impl::KeyLoan(vxcore::StringKey(text)), 0, bucket, isPlain});
    bucket = static_cast<Index>(m_entries.size() - 1);
    step_to(bucket);
}

} // namespace vxattribute::impl
