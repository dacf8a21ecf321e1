// ThreadSanitizer settings for the service's programs (read only by
// -fsanitize=thread builds; elsewhere this function is never called).
//
// Debian ships cpp-httplib as a compiled library, not instrumented. Its
// lazily built function-local tables are published through the compiler's
// inlined guard check, which the sanitizer cannot see from an uninstrumented
// library, so the library's own memcpy/memcmp calls look like races against
// each other. Only calls made from that library are set aside; every access
// in our code, our handlers included, is still checked.
extern "C" const char* __tsan_default_suppressions() {
    return "called_from_lib:libcpp-httplib.so\n";
}
