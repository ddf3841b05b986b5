#include <TaVision/TvCircleFeatureMsg.h>
#include <TaVision/TvFeatureMsgClass.h>

zDEFINE_OBJECT_TYPE(TvCircleFeatureMsg, TvMsg, &TvMsg_Ops<TvFeatureMsgClass>);

zStatus TvCircleFeatureMsg_Construct(TvCircleFeatureMsg* msg, std::size_t count, zAlloc alloc)
{
    zFAULT_GATE();
    return TvFeature_Make(zTypeOf(TvCircleFeatureMsg), count, alloc, msg);
}

zPoint3d64f TvCircleFeatureMsg_Position(TvCircleFeatureMsg msg)
{
    return TvFeature_Point(msg, zTypeOf(TvCircleFeatureMsg), &TvFeatureMsgClass::position);
}

zStatus TvCircleFeatureMsg_SetPosition(TvCircleFeatureMsg msg, const zPoint3d64f* position)
{
    zFAULT_GATE();
    return TvFeature_Set(msg, zTypeOf(TvCircleFeatureMsg), &TvFeatureMsgClass::position, position);
}

zPoint3d64f TvCircleFeatureMsg_Normal(TvCircleFeatureMsg msg)
{
    return TvFeature_Point(msg, zTypeOf(TvCircleFeatureMsg), &TvFeatureMsgClass::direction);
}

zStatus TvCircleFeatureMsg_SetNormal(TvCircleFeatureMsg msg, const zPoint3d64f* normal)
{
    zFAULT_GATE();
    return TvFeature_Set(msg, zTypeOf(TvCircleFeatureMsg), &TvFeatureMsgClass::direction, normal);
}

z64f TvCircleFeatureMsg_Radius(TvCircleFeatureMsg msg)
{
    return TvFeature_Size(msg, zTypeOf(TvCircleFeatureMsg));
}

zStatus TvCircleFeatureMsg_SetRadius(TvCircleFeatureMsg msg, z64f radius)
{
    zFAULT_GATE();
    return TvFeature_Set(msg, zTypeOf(TvCircleFeatureMsg), &TvFeatureMsgClass::size, &radius);
}
