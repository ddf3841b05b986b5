#include <TaVision/TvFeatureMsgClass.h>
#include <TaVision/TvPlaneFeatureMsg.h>

zDEFINE_OBJECT_TYPE(TvPlaneFeatureMsg, TvMsg, &TvMsg_Ops<TvFeatureMsgClass>);

zStatus TvPlaneFeatureMsg_Construct(TvPlaneFeatureMsg* msg, std::size_t count, zAlloc alloc)
{
    zFAULT_GATE();
    return TvFeature_Make(zTypeOf(TvPlaneFeatureMsg), count, alloc, msg);
}

zPoint3d64f TvPlaneFeatureMsg_Normal(TvPlaneFeatureMsg msg)
{
    return TvFeature_Point(msg, zTypeOf(TvPlaneFeatureMsg), &TvFeatureMsgClass::direction);
}

zStatus TvPlaneFeatureMsg_SetNormal(TvPlaneFeatureMsg msg, const zPoint3d64f* normal)
{
    zFAULT_GATE();
    return TvFeature_Set(msg, zTypeOf(TvPlaneFeatureMsg), &TvFeatureMsgClass::direction, normal);
}

z64f TvPlaneFeatureMsg_OriginDistance(TvPlaneFeatureMsg msg)
{
    return TvFeature_Size(msg, zTypeOf(TvPlaneFeatureMsg));
}

zStatus TvPlaneFeatureMsg_SetOriginDistance(TvPlaneFeatureMsg msg, z64f distance)
{
    zFAULT_GATE();
    return TvFeature_Set(msg, zTypeOf(TvPlaneFeatureMsg), &TvFeatureMsgClass::size, &distance);
}
