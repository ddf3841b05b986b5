#include "Raised.h"

#include <TaApi/FunctionName.h>
#include <TaApi/Raise.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>

// The name is taken where the function runs, as MU_HERE does it.
#define NAME_HERE std::string(MU_HERE.function)

namespace Sample
{
std::string taken;

int number = 0;
int list[3] = {};

std::string Free()
{
    return NAME_HERE;
}

static std::string Static()
{
    return NAME_HERE;
}

const char* PointerResult()
{
    taken = NAME_HERE;
    return "";
}

int& ReferenceResult()
{
    taken = NAME_HERE;
    return number;
}

void (*FunctionPointerResult())(int)
{
    taken = NAME_HERE;
    return nullptr;
}

int (&ArrayResult())[3]
{
    taken = NAME_HERE;
    return list;
}

std::function<void(int)> FunctionObjectResult()
{
    taken = NAME_HERE;
    return {};
}

decltype(auto) DeducedResult()
{
    taken = NAME_HERE;
    return 1;
}

template <typename T>
std::string Template(T /*value*/)
{
    return NAME_HERE;
}

template <typename T>
std::string TemplateWithLambda(T value)
{
    return [&value] {
        static_cast<void>(value);
        return NAME_HERE;
    }();
}

class Box
{
public:
    Box()
    {
        constructor = NAME_HERE;
    }

    Box(const Box&) = default;

    ~Box()
    {
        taken = NAME_HERE;
    }

    Box& operator=(const Box& /*other*/)
    {
        taken = NAME_HERE;
        return *this;
    }

    std::string Member()
    {
        return NAME_HERE;
    }

    [[nodiscard]] std::string ConstMember() const
    {
        return NAME_HERE;
    }

    static std::string StaticMember()
    {
        return NAME_HERE;
    }

    template <typename U>
    std::string MemberTemplate(U /*value*/)
    {
        return NAME_HERE;
    }

    std::string operator()(int /*value*/) const
    {
        return NAME_HERE;
    }

    bool operator<(const Box& /*other*/) const
    {
        taken = NAME_HERE;
        return false;
    }

    bool operator>(const Box& /*other*/) const
    {
        taken = NAME_HERE;
        return false;
    }

    Box* operator->()
    {
        taken = NAME_HERE;
        return this;
    }

    int operator[](int /*index*/)
    {
        taken = NAME_HERE;
        return 0;
    }

    explicit operator int() const
    {
        taken = NAME_HERE;
        return 0;
    }

    explicit operator std::function<void(int)>() const
    {
        taken = NAME_HERE;
        return {};
    }

    std::string Lambda()
    {
        return [](int /*value*/) { return NAME_HERE; }(1);
    }

    std::string LambdaInLambda()
    {
        return [](auto /*value*/) { return [] { return NAME_HERE; }(); }(1.0);
    }

    std::string constructor;
};

Box& operator<<(Box& box, int /*value*/)
{
    taken = NAME_HERE;
    return box;
}

int (Box::*MemberPointerResult())(int)
{
    taken = NAME_HERE;
    return &Box::operator[];
}

template <typename T>
class Shelf
{
public:
    std::string Member(T /*value*/)
    {
        return NAME_HERE;
    }

    template <typename U>
    std::string MemberTemplate(U /*value*/)
    {
        return NAME_HERE;
    }
};

namespace
{
std::string Unnamed()
{
    return NAME_HERE;
}

std::string LambdaInUnnamed()
{
    return [] { return NAME_HERE; }();
}
} // namespace
} // namespace Sample

