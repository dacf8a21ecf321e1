// A library that is no plug-in: it lacks the player's entry point.
extern "C" __attribute__((visibility("default"))) int notAnEntryPoint() {
    return 1;
}
