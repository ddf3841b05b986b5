#include <TaVision/TvMsgClass.h>
#include <TaVision/TvNullMsg.h>

zDEFINE_OBJECT_TYPE(TvNullMsg, TvMsg, &TvMsg_Ops<TvMsgClass>);

zStatus TvNullMsg_Construct(TvNullMsg* msg, std::size_t count, zAlloc alloc)
{
    zFAULT_GATE();
    return TvMsg_Make<TvMsgClass>(zTypeOf(TvNullMsg), count, alloc, msg, [](TvMsgClass&) { return zOK; });
}