namespace
{
template <typename Call>
std::string TakenBy(Call&& call)
{
    Sample::taken.clear();
    call();
    return Sample::taken;
}

TEST(FunctionName, Plain_functions_have_their_qualified_name)
{
    EXPECT_EQ(Sample::Free(), "Sample::Free");
    EXPECT_EQ(Sample::Static(), "Sample::Static");
    EXPECT_EQ(Sample::Template(1), "Sample::Template");
}

TEST(FunctionName, Result_type_is_left_out_whatever_its_shape)
{
    EXPECT_EQ(TakenBy([] { Sample::PointerResult(); }), "Sample::PointerResult");
    EXPECT_EQ(TakenBy([] { Sample::ReferenceResult(); }), "Sample::ReferenceResult");
    EXPECT_EQ(TakenBy([] { Sample::FunctionPointerResult(); }), "Sample::FunctionPointerResult");
    EXPECT_EQ(TakenBy([] { Sample::ArrayResult(); }), "Sample::ArrayResult");
    EXPECT_EQ(TakenBy([] { Sample::FunctionObjectResult(); }), "Sample::FunctionObjectResult");
    EXPECT_EQ(TakenBy([] { Sample::DeducedResult(); }), "Sample::DeducedResult");
    EXPECT_EQ(TakenBy([] { Sample::MemberPointerResult(); }), "Sample::MemberPointerResult");
}

TEST(FunctionName, Members_have_their_class)
{
    Sample::Box box;
    EXPECT_EQ(box.constructor, "Sample::Box::Box");
    EXPECT_EQ(box.Member(), "Sample::Box::Member");
    EXPECT_EQ(box.ConstMember(), "Sample::Box::ConstMember");
    EXPECT_EQ(Sample::Box::StaticMember(), "Sample::Box::StaticMember");
    EXPECT_EQ(box.MemberTemplate(1), "Sample::Box::MemberTemplate");
    EXPECT_EQ(TakenBy([] { const Sample::Box ends; }), "Sample::Box::~Box");
}

TEST(FunctionName, Operators_keep_their_signs)
{
    Sample::Box box;
    const Sample::Box other;
    EXPECT_EQ(box(1), "Sample::Box::operator()");
    EXPECT_EQ(TakenBy([&] { static_cast<void>(box < other); }), "Sample::Box::operator<");
    EXPECT_EQ(TakenBy([&] { static_cast<void>(box > other); }), "Sample::Box::operator>");
    EXPECT_EQ(TakenBy([&] { box.operator->(); }), "Sample::Box::operator->");
    EXPECT_EQ(TakenBy([&] { static_cast<void>(box[1]); }), "Sample::Box::operator[]");
    EXPECT_EQ(TakenBy([&] { box = other; }), "Sample::Box::operator=");
    EXPECT_EQ(TakenBy([&] { box << 1; }), "Sample::operator<<");
    EXPECT_EQ(TakenBy([&] { static_cast<void>(static_cast<int>(box)); }), "Sample::Box::operator int");
    EXPECT_EQ(TakenBy([&] { box.operator std::function<void(int)>(); }).substr(0, 36),
              "Sample::Box::operator std::function<");
}

TEST(FunctionName, Lambda_speaks_for_the_function_that_encloses_it)
{
    Sample::Box box;
    EXPECT_EQ(box.Lambda(), "Sample::Box::Lambda");
    EXPECT_EQ(box.LambdaInLambda(), "Sample::Box::LambdaInLambda");
    EXPECT_EQ(Sample::TemplateWithLambda(1), "Sample::TemplateWithLambda");
}

TEST(FunctionName, Members_of_class_templates_have_class_and_name)
{
    Sample::Shelf<int> shelf;
    const std::string name = shelf.Member(1);
    // Compilers write the class with its parameter or with its argument.
    EXPECT_TRUE(name == "Sample::Shelf<T>::Member" || name == "Sample::Shelf<int>::Member") << name;
    const std::string templateName = shelf.MemberTemplate(1.0);
    EXPECT_TRUE(templateName == "Sample::Shelf<T>::MemberTemplate" ||
                templateName == "Sample::Shelf<int>::MemberTemplate")
        << templateName;
}

TEST(FunctionName, Unnamed_namespace_is_kept_as_the_compiler_writes_it)
{
    const std::string name = Sample::Unnamed();
    EXPECT_TRUE(name == "Sample::{anonymous}::Unnamed" || name == "Sample::(anonymous namespace)::Unnamed") << name;
    const std::string lambda = Sample::LambdaInUnnamed();
    EXPECT_TRUE(lambda == "Sample::{anonymous}::LambdaInUnnamed" ||
                lambda == "Sample::(anonymous namespace)::LambdaInUnnamed")
        << lambda;
}

struct Case
{
    std::string_view text;
    std::string_view name;
};

// As the two compilers write them, whichever one builds this test.
constexpr Case CASES[] = {
    {"int main()", "main"},
    {"void Mu::Tools::CommonTool::SendNull(const char*)", "Mu::Tools::CommonTool::SendNull"},
    {"void Mu::Tools::CommonTool::SendNull(const char *)", "Mu::Tools::CommonTool::SendNull"},
    {"virtual void A::Stop()", "A::Stop"},
    {"static bool A::Is(int) const", "A::Is"},
    {"constexpr unsigned int A::Size() const", "A::Size"},
    {"A::A(int)", "A::A"},
    {"A::~A()", "A::~A"},
    {"virtual A::~A()", "A::~A"},
    {"const char *A::Text()", "A::Text"},
    {"const char* A::Text()", "A::Text"},
    {"int &A::Ref()", "A::Ref"},
    {"std::map<int, std::vector<A> >& A::Map()", "A::Map"},
    {"std::function<void (int)> A::F()", "A::F"},
    {"void (*A::F())(int)", "A::F"},
    {"void (* A::F())(int)", "A::F"},
    {"int (&A::F())[3]", "A::F"},
    {"int (B::* A::F())(int) const", "A::F"},
    {"int (B::*A::F())(int) const", "A::F"},
    {"decltype(auto) A::F()", "A::F"},
    {"decltype ((T() + 1)) A::F(T) [with T = int; decltype ((T() + 1)) = int]", "A::F"},
    {"<dependent type> A::F(T) [T = int]", "A::F"},
    {"T A::F(T) [with T = int]", "A::F"},
    {"T A::F(T) [T = int]", "A::F"},
    {"B<T>::B() [with T = void*]", "B<T>::B"},
    {"Ta::Object<void *>::Object(const Object<T> &) [T = void *]", "Ta::Object<void *>::Object"},
    {"U ns::B<int>::G(U) [T = int, U = double]", "ns::B<int>::G"},
    {"void A::Set(const T&) requires Limitable<T> [with T = double]", "A::Set"},
    {"bool A::operator<(const A&) const", "A::operator<"},
    {"bool operator<(const B<T>&, const B<T>&) [with T = int]", "operator<"},
    {"A& A::operator<<(int)", "A::operator<<"},
    {"A &A::operator<<(int)", "A::operator<<"},
    {"A& A::operator>>=(int)", "A::operator>>="},
    {"auto A::operator<=>(const A &) const", "A::operator<=>"},
    {"A *A::operator->()", "A::operator->"},
    {"int A::operator()(int) const", "A::operator()"},
    {"int A::operator()() const [with T = int]", "A::operator()"},
    {"int A::operator[](int)", "A::operator[]"},
    {"A::operator int() const", "A::operator int"},
    {"int A::operator int() const", "A::operator int"},
    {"const char *A::operator const char *() const", "A::operator const char *"},
    {"A::operator std::function<void(int)>() const", "A::operator std::function<void(int)>"},
    {"static void* A::operator new(std::size_t)", "A::operator new"},
    {"long double ns::operator\"\"_mm(long double)", "ns::operator\"\"_mm"},
    {"void operators::Run(int)", "operators::Run"},
    {"void A::operatorFor(int)", "A::operatorFor"},
    {"A::L()::<lambda(int)>", "A::L"},
    {"A::L()::<lambda(auto:11)>::<lambda()>", "A::L"},
    {"A::L()::<lambda(auto:11)> [with auto:11 = double]", "A::L"},
    {"ns::TL<int>()::<lambda()>", "ns::TL"},
    {"A::operator()(int)::<lambda()>", "A::operator()"},
    {"auto A::L()::(anonymous class)::operator()(int) const", "A::L"},
    {"auto A::L()::(lambda at unit.cpp:3:4)::operator()(int) const", "A::L"},
    {"auto A::L()::(anonymous class)::operator()(double)::(anonymous class)::operator()() const", "A::L"},
    {"auto ns::B<int>::L()::(anonymous class)::operator()() const [T = int]", "ns::B<int>::L"},
    {"void ns::{anonymous}::F(int)", "ns::{anonymous}::F"},
    {"void (anonymous namespace)::F(int)", "(anonymous namespace)::F"},
    {"void ns::(anonymous namespace)::AA::F()", "ns::(anonymous namespace)::AA::F"},
    {"auto ns::(anonymous namespace)::L()::(anonymous class)::operator()() const", "ns::(anonymous namespace)::L"},
};

constexpr bool AllNamesAreRight()
{
    for (const Case& row : CASES)
    {
        if (Ta::Detail::FunctionName(row.text) != row.name)
        {
            return false;
        }
    }
    return true;
}

static_assert(AllNamesAreRight(), "the test below names the row");

TEST(FunctionName, Texts_of_both_compilers_give_the_name)
{
    for (const Case& row : CASES)
    {
        EXPECT_EQ(Ta::Detail::FunctionName(row.text), row.name) << row.text;
    }
}
} // namespace
