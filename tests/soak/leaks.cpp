// Read by the leak sanitizer, from outside of the program. Elementary stays up until the process ends, and what Eo
// keeps for it counts as lost.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
    return "leak:libeo.so\n";
}
