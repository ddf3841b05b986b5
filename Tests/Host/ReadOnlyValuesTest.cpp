#include <Host/ReadOnlyValues.h>

#include "HostTestFiles.h"

#include <TaApi/Logging.h>
#include <TaApi/Params.h>

namespace
{
using namespace Mu::Host;
using namespace Mu::Host::Testing;
using nlohmann::json;

const JobPlace place{"job.json", "tools[0].parameters"};

/// { Number, Group: { Shown, Matrix } }, of which the last two are read-only.
class ReadOnlyTree : public testing::Test
{
protected:
    ReadOnlyTree()
    {
        root.Register("Number", number);
        root.Register("Group", group);
        group.Register("Shown", shown);
        group.Register("Matrix", matrix);
        shown.EnableReadOnly(true);
    }

    Ta::Params::Group root;
    Ta::Params::Group group;
    Ta::Params::Value<double> number;
    Ta::Params::Value<int> shown;
    Ta::Params::Transform3d matrix;
};

TEST_F(ReadOnlyTree, gets_its_read_only_values_and_the_others_are_left)
{
    json values = {{"Number", 2}, {"Group", {{"Shown", 7}, {"Matrix", json::array()}}}, {"None", {{"Shown", 1}}}};
    const ReadOnlyValues taken(root, values, place);
    EXPECT_EQ(values, (json{{"Number", 2}, {"Group", json::object()}, {"None", {{"Shown", 1}}}}));
    EXPECT_EQ(shown.Get(), 0);
    taken.Store();
    EXPECT_EQ(shown.Get(), 7);
    EXPECT_TRUE(matrix.Get().empty());
    EXPECT_EQ(number.Get(), 0);
}

TEST_F(ReadOnlyTree, gets_them_without_a_line_in_the_log)
{
    int lines = 0;
    const auto former = Ta::Logging::SetLogHandler({[](const Ta::Logging::LogRecord& /*record*/, void* count) {
                                                        ++*static_cast<int*>(count);
                                                        return zOK;
                                                    },
                                                    &lines});
    json values = {{"Group", {{"Shown", 7}}}};
    ReadOnlyValues(root, values, place).Store();
    EXPECT_EQ(lines, 0);
    shown.Set(8);
    EXPECT_EQ(lines, 1);
    Ta::Logging::SetLogHandler(former);
}

TEST_F(ReadOnlyTree, refuses_a_value_of_another_type)
{
    json values = {{"Group", {{"Shown", "seven"}}}};
    EXPECT_EQ(ErrorOf([&] { return ReadOnlyValues(root, values, place); }),
              "job.json: tools[0].parameters.Group/Shown: takes a whole number, but was given \"seven\". Give it a "
              "whole number.");
    EXPECT_EQ(shown.Get(), 0);
}
} // namespace
