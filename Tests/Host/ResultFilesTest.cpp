#include <Host/ResultFiles.h>

#include <gtest/gtest.h>

#include <limits>

namespace
{
using namespace Mu::Host;
using nlohmann::json;
using TaPipe::PipeDataType;

/// One scan with a value of 0.1 + 0.2 in limits, a null entry of an array, and a value that is no number.
RunResult SmallRun()
{
    RunResult run;
    ScanResult& scan = run.scans.emplace_back();
    scan.name = "a,\"b\".tif";
    scan.file = "x/a,\"b\".tif";
    scan.width = 3;
    scan.length = 2;
    scan.validCount = 5;
    scan.notes = {"A note."};
    scan.results = {{"t",
                     "T",
                     "Mean",
                     {},
                     PipeDataType::Measurement,
                     ResultState::Value,
                     0.1 + 0.2,
                     "mm",
                     {-1, {}},
                     Decision::Pass},
                    {"t", "T", "List", 1, PipeDataType::Measurement, ResultState::Null, 0, "", {}, Decision::None},
                    {"t",
                     "T",
                     "Odd",
                     {},
                     PipeDataType::Measurement,
                     ResultState::Value,
                     -std::numeric_limits<double>::infinity(),
                     "mm",
                     {},
                     Decision::Fail}};
    return run;
}

TEST(Result_json, holds_everything_under_its_key)
{
    const json expected = json::parse(R"({
        "version": 1, "passed": false,
        "scans": [{"name": "a,\"b\".tif", "file": "x/a,\"b\".tif", "kind": "uniform surface",
            "width": 3, "length": 2, "validCount": 5,
            "notes": ["A note."],
            "results": [
                {"tool": "t", "type": "T", "output": "Mean", "dataType": "measurement", "state": "value",
                 "value": 0.30000000000000004, "units": "mm", "limits": {"lower": -1.0}, "decision": "pass"},
                {"tool": "t", "type": "T", "output": "List", "dataType": "measurement", "state": "null", "index": 1},
                {"tool": "t", "type": "T", "output": "Odd", "dataType": "measurement", "state": "value",
                 "value": "-Infinity", "units": "mm", "decision": "FAIL"}]}]})");
    EXPECT_EQ(ResultJson(SmallRun()), expected);
}

TEST(Result_json, reads_back_bit_by_bit)
{
    EXPECT_EQ(json::parse(Dumped(ResultJson(SmallRun()))), ResultJson(SmallRun()));
}

TEST(Result_json, can_be_dumped_with_names_that_are_no_utf_8)
{
    RunResult run = SmallRun();
    run.scans[0].name = "\xFF.tif";
    EXPECT_EQ(json::parse(Dumped(ResultJson(run)))["scans"][0]["name"], "\xEF\xBF\xBD.tif");
}

TEST(Result_csv, has_a_line_for_each_result_and_quotes_names)
{
    EXPECT_EQ(ResultCsv(SmallRun()), "scan,tool,output,index,state,value,units,lower,upper,decision\n"
                                     "\"x/a,\"\"b\"\".tif\",t,Mean,,value,0.30000000000000004,mm,-1,,pass\n"
                                     "\"x/a,\"\"b\"\".tif\",t,List,1,null,,,,,\n"
                                     "\"x/a,\"\"b\"\".tif\",t,Odd,,value,-Infinity,mm,,,FAIL\n");
}
} // namespace
