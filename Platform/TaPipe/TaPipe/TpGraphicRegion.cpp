#include <TaPipe/TpGraphicElementClass.h>
#include <TaPipe/TpGraphicRegion.h>

zDEFINE_OBJECT_TYPE(TpGraphicRegion, TpGraphicElement, nullptr);
