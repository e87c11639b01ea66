// A shared object of the pixel library's name that is something else.

extern "C" int somethingElse() { return 1; }
