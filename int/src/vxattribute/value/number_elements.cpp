#include "vxattribute/value/typed_value_internal.h"

VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(bool);
VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(long long);
VXATTRIBUTE_INSTANTIATE_SINGLE_ELEMENT(double);

template class vxattribute::impl::SingletonBase<bool>;
template class vxattribute::impl::SingletonBase<long long>;
