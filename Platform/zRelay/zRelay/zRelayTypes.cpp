#include <zRelay/zDataTree.h>
#include <zRelay/zMsgSet.h>
#include <zRelay/zRelayTypes.h>

#include <zApi/zTypeTable.h>

#include <array>

namespace
{
constexpr std::array<zType, 2> types = {zTypeOf(zDataTree), zTypeOf(zMsgSet)};
constinit zTypeTable table = {types};
} // namespace

zStatus zRelay_RegisterTypes()
{
    return zTypeTable_Register(&table);
}
