#include <TaVision/TvFeatureMsgClass.h>
#include <TaVision/TvLineFeatureMsg.h>

zDEFINE_OBJECT_TYPE(TvLineFeatureMsg, TvMsg, &TvMsg_Ops<TvFeatureMsgClass>);

zStatus TvLineFeatureMsg_Construct(TvLineFeatureMsg* msg, std::size_t count, zAlloc alloc)
{
    zFAULT_GATE();
    return TvFeature_Make(zTypeOf(TvLineFeatureMsg), count, alloc, msg);
}

zPoint3d64f TvLineFeatureMsg_Position(TvLineFeatureMsg msg)
{
    return TvFeature_Point(msg, zTypeOf(TvLineFeatureMsg), &TvFeatureMsgClass::position);
}

zStatus TvLineFeatureMsg_SetPosition(TvLineFeatureMsg msg, const zPoint3d64f* position)
{
    zFAULT_GATE();
    return TvFeature_Set(msg, zTypeOf(TvLineFeatureMsg), &TvFeatureMsgClass::position, position);
}

zPoint3d64f TvLineFeatureMsg_Direction(TvLineFeatureMsg msg)
{
    return TvFeature_Point(msg, zTypeOf(TvLineFeatureMsg), &TvFeatureMsgClass::direction);
}

zStatus TvLineFeatureMsg_SetDirection(TvLineFeatureMsg msg, const zPoint3d64f* direction)
{
    zFAULT_GATE();
    return TvFeature_Set(msg, zTypeOf(TvLineFeatureMsg), &TvFeatureMsgClass::direction, direction);
}
