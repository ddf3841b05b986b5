#include <TaVision/TvFeatureMsgClass.h>
#include <TaVision/TvPointFeatureMsg.h>

zDEFINE_OBJECT_TYPE(TvPointFeatureMsg, TvMsg, &TvMsg_Ops<TvFeatureMsgClass>);

zStatus TvPointFeatureMsg_Construct(TvPointFeatureMsg* msg, std::size_t count, zAlloc alloc)
{
    zFAULT_GATE();
    return TvFeature_Make(zTypeOf(TvPointFeatureMsg), count, alloc, msg);
}

zPoint3d64f TvPointFeatureMsg_Position(TvPointFeatureMsg msg)
{
    return TvFeature_Point(msg, zTypeOf(TvPointFeatureMsg), &TvFeatureMsgClass::position);
}

zStatus TvPointFeatureMsg_SetPosition(TvPointFeatureMsg msg, const zPoint3d64f* position)
{
    zFAULT_GATE();
    return TvFeature_Set(msg, zTypeOf(TvPointFeatureMsg), &TvFeatureMsgClass::position, position);
}
