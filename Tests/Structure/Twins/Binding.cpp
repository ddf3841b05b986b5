// Needs a name that is nowhere.
__attribute__((visibility("default"))) int MissingEverywhere();
__attribute__((visibility("default"))) int NeedsWhatIsMissing();

int NeedsWhatIsMissing()
{
    return MissingEverywhere();
}
