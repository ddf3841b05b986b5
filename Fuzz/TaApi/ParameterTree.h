#pragma once

#include <TaApi/Params.h>
#include <TaApi/Properties.h>

#include <cstdint>
#include <string>
#include <vector>

/// Parameters of every kind: a leaf of each type, every sort of limit, options, and groups in groups.
class ParameterTree
{
public:
    ParameterTree()
    {
        SetLimits();
        root.Register("Enable", enable);
        root.Register("Mode", mode);
        root.Register("Step", step);
        root.Register("File", file);
        root.Register("Count", count);
        root.Register("Byte", byte);
        root.Register("Long", wide);
        root.Register("Name", name);
        root.Register("Secret", secret);
        root.Register("Serial", serial);
        root.Register("Integers", integers);
        root.Register("Numbers", numbers);
        root.Register("Texts", texts);
        root.Register("Region", region);
        region.Register("Width", width);
        region.Register("Angle", angle);
        region.Register("Inner", inner);
        inner.Register("x", x);
        inner.Register("Innermost", innermost);
        innermost.Register("Size", size);
    }

    ParameterTree(const ParameterTree&) = delete;
    ParameterTree& operator=(const ParameterTree&) = delete;

    Ta::Params::Group root{"Tool"};

private:
    enum class Mode : std::int8_t
    {
        Include = 0,
        Exclude = 1,
        Lowest = -128
    };

    void SetLimits()
    {
        for (const Mode option : {Mode::Include, Mode::Exclude, Mode::Lowest})
        {
            mode.AddOption(option, "mode");
        }
        step.AddOption(1, "one");
        step.AddOption(5, "five");
        file.AddOption("", "none");
        file.AddOption("a", "first");
        count.EnableMinimum(-3);
        count.EnableMaximum(100);
        width.EnableExclusiveMinimum(0);
        width.EnableExclusiveMaximum(1e6);
        width.EnableUnits("mm");
        angle.EnableMinimum(-180);
        serial.EnableReadOnly();
        secret.SetWriteOnly(true);
        inner.EnableUsed();
        innermost.EnableVisibility();
    }

    Ta::Params::Value<bool> enable{false};
    Ta::Params::Enum<Mode> mode{Mode::Include};
    Ta::Params::Enum<int> step{1};
    Ta::Params::Enum<std::string> file{""};
    Ta::Params::Value<int> count{0};
    Ta::Params::Value<std::int8_t> byte{0};
    Ta::Params::Value<std::int64_t> wide{0};
    Ta::Params::Value<std::string> name{"name"};
    Ta::Params::Value<std::string> secret{"secret"};
    Ta::Params::Value<int> serial{7};
    Ta::Properties::Value<std::vector<std::int64_t>> integers;
    Ta::Params::Value<std::vector<double>> numbers;
    Ta::Properties::Value<std::vector<std::string>> texts;
    Ta::Params::Group region;
    Ta::Params::Value<double> width{1};
    Ta::Params::Value<double> angle{0};
    Ta::Params::Group inner;
    Ta::Params::Value<double> x{0};
    Ta::Params::Group innermost;
    Ta::Params::Value<std::size_t> size{0};
};
