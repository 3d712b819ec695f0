#pragma once

#include "plain_model.h"
#include "value_builder.h"

#include <array>

namespace vxfuzz {

/// Three values and three maps, each with its model, and the steps that change both.
///
/// Sizes are kept small: large ones would test nothing new, and a map put into itself again and
/// again would double each time.
class OperationsState {
  public:
    explicit OperationsState(Input & input) noexcept : m_input(input), m_builder(input) {}

    /// Does one step and checks everything.
    void step();

  private:
    static constexpr unsigned int sm_count = 3;
    static constexpr std::size_t sm_maxElements = 20;
    static constexpr std::size_t sm_maxWeight = 32;

    struct Value {
        vxattribute::AttributeValue real;
        PlainValue plain;
    };

    struct Map {
        vxattribute::MutableAttributeMap real;
        PlainMap plain;
    };

    template <typename T>
    struct Element {
        T real{};
        PlainElement plain;
    };

    template <typename T>
    Element<T> new_element();

    vxattribute::AttributeName name();

    Value & any_value() { return m_values[m_input.below(sm_count)]; }

    Map & any_map() { return m_maps[m_input.below(sm_count)]; }

    void value_step(Value & value);
    void whole_value_step(Value & value);
    template <typename T>
    void element_step(Value & value);
    template <typename T>
    void writer_step(Value & value);
    template <typename T>
    void assign_new(vxattribute::impl::MultiValueWriter<T> & writer,
                    std::vector<PlainElement> & plain);
    void subrange_step(Value & value);

    void map_step(Map & map);
    void whole_map_step(Map & map);
    void write_through_reference(Map & map);
    void insert_step(Map & map);
    void erase_step(Map & map);
    void lookup_step(Map & map);

    void check_all() const;

    unsigned int m_steps = 0;
    Input & m_input;
    ValueBuilder m_builder;
    std::array<Value, sm_count> m_values;
    std::array<Map, sm_count> m_maps;
};

} // namespace vxfuzz
