structure_test(Includes_run_down_only CheckLayers ${PROJECT_SOURCE_DIR})
structure_twin(Includes_that_run_up_are_reported
    REPORTS
        "Platform/Stray: has no rank"
        "zApi/Upwards.h:3: TaApi/Object.h: zApi must not know TaApi"
        "TaVision/Sideways.h:3: TaCommon/IMetricsKeeper.h: TaVision must not know TaCommon"
        "MuTlkHelper/Everything.cpp:1: Eigen/Dense"
        "MuTlkHelper/Everything.cpp:2: Host/Job.h"
        "MuTlkHelper/Everything.cpp:3: Support/Builders.h"
        "MuTlkHelper/Everything.cpp:7: CommonTool.h: write it as"
        "Tools/HostUser.cpp:1: Host/Job.h"
    COMMAND CheckLayers ${twins}/Layers)
