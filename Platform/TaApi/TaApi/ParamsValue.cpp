#include <TaApi/ParamsValue.h>

namespace Ta::Params
{
template class Value<bool>;
template class Value<int>;
template class Value<std::size_t>;
template class Value<double>;
template class Value<std::string>;
template class Value<std::vector<double>>;
} // namespace Ta::Params
