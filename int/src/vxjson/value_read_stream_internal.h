#pragma once

#include "vxjson/reader.h"

namespace vxjson {

/// The text of one string value as a stream. The value holds it and tells it when it goes.
///
/// The count is the first base: with sanitizers, g++ 12 takes the deletion through a later one for
/// that of an address which no `new` returned.
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
