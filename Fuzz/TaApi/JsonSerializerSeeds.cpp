#include "ParameterTree.h"

#include <Support/Seeds.h>

#include <array>

// Writes first inputs of the fuzzer of parameters: what the tree writes of itself, whole and one value each, and values
// that it does not hold at first.
//
//     JsonSerializerSeeds FOLDER

namespace
{
using Ta::Properties::JsonSerializer;

constexpr std::array OTHERS = {
    R"({"Count":100,"Byte":-128,"Long":9223372036854775807})",
    R"({"Count":101})",
    R"({"Mode":1,"Step":5,"File":"a"})",
    R"({"Mode":2})",
    R"({"Integers":[1,-2,3.0],"Numbers":[1,2.5,"NaN"],"Texts":["a",""]})",
    R"({"Region":{"Width":2.5,"Angle":"NaN","Inner":{"x":"-Infinity","Innermost":{"Size":18446744073709551615}}}})",
    R"({"Region":{"Inner":{"unknown":[{}],"x":1}},"also unknown":null})",
    R"({"Serial":8,"Secret":"other","Name":"\u00e4\ud83d\ude00"})",
};

void Write(const Support::SeedFolder& folder)
{
    const ParameterTree tree;
    const nlohmann::json values = JsonSerializer::Serialize(tree.root);
    folder.Write("whole", values.dump());
    folder.Write("schema", JsonSerializer::SerializeSchema(tree.root)["properties"]["Region"].dump());
    for (const auto& [key, value] : values.items())
    {
        folder.Write("only_" + key, nlohmann::json{{key, value}}.dump());
    }
    for (std::size_t i = 0; i < OTHERS.size(); ++i)
    {
        folder.Write("other_" + std::to_string(i), OTHERS[i]);
    }
}
} // namespace

int main(int argc, char** argv)
{
    return Support::WriteSeeds(argc, argv, Write);
}
