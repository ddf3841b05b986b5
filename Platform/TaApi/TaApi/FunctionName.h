#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// Cuts the qualified name of a function out of the text that the compiler gives for it (`__PRETTY_FUNCTION__`), at
// compile time: "void Mu::Tools::CommonTool::SendNull(const char*)" becomes "Mu::Tools::CommonTool::SendNull".

namespace Ta::Detail
{
constexpr std::size_t NOT_FOUND = std::string_view::npos;

constexpr std::size_t FirstOf(std::string_view text, std::string_view a, std::string_view b, std::string_view c)
{
    std::size_t first = text.find(a);
    first = text.find(b) < first ? text.find(b) : first;
    return text.find(c) < first ? text.find(c) : first;
}

/// A lambda speaks for the function that encloses it.
constexpr std::string_view WithoutLambda(std::string_view text)
{
    const std::size_t lambda = FirstOf(text, "::<lambda", "::(anonymous class)::operator()", "::(lambda at");
    return lambda == NOT_FOUND ? text : text.substr(0, lambda);
}

/// The template arguments that compilers append, "[with T = int]".
constexpr std::string_view WithoutTemplateArguments(std::string_view text)
{
    const std::size_t bracket = text.find(" [");
    return bracket == NOT_FOUND ? text : text.substr(0, bracket);
}

/// Where the name of an operator begins ("operator<<(...)"), or past the end.
constexpr std::size_t OperatorAt(std::string_view text)
{
    constexpr std::string_view WORD = "operator";
    for (std::size_t at = text.find(WORD); at != NOT_FOUND; at = text.find(WORD, at + 1))
    {
        const bool begins =
            at == 0 || text[at - 1] == ':' || text[at - 1] == ' ' || text[at - 1] == '*' || text[at - 1] == '&';
        const std::size_t after = at + WORD.size();
        const bool isWordCharacter =
            after < text.size() &&
            (text[after] == '_' || (text[after] >= '0' && text[after] <= '9') ||
             (text[after] >= 'a' && text[after] <= 'z') || (text[after] >= 'A' && text[after] <= 'Z'));
        if (begins && !isWordCharacter)
        {
            return at;
        }
    }
    return text.size();
}

constexpr std::string_view UNNAMED_NAMESPACE = "(anonymous namespace)";

/// Whether the "(" at `open` belongs to the declarator of a result that is a pointer or a reference to a function, an
/// array or a member: "void (* Get())(int)", "int (Box::* Get())()".
constexpr bool OpensDeclarator(std::string_view text, std::size_t open)
{
    const std::size_t first = open + 1;
    if (first < text.size() && (text[first] == '*' || text[first] == '&'))
    {
        return true;
    }
    const std::size_t last = text.find_first_of(" (),", first);
    const std::size_t member = text.find("::*", first);
    return member != NOT_FOUND && member < last;
}

/// Behind the ")" that closes the "(" at `open`.
constexpr std::size_t BehindParentheses(std::string_view text, std::size_t open)
{
    int depth = 0;
    for (std::size_t i = open; i < text.size(); ++i)
    {
        depth += text[i] == '(' ? 1 : 0;
        depth -= text[i] == ')' ? 1 : 0;
        if (depth == 0)
        {
            return i + 1;
        }
    }
    return text.size();
}

/// Behind a "(" at `open` that opens no parameter list, or `open` if it does.
constexpr std::size_t BehindOtherParenthesis(std::string_view text, std::size_t open)
{
    if (text.substr(open).starts_with(UNNAMED_NAMESPACE))
    {
        return open + UNNAMED_NAMESPACE.size();
    }
    const std::string_view before = text.substr(0, open);
    if (before.ends_with("decltype") || before.ends_with("decltype "))
    {
        return BehindParentheses(text, open);
    }
    return OpensDeclarator(text, open) ? open + 1 : open;
}

/// The first "(" outside template brackets from `from` on that opens a parameter list.
constexpr std::size_t ParametersAt(std::string_view text, std::size_t from)
{
    int depth = 0;
    std::size_t i = from;
    while (i < text.size())
    {
        const char c = text[i];
        depth += c == '<' ? 1 : 0;
        depth -= c == '>' ? 1 : 0;
        if (c != '(' || depth != 0)
        {
            ++i;
            continue;
        }
        const std::size_t behind = BehindOtherParenthesis(text, i);
        if (behind == i)
        {
            return i;
        }
        i = behind;
    }
    return text.size();
}

/// Where the qualified name that ends at `end` begins: behind the last blank, "*" or "&" outside brackets.
constexpr std::size_t NameAt(std::string_view text, std::size_t end)
{
    int depth = 0;
    for (std::size_t i = end; i > 0; --i)
    {
        const char c = text[i - 1];
        if (c == '>' || c == ')')
        {
            ++depth;
        }
        else if ((c == '<' || c == '(') && depth > 0)
        {
            --depth;
        }
        else if (depth == 0 && (c == ' ' || c == '*' || c == '&'))
        {
            return i;
        }
    }
    return 0;
}

/// "Walk<int>" becomes "Walk": some texts name a function template with its arguments, others without.
constexpr std::string_view WithoutOwnArguments(std::string_view name)
{
    int depth = 0;
    for (std::size_t i = name.ends_with('>') ? name.size() : 0; i > 0; --i)
    {
        depth += name[i - 1] == '>' ? 1 : 0;
        depth -= name[i - 1] == '<' ? 1 : 0;
        if (depth == 0)
        {
            return name.substr(0, i - 1);
        }
    }
    return name;
}

/// Where the parameter list of the operator at `operatorAt` begins. An operator's own signs are no brackets, but the
/// type that a conversion operator names may have some.
constexpr std::size_t OperatorParametersAt(std::string_view text, std::size_t operatorAt)
{
    constexpr std::string_view CALL = "operator()";
    if (text.substr(operatorAt).starts_with(CALL))
    {
        return operatorAt + CALL.size();
    }
    const std::size_t signs = operatorAt + std::string_view("operator").size();
    if (signs < text.size() && text[signs] == ' ')
    {
        return ParametersAt(text, signs);
    }
    const std::size_t open = text.find('(', signs);
    return open == NOT_FOUND ? text.size() : open;
}

constexpr std::string_view FunctionName(std::string_view pretty)
{
    const std::string_view text = WithoutTemplateArguments(WithoutLambda(pretty));
    const std::size_t operatorAt = OperatorAt(text);
    const std::size_t parametersAt = ParametersAt(text, 0);
    if (operatorAt < parametersAt)
    {
        const std::size_t begin = NameAt(text, operatorAt);
        return text.substr(begin, OperatorParametersAt(text, operatorAt) - begin);
    }
    const std::size_t begin = NameAt(text, parametersAt);
    return WithoutOwnArguments(text.substr(begin, parametersAt - begin));
}

/// The source unit of a file: its name without extension.
constexpr std::string_view SourceUnit(std::string_view file)
{
    const std::size_t dot = file.rfind('.');
    return dot == NOT_FOUND ? file : file.substr(0, dot);
}

/// A text of static storage, terminated.
template <std::size_t Size>
constexpr std::array<char, Size> Terminated(std::string_view text)
{
    std::array<char, Size> copy{};
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        copy[i] = text[i];
    }
    return copy;
}
} // namespace Ta::Detail
