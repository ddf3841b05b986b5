// What the leak sanitizer is not to report in programs that draw. The library of fonts keeps what it knows of the
// machine's fonts for the life of the process, and holds it by offsets, which the sanitizer does not take for pointers.
#define SANITIZER_HOOK extern "C" __attribute__((visibility("default")))

SANITIZER_HOOK const char* __lsan_default_suppressions();
SANITIZER_HOOK const char* __lsan_default_options();

const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig\n";
}

/// Programs are tested for what they write, so the sanitizer does not tell of what it did not report.
const char* __lsan_default_options()
{
    return "print_suppressions=0";
}
