// Linked into every program of an AddressSanitizer build: the sanitizer's
// options, so that nothing has to be set in the environment. What is left out
// here is memory of libraries that are not ours.

extern "C" {

const char* __lsan_default_options() {
    return "print_suppressions=0";
}

/** Qt's offscreen platform never deletes its screen, nor the D-Bus library the
 *  buffers of a connection to the end of the program. */
const char* __lsan_default_suppressions() {
    return "leak:libqoffscreen.so\n"
           "leak:libdbus-1.so\n";
}
}
