#pragma once

#include "vxattribute/attribute_value_impl.h"

/// The static values of booleans and integers. None is ever written, counted or destroyed.
namespace vxattribute::impl {

/// Common to both kinds of singleton.
template <typename T>
class SingletonBase : public TypedValue<T> {
  public:
    void release() const noexcept override {}

    ValueBase * clone() const override { return const_cast<SingletonBase *>(this); }

    void prepare_write(ValueHolder & holder) override;
    void promote_to_multivalue(ValueHolder & holder) override;

    void set_single(ValueHolder & holder, ElementArg<T> const & value) override {
        holder.attach(ValueFactory<T>::create_value(value));
    }

  protected:
    using TypedValue<T>::TypedValue;
};

template <typename T>
class EmptySingleton final : public SingletonBase<T> {
  public:
    constexpr EmptySingleton() noexcept = default;

    void clear(ValueHolder &) override {}
};

template <typename T>
class SingleValueSingleton final : public SingletonBase<T> {
  public:
    constexpr explicit SingleValueSingleton(T x) noexcept : SingletonBase<T>(x) {}

    void clear(ValueHolder & holder) override { holder.attach(ValueFactory<T>::create_value()); }
};

/// Storage that is constant-initialised and never destroyed, because values may be used at unload.
template <typename Singleton>
union StaticStorage {
    template <typename... Args>
    constexpr StaticStorage(Args... args) noexcept : object(args...) {}

    constexpr ~StaticStorage() {}

    char unused; // makes the union a literal type, as arrays of constants require
    Singleton object;
};

template <typename T>
struct Singletons;

template <>
struct Singletons<bool> {
    static TypedValue<bool> * empty() noexcept;

    /// The static value of `x`; never null.
    static TypedValue<bool> * find(bool x) noexcept;
};

template <>
struct Singletons<long long> {
    static constexpr long long first = -1;
    static constexpr long long last = 7;

    static StaticStorage<SingleValueSingleton<long long>> sm_values[last - first + 1];

    static TypedValue<long long> * empty() noexcept;

    /// The static value of `x`; null if `x` is not in -1 to 7.
    static TypedValue<long long> * find(long long x) noexcept {
        return x >= first && x <= last ? &sm_values[x - first].object : nullptr;
    }
};

} // namespace vxattribute::impl
