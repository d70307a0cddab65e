// Part of every program that is built with the sanitizers: libraries stay loaded, so that what they keep can still
// be found through their own variables, and named in a report, when leaks are looked for at the end.
extern "C" __attribute__((visibility("default"))) int dlclose(void*)
{
    return 0;
}
