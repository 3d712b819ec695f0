#pragma once

#include "vxjson/reader.h"

namespace vxjson {

/// The text of one string value as a stream. Callers may keep the stream longer than the value, so
/// the value calls `drop_value` when it is destroyed.
///
/// RefCounted is the first base because g++ 12 with sanitizers misjudges a deletion through a later
/// base: it reports an address that no `new` returned.
class Reader::Value::ValueReadStreamImpl final : public vxcore::RefCounted<vxcore::AtomicRefCount>,
                                                 public vxcore::IReadStream {
  public:
    explicit ValueReadStreamImpl(Value & value) noexcept : m_value(&value) {}

    unsigned int read(void * buffer, unsigned int size) override;
    unsigned int skip(unsigned int size) override;
    long long size() const override;

    void drop_value() noexcept { m_value = nullptr; }

  private:
    Value & value() const;

    Value * m_value;
};

} // namespace vxjson
