// pixels_benchmark: prints how exact and how fast tracking and mattes are. Without arguments all parts run.

#include "measure.h"

#include <cstdio>
#include <string>

int main(int count, char** words)
{
    struct Part
    {
        const char* name;
        void (*run)();
    };
    const Part parts[] = {{"tracking", measureTracking}, {"length", measureLength}, {"mattes", measureMattes}};
    int ran = 0;
    try {
        for (const Part& part : parts)
            if (count == 1 || (count == 2 && std::string(words[1]) == part.name)) {
                part.run();
                std::printf("\n");
                ++ran;
            }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "pixels_benchmark: %s\n", error.what());
        return 1;
    }
    if (ran == 0) {
        std::fprintf(stderr, "Usage: pixels_benchmark [tracking|length|mattes]\n");
        return 2;
    }
    return 0;
}
