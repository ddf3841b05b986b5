#include <TaApi/Raise.h>

namespace Ta
{
void Raise(const Place& place, zStatus status)
{
    throw Exception(place.line, place.unit, status, place.function, nullptr);
}
} // namespace Ta
