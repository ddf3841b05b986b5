#include <MuTlkHelper/AnchoredRegion.h>
#include <MuTlkHelper/CommonTool.h>
#include <TaPipe/CommonTool.h>
#include <TaPipe/IToolHost.h>
