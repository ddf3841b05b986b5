#include <Host/Program.h>

#include <iostream>

int main(int argc, char** argv)
{
    return static_cast<int>(Mu::Host::RunProgram({argv, argv + argc}, std::cout, std::cerr));
}
