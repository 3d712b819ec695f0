#pragma once

#include "input.h"

#include "vxattribute/vxattribute.h"

namespace vxfuzz {

/// Builds values of every element type, lists and nested maps from an input.
class ValueBuilder {
  public:
    explicit ValueBuilder(Input & input) noexcept : m_input(input) {}

    vxattribute::AttributeValue value();

    /// Build one element and assign it to the argument.
    void build(bool & element);
    void build(long long & element);
    void build(std::string & element);
    void build(double & element);
    void build(vxcore::Uuid & element);
    void build(vxuri::UriReference & element);
    void build(vxcore::AbsoluteTime & element);
    void build(vxcore::RelativeTime & element);
    void build(vxcore::SimpleDateTime & element);
    void build(vxattribute::BinaryValue & element);
    void build(vxattribute::SerializedValue & element);
    void build(vxattribute::SecuredValue & element);
    void build(vxattribute::impl::ErrorInfoPtr & element);
    void build(vxattribute::AttributeMap & element);

    /// Takes the number of an element type from the input.
    int type();

  private:
    vxcore::SourceString source_text();
    vxcore::ErrorParams params();
    template <typename T>
    vxattribute::AttributeValue value_of();

    Input & m_input;
    unsigned int m_depth = 0;
};

} // namespace vxfuzz
