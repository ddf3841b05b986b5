#include <TaVision/TvMsgClass.h>
#include <TaVision/TvRenderingMsg.h>

namespace
{
struct Rendering : TvMsgClass
{
    zObject graphic = nullptr; ///< holds a reference

    void ReleaseParts() noexcept
    {
        zObjectType_Put(&graphic, nullptr);
    }

    [[nodiscard]] zStatus CopyFrom(const Rendering& source)
    {
        zTRY(TvMsgClass::CopyFrom(source));
        return xzObject_CloneImpl(&graphic, source.graphic, alloc);
    }

    [[nodiscard]] zStatus SaveTo(zDat6Writer* writer) const
    {
        zTRY(TvMsgClass::SaveTo(writer));
        return zDat6_WriteObject(writer, graphic);
    }

    [[nodiscard]] zStatus LoadFrom(zDat6Reader* reader)
    {
        zTRY(TvMsgClass::LoadFrom(reader));
        return zDat6_ReadObject(reader, zTypeOf(zObject), alloc, &graphic);
    }
};
} // namespace

zDEFINE_OBJECT_TYPE(TvRenderingMsg, TvMsg, &TvMsg_Ops<Rendering>);

zStatus TvRenderingMsg_Construct(TvRenderingMsg* msg, zAlloc alloc)
{
    zFAULT_GATE();
    return TvMsg_Make<Rendering>(zTypeOf(TvRenderingMsg), 1, alloc, msg, [](Rendering&) { return zOK; });
}

zObject TvRenderingMsg_Rendering(TvRenderingMsg msg)
{
    void* const none = nullptr;
    return TvMsg_Member<Rendering>(msg, zTypeOf(TvRenderingMsg), &Rendering::graphic, none);
}

zStatus TvRenderingMsg_SetRendering(TvRenderingMsg msg, zObject graphic)
{
    zFAULT_GATE();
    auto* const rendering = zObjectType_Cast<Rendering>(msg, zTypeOf(TvRenderingMsg));
    if (rendering == nullptr)
    {
        return zERROR_PARAMETER;
    }
    zObjectType_Put(&rendering->graphic, graphic);
    return zOK;
}
