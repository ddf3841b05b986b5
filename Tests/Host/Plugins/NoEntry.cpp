// A library without the entry of a plug-in.
extern "C" __attribute__((visibility("default"))) int NotTheEntry();

extern "C" int NotTheEntry()
{
    return 1;
}
