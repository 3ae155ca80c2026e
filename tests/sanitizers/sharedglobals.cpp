// Linked into the programs of an AddressSanitizer build that load the plug-in and
// share their symbols with it.

/** A host and the plug-in both carry the panel services, on purpose: the same
 *  global twice is no error unless its size differs. */
extern "C" const char* __asan_default_options() {
    return "detect_odr_violation=1";
}
